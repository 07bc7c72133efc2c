#pragma once
#include <QLabel>

// The host's base label: a QLabel that reports clicks and can elide a long
// text to its width (the full text stays available as fullText() and tooltip).
class zBaseLabel : public QLabel
{
    Q_OBJECT
public:
    explicit zBaseLabel(QWidget *parent = nullptr);
    explicit zBaseLabel(const QString &text, QWidget *parent = nullptr);

    // Qt::ElideNone (default) shows the text as set.
    void setElideMode(Qt::TextElideMode mode);
    Qt::TextElideMode elideMode() const { return m_elide; }
    // Sets the text, elided to the label's width when an elide mode is set.
    void setFullText(const QString &text);
    QString fullText() const { return m_full; }

signals:
    void labelClicked();
    void labelDoubleClicked();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void applyElide();

    QString m_full;
    Qt::TextElideMode m_elide = Qt::ElideNone;
};
