#pragma once
#include <QSettings>
#include <QString>

#include <memory>

// The host's configuration and system settings, all in "SysSet_.ini" in
// GetAppPath() + GCSZDir, read and written as INI through QSettings.
class HostConfig
{
public:
    static QString sysSetPath();
    static std::unique_ptr<QSettings> openSysSet();

    // Host configuration values ("SaveBzQd", "AreaVer", "CloudChannel", ...),
    // kept in the "HostConfig" section; empty text when unset.
    static QString value(const QString &key);
    static void setValue(const QString &key, const QString &value);
};
