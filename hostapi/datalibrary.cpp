#include "datalibrary.h"
#include "hostconfig.h"

DataLibrary *DataLibrary::Instance()
{
    static DataLibrary library;
    return &library;
}

int DataLibrary::AppType() const
{
    if (m_override >= 0)
        return m_override;
    bool ok = false;
    const int configured = HostConfig::value(QStringLiteral("AppType")).toInt(&ok);
    return ok ? configured : 16;
}
