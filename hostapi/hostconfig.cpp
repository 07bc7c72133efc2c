#include "hostconfig.h"
#include "apppaths.h"
#include "hostconstants.h"

#include <QDir>

QString HostConfig::sysSetPath()
{
    const QString folder = GetAppPath() + GCSZDir;
    QDir().mkpath(folder);
    return folder + QStringLiteral("SysSet_.ini");
}

std::unique_ptr<QSettings> HostConfig::openSysSet()
{
    auto settings = std::make_unique<QSettings>(sysSetPath(), QSettings::IniFormat);
    settings->setIniCodec("UTF-8");
    return settings;
}

QString HostConfig::value(const QString &key)
{
    return openSysSet()->value(QStringLiteral("HostConfig/") + key).toString();
}

void HostConfig::setValue(const QString &key, const QString &value)
{
    auto settings = openSysSet();
    settings->setValue(QStringLiteral("HostConfig/") + key, value);
    settings->sync();
}
