#pragma once
#include <QWidget>

class QLabel;

// The project settings table as the host shows it: time, place, altitude,
// tax mode and scope. Follows every write of the project settings.
class SettingsPanel : public QWidget
{
    Q_OBJECT
public:
    explicit SettingsPanel(QWidget *parent = nullptr);
    void refresh();
    // The scope of the active bill table; the stored scope shows when empty.
    void setScope(const QString &scope);
    QString valueText(int row) const;

private:
    QList<QLabel *> m_values;
    QString m_scope;
};
