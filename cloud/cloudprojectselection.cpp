#include "cloudprojectselection.h"

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/projectsettinghelper.h>

#include <QJsonObject>

namespace {
const QString kTid = QStringLiteral("tid");
const QString kXmmc = QStringLiteral("xmmc");
}

void CloudProjectSelection::clear()
{
    m_ids.clear();
    m_names.clear();
}

void CloudProjectSelection::append(const QString &id, const QString &name)
{
    if (id.isEmpty())
        return;
    m_ids << id;
    m_names << name;
}

void CloudProjectSelection::setProjects(const QList<QMap<QString, QVariant>> &projects)
{
    clear();
    for (const auto &project : projects)
        append(project.value(kTid).toString(), project.value(kXmmc).toString());
}

QStringList CloudProjectSelection::choiceTexts() const
{
    QStringList texts;
    for (const QJsonValue &project : toJson())
        texts << AccumulatedProjectQuery::choiceText(project.toObject());
    return texts;
}

QJsonArray CloudProjectSelection::toJson() const
{
    QJsonArray projects;
    for (int i = 0; i < m_ids.size(); ++i)
        projects.append(QJsonObject{{kTid, m_ids.at(i)}, {kXmmc, m_names.at(i)}});
    return projects;
}

CloudProjectSelection CloudProjectSelection::fromJson(const QJsonArray &projects)
{
    CloudProjectSelection selection;
    for (const QJsonValue &value : projects) {
        const QJsonObject project = value.toObject();
        selection.append(project.value(kTid).toVariant().toString(), project.value(kXmmc).toString());
    }
    return selection;
}

CloudProjectSelection CloudProjectSelection::read(const QString &key)
{
    if (key.isEmpty())
        return CloudProjectSelection();
    return fromJson(ProjectSettingHelper::GetGlobalSettingsInfo().projectSelection(key));
}

void CloudProjectSelection::write(const QString &key) const
{
    if (key.isEmpty())
        return;
    GlobalSettingsInfo info = ProjectSettingHelper::GetGlobalSettingsInfo();
    info.setProjectSelection(key, toJson());
    ProjectSettingHelper::SetGlobalSettingsInfo(info);
}
