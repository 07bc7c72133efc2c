#pragma once
#include "globalsettingsinfo.h"
#include "projectsettingsinfo.h"

#include <QObject>

// The host's project settings. Kept in "ProjectSet_.ini" beside "SysSet_.ini"
// (GetAppPath() + GCSZDir), so every application folder has its own. Writes
// are announced through instance()'s settingsChanged.
class ProjectSettingHelper : public QObject
{
    Q_OBJECT
public:
    static ProjectSettingHelper *instance();
    static QString settingsPath();

    static GlobalSettingsInfo GetGlobalSettingsInfo();
    static void SetGlobalSettingsInfo(const GlobalSettingsInfo &info);

    // The project settings table alone.
    static ProjectSettingsInfo GetProjectSettingsInfo();
    static void SetProjectSettingsInfo(const ProjectSettingsInfo &info);
    // False until project settings were written in this application folder.
    static bool HasProjectSettings();

signals:
    void settingsChanged();

private:
    using QObject::QObject;
};
