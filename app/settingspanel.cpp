#include "settingspanel.h"

#include <hostapi/projectsettinghelper.h>

#include <QFormLayout>
#include <QLabel>

SettingsPanel::SettingsPanel(QWidget *parent) : QWidget(parent)
{
    auto *form = new QFormLayout(this);
    form->setContentsMargins(16, 12, 16, 12);
    form->setVerticalSpacing(8);
    const QStringList captions{QStringLiteral("价格基准时间："), QStringLiteral("工程地点："), QStringLiteral("海拔高度："),
                               QStringLiteral("计税方式："), QStringLiteral("应用范围：")};
    for (const QString &caption : captions) {
        auto *value = new QLabel(this);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        form->addRow(caption, value);
        m_values.append(value);
    }
    connect(ProjectSettingHelper::instance(), &ProjectSettingHelper::settingsChanged, this, &SettingsPanel::refresh);
    refresh();
}

void SettingsPanel::refresh()
{
    const ProjectSettingsInfo s = ProjectSettingHelper::GetProjectSettingsInfo();
    const QString place = s.placeCode.isEmpty() ? s.place : QStringLiteral("%1（%2）").arg(s.place, s.placeCode);
    const QStringList values{s.time, place, s.altitude, s.taxMode, m_scope.isEmpty() ? s.scope : m_scope};
    for (int i = 0; i < m_values.size(); ++i)
        m_values[i]->setText(values.value(i));
}

void SettingsPanel::setScope(const QString &scope)
{
    m_scope = scope;
    refresh();
}

QString SettingsPanel::valueText(int row) const
{
    return row >= 0 && row < m_values.size() ? m_values[row]->text() : QString();
}
