#pragma once
#include <QString>
#include <QVector>

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
};
