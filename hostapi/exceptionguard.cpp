#include "exceptionguard.h"
#include "hostlog.h"

void ProcExceptionNew(const std::exception &e, const QString &file, int line, const QString &function)
{
    HostLog::write(QStringLiteral("exception:"),
                   QStringLiteral("%1 (%2:%3 %4)").arg(QString::fromUtf8(e.what()), file).arg(line).arg(function));
}

namespace velora_detail {
void reportException(const std::exception &e, const char *file, int line, const char *function)
{
    ProcExceptionNew(e, QString::fromUtf8(file), line, QString::fromUtf8(function));
}

void reportUnknownException(const char *file, int line, const char *function)
{
    ProcExceptionNew(std::runtime_error("未知异常"), QString::fromUtf8(file), line, QString::fromUtf8(function));
}
}
