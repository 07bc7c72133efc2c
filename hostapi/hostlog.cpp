#include "hostlog.h"
#include "apppaths.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cstdio>
#include <mutex>

namespace {
std::mutex s_mutex;
std::function<void(const QString &)> s_observer;
}

QString HostLog::logFilePath()
{
    const QString folder = GetAppPath() + QStringLiteral("Log/");
    QDir().mkpath(folder);
    return folder + QStringLiteral("host.log");
}

void HostLog::write(const QString &tag, const QString &text)
{
    const QString line = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"))
                         + QLatin1Char(' ') + tag + QLatin1Char(' ') + text;
    std::function<void(const QString &)> observer;
    {
        std::lock_guard<std::mutex> lock(s_mutex);
        QFile file(logFilePath());
        if (file.open(QIODevice::Append | QIODevice::Text)) {
            QTextStream out(&file);
            out.setCodec("UTF-8");
            out << line << '\n';
        }
        observer = s_observer;
    }
    std::fprintf(stderr, "%s\n", line.toUtf8().constData());
    if (observer)
        observer(line);
}

void HostLog::setObserver(std::function<void(const QString &)> observer)
{
    std::lock_guard<std::mutex> lock(s_mutex);
    s_observer = std::move(observer);
}
