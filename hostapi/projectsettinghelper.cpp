#include "projectsettinghelper.h"
#include "apppaths.h"
#include "exceptionguard.h"
#include "hostconstants.h"
#include "placecoderesolver.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

namespace {

std::unique_ptr<QSettings> openSettings()
{
    auto s = std::make_unique<QSettings>(ProjectSettingHelper::settingsPath(), QSettings::IniFormat);
    s->setIniCodec("UTF-8");
    return s;
}

void writeProject(QSettings &s, const ProjectSettingsInfo &p)
{
    s.beginGroup(QStringLiteral("Project"));
    s.setValue(QStringLiteral("Time"), p.time);
    s.setValue(QStringLiteral("Place"), p.place);
    s.setValue(QStringLiteral("PlaceCode"), p.placeCode);
    s.setValue(QStringLiteral("Altitude"), p.altitude);
    s.setValue(QStringLiteral("TaxMode"), p.taxMode);
    s.setValue(QStringLiteral("Scope"), p.scope);
    s.endGroup();
}

ProjectSettingsInfo readProject(QSettings &s)
{
    ProjectSettingsInfo p;
    s.beginGroup(QStringLiteral("Project"));
    p.time = s.value(QStringLiteral("Time")).toString();
    p.place = s.value(QStringLiteral("Place")).toString();
    p.placeCode = s.value(QStringLiteral("PlaceCode")).toString();
    p.altitude = s.value(QStringLiteral("Altitude")).toString();
    p.taxMode = s.value(QStringLiteral("TaxMode")).toString();
    p.scope = s.value(QStringLiteral("Scope")).toString();
    s.endGroup();
    return p;
}

// Selections are one JSON object {key: [{"tid","xmmc"}...]}: keys hold blanks
// and tokens, which INI keys do not carry well.
QString selectionsText(const GlobalSettingsInfo &info)
{
    QJsonObject all;
    const auto selections = info.projectSelections();
    for (auto it = selections.cbegin(); it != selections.cend(); ++it)
        all.insert(it.key(), it.value());
    return QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact));
}

void readSelections(const QString &text, GlobalSettingsInfo &info)
{
    const QJsonObject all = QJsonDocument::fromJson(text.toUtf8()).object();
    for (auto it = all.constBegin(); it != all.constEnd(); ++it)
        info.setProjectSelection(it.key(), it.value().toArray());
}

// A new place text written without its code (the influence-factor dialogs
// know only the text) gets the code from the place dictionary.
ProjectSettingsInfo withPlaceCode(ProjectSettingsInfo info)
{
    const ProjectSettingsInfo stored = ProjectSettingHelper::GetProjectSettingsInfo();
    if (info.place == stored.place || info.placeCode != stored.placeCode)
        return info;
    info.placeCode =
        GUARDED_OR(QString(), "ProjectSettingHelper", [&] { return PlaceCodeResolver::codeOfPath(info.place); });
    return info;
}

}

ProjectSettingHelper *ProjectSettingHelper::instance()
{
    static ProjectSettingHelper *helper = new ProjectSettingHelper;
    return helper;
}

QString ProjectSettingHelper::settingsPath()
{
    const QString folder = GetAppPath() + GCSZDir;
    QDir().mkpath(folder);
    return folder + QStringLiteral("ProjectSet_.ini");
}

GlobalSettingsInfo ProjectSettingHelper::GetGlobalSettingsInfo()
{
    auto s = openSettings();
    GlobalSettingsInfo info;
    info.project = readProject(*s);
    info.bzqdChecked = s->value(QStringLiteral("Global/BzqdChecked"), true).toBool();
    info.jlqdChecked = s->value(QStringLiteral("Global/JlqdChecked"), true).toBool();
    readSelections(s->value(QStringLiteral("Global/ProjectSelections")).toString(), info);
    return info;
}

void ProjectSettingHelper::SetGlobalSettingsInfo(const GlobalSettingsInfo &info)
{
    const ProjectSettingsInfo project = withPlaceCode(info.project);
    {
        auto s = openSettings();
        writeProject(*s, project);
        s->setValue(QStringLiteral("Global/BzqdChecked"), info.bzqdChecked);
        s->setValue(QStringLiteral("Global/JlqdChecked"), info.jlqdChecked);
        s->setValue(QStringLiteral("Global/ProjectSelections"), selectionsText(info));
        s->sync();
    }
    emit instance()->settingsChanged();
}

ProjectSettingsInfo ProjectSettingHelper::GetProjectSettingsInfo()
{
    return readProject(*openSettings());
}

void ProjectSettingHelper::SetProjectSettingsInfo(const ProjectSettingsInfo &info)
{
    const ProjectSettingsInfo project = withPlaceCode(info);
    {
        auto s = openSettings();
        writeProject(*s, project);
        s->sync();
    }
    emit instance()->settingsChanged();
}

bool ProjectSettingHelper::HasProjectSettings()
{
    return openSettings()->contains(QStringLiteral("Project/Time"));
}
