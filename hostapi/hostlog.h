#pragma once
#include <QString>

#include <functional>

// The host log: one line per entry in GetAppPath() + "Log/host.log" and on
// stderr. An observer sees every line (tests).
class HostLog
{
public:
    static void write(const QString &tag, const QString &text);
    static QString logFilePath();
    static void setObserver(std::function<void(const QString &line)> observer);
};

// Progress line with a tag and the source line, e.g. HOSTLOG("znytz:", "...").
#define HOSTLOG(tag, text) HostLog::write(QStringLiteral(tag), QStringLiteral("[%1] %2").arg(__LINE__).arg(text))
