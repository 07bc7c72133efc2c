#include "hoststate.h"

#include <hostapi/apppaths.h>

namespace {
const int kRecentCount = 8;
const QString kRecentKey = QStringLiteral("Files/recent");

void writeRecent(const QStringList &files)
{
    HostState::open()->setValue(kRecentKey, QStringList(files.mid(0, kRecentCount)));
}
}

std::unique_ptr<QSettings> HostState::open()
{
    return std::make_unique<QSettings>(GetAppPath() + QStringLiteral("VeloraHost.ini"), QSettings::IniFormat);
}

QStringList HostState::recentFiles()
{
    return open()->value(kRecentKey).toStringList();
}

void HostState::addRecentFile(const QString &path)
{
    QStringList files = recentFiles();
    files.removeAll(path);
    files.prepend(path);
    writeRecent(files);
}

void HostState::removeRecentFile(const QString &path)
{
    QStringList files = recentFiles();
    files.removeAll(path);
    writeRecent(files);
}
