#pragma once
#include <QString>

// The host's configuration library: area configuration values such as
// "AreaVer", read from the host configuration (HostConfig, "SysSet_.ini").
class CpfMain
{
public:
    // The value of `key`; empty text when it is not set.
    static QString GetAreaConfigValue(const QString &key);
};
