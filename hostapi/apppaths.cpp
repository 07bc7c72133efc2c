#include "apppaths.h"
#include "hostconstants.h"

#include <QDir>
#include <QMutex>
#include <QStandardPaths>

namespace {
QMutex s_mutex;
QString s_override;

QString withSlash(QString dir)
{
    dir = QDir::fromNativeSeparators(dir);
    if (!dir.endsWith(QLatin1Char('/')))
        dir += QLatin1Char('/');
    return dir;
}
}

QString GetAppPath()
{
    QString dir;
    {
        QMutexLocker lock(&s_mutex);
        dir = s_override;
    }
    if (dir.isEmpty())
        dir = qEnvironmentVariable("VELORA_APP_DIR");
    if (dir.isEmpty()) {
        dir = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
              + QStringLiteral("/velora");
    }
    dir = withSlash(dir);
    QDir().mkpath(dir);
    return dir;
}

void SetAppPath(const QString &dir)
{
    QMutexLocker lock(&s_mutex);
    s_override = dir.isEmpty() ? QString() : withSlash(dir);
}

QString HostDatabasePath(const QString &baseName)
{
    const QString folder = GetAppPath() + C_Database_Dir;
    QDir().mkpath(folder);
    return folder + baseName + C_Db_Sqlite_Suffix;
}
