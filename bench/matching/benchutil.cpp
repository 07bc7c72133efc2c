#include "benchutil.h"

#include <service/matching/billindex.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <ctime>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

double statusMiB(const char *key)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return 0.0;
    const QString text = QString::fromLatin1(f.readAll());
    const auto m = QRegularExpression(QString::fromLatin1(key) + QStringLiteral(":\\s+(\\d+) kB")).match(text);
    return m.hasMatch() ? m.captured(1).toDouble() / 1024.0 : 0.0;
}

} // namespace

double BenchUtil::rssMiB()
{
    return statusMiB("VmRSS");
}

double BenchUtil::peakRssMiB()
{
    return statusMiB("VmHWM");
}

QString BenchUtil::summary(QVector<double> ms)
{
    if (ms.isEmpty())
        return QStringLiteral("no queries");
    std::sort(ms.begin(), ms.end());
    auto at = [&ms](double q) { return ms[std::min(ms.size() - 1, int(q * ms.size()))]; };
    double sum = 0;
    for (double v : ms)
        sum += v;
    return QStringLiteral("p50 %1 ms  p99 %2 ms  max %3 ms  mean %4 ms  (n=%5)")
        .arg(at(0.50), 0, 'f', 3).arg(at(0.99), 0, 'f', 3).arg(ms.last(), 0, 'f', 3)
        .arg(sum / ms.size(), 0, 'f', 3).arg(ms.size());
}

QString BenchUtil::dataDir()
{
    const QString env = qEnvironmentVariable("VELORA_DATA_DIR");
    return env.isEmpty() ? QStringLiteral(VELORA_DATA_DIR) : env;
}

double BenchUtil::threadCpuMs()
{
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

void BenchUtil::releaseFreedMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

quint64 BenchUtil::corpusChecksum(quint64 sum, const BillRecord &r)
{
    const QString fields = QString::number(r.id) + r.code + r.name + r.unit + r.features + r.workContent + r.projectId
                           + r.quotaNames.join(QLatin1Char('|'));
    return sum * 1000003u ^ qHash(fields, 7);
}

qint64 BenchUtil::directoryBytes(const QString &path)
{
    qint64 bytes = 0;
    QDirIterator it(path, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        bytes += QFileInfo(it.next()).size();
    return bytes;
}
