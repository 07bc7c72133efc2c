#include "exceptionguard.h"
#include "functionname.h"
#include "guardsite.h"
#include "hostlog.h"

void ProcExceptionNew(const std::exception &e, const QString &file, int line, const QString &function)
{
    HostLog::write(QStringLiteral("exception:"),
                   QStringLiteral("%1 (%2:%3 %4)").arg(QString::fromUtf8(e.what()), file).arg(line).arg(function));
}

namespace velora_detail {
namespace {
void report(const std::exception *e, const QString &source, int line, const QString &function)
{
    if (e)
        ProcExceptionNew(*e, source, line, function);
    else
        ProcExceptionNew(std::runtime_error("未知异常"), source, line, function);
}
}

void reportException(const std::exception *e, const char *source, int line, const char *function)
{
    report(e, QString::fromUtf8(source), line, FunctionName(function).qualified());
}

void reportException(const std::exception *e, const GuardSite &site, int line, const char *function)
{
    report(e, site.source(), line, site.function(function));
}
}
