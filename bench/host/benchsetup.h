#pragma once
#include <QByteArray>
#include <QString>

#include <memory>

class LatencyChannel;

// What the host benchmarks share: a generated project, the embedded cloud
// behind a latency channel with the demo account signed in, and the
// process's CPU time and the machine's load for the tables.
class BenchSetup
{
public:
    // The sample project's bills repeated until there are `count`, in one
    // pricing table.
    static QByteArray generatedProject(int count);
    // Installs the embedded cloud (full seed) in `appDir` behind a latency
    // channel and signs the demo account in; null with `error` set on failure.
    static std::shared_ptr<LatencyChannel> installCloud(const QString &appDir, QString *error);
    static double cpuMs();
    static QString loadAverage();
};
