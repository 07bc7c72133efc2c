#pragma once
#include <hostapi/projectsettingsinfo.h>
#include <hostapi/workbaseobject.h>

#include <QByteArray>
#include <QString>

#include <memory>

// What a project file holds, read or to be written.
struct ProjectContent
{
    QString name;
    std::unique_ptr<WorkBaseObject> work;
    ProjectSettingsInfo settings;
};

// The host's project file (docs/project-file.md): every table, item, value,
// mark and material of a unit project and its settings, as versioned JSON.
// The only place that knows the file's layout.
class ProjectFile
{
public:
    static constexpr int Version = 1;
    static QString formatName() { return QStringLiteral("velora-project"); }

    // Fills `content` from `bytes`; on failure `content` is untouched and
    // `error` says why.
    static bool read(const QByteArray &bytes, ProjectContent *content, QString *error);
    static QByteArray write(const QString &name, const WorkBaseObject &work, const ProjectSettingsInfo &settings);
};
