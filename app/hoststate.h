#pragma once
#include <QSettings>
#include <QStringList>

#include <memory>

// What the host remembers between runs (window, tabs, recent projects), in
// "VeloraHost.ini" of the application folder.
class HostState
{
public:
    static std::unique_ptr<QSettings> open();
    static QStringList recentFiles();
    // Puts `path` first; the list keeps the eight newest.
    static void addRecentFile(const QString &path);
    static void removeRecentFile(const QString &path);
};
