#pragma once
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

// The host's filter search box: an optional caption label, a line edit with a
// placeholder and a search button. The button and the Enter key emit
// signalSearch with the text as typed.
class zFilterSearchBox : public QWidget
{
    Q_OBJECT
public:
    explicit zFilterSearchBox(QWidget *parent = nullptr);

    void setPlaceholderText(const QString &text);
    QString placeholderText() const;
    // Caption left of the edit; hidden while empty.
    void setLabelText(const QString &text);
    QString labelText() const;
    void setButtonText(const QString &text);
    QString buttonText() const;

    QString text() const;
    void setText(const QString &text);
    void clear();

    QLineEdit *lineEdit() const { return m_edit; }
    QPushButton *searchButton() const { return m_button; }

signals:
    void signalSearch(const QString &text);
    void textChanged(const QString &text);

private:
    QLabel *m_label = nullptr;
    QLineEdit *m_edit = nullptr;
    QPushButton *m_button = nullptr;
};
