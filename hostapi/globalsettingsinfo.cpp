#include "globalsettingsinfo.h"

QString GlobalSettingsInfo::selectionKey(const QString &userId, const QString &token, int qyid)
{
    return userId + QLatin1Char(' ') + token + QLatin1Char(' ') + QString::number(qyid);
}

void GlobalSettingsInfo::setProjectSelection(const QString &key, const QJsonArray &projects)
{
    if (projects.isEmpty())
        m_selections.remove(key);
    else
        m_selections.insert(key, projects);
}

bool GlobalSettingsInfo::operator==(const GlobalSettingsInfo &o) const
{
    return project == o.project && bzqdChecked == o.bzqdChecked && jlqdChecked == o.jlqdChecked
           && m_selections == o.m_selections;
}
