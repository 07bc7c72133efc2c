#pragma once
#include <QString>
#include <QVector>

struct BillRecord;

// Small helpers shared by the matching benchmarks.
class BenchUtil
{
public:
    // Resident and peak resident memory of this process in MiB.
    static double rssMiB();
    static double peakRssMiB();
    // "p50 … p99 … max" of latencies in milliseconds.
    static QString summary(QVector<double> ms);
    static QString dataDir();
    // CPU time of the calling thread in milliseconds: on a shared machine it
    // leaves out the time other processes held the core.
    static double threadCpuMs();
    // Returns freed heap memory to the system, as the service does after
    // large changes, so that RSS shows what is in use.
    static void releaseFreedMemory();
    // Folds a bill's fields into `sum`: equal sums, equal corpora.
    static quint64 corpusChecksum(quint64 sum, const BillRecord &r);
    // Size of the files under `path`.
    static qint64 directoryBytes(const QString &path);
};
