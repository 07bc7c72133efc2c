#pragma once
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;

// The project settings table as the host shows it: time, place, altitude,
// tax mode and scope. Follows every write of the project settings; time,
// place, altitude and tax mode are edited in place.
class SettingsPanel : public QWidget
{
    Q_OBJECT
public:
    explicit SettingsPanel(QWidget *parent = nullptr);
    void refresh();
    // The scope of the active bill table; the stored scope shows when empty.
    void setScope(const QString &scope);
    QString valueText(int row) const;

    QLineEdit *lineEdit(int row) const { return m_edits.value(row); }
    QComboBox *taxCombo() const { return m_tax; }

private:
    QList<QLineEdit *> m_edits;
    QComboBox *m_tax = nullptr;
    QLabel *m_scopeLabel = nullptr;
    QString m_scope;
};
