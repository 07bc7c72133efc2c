#include "cpfmain.h"
#include "hostconfig.h"

QString CpfMain::GetAreaConfigValue(const QString &key)
{
    return HostConfig::value(key);
}
