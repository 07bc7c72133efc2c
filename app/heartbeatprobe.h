#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QIODevice;

// Measures how long the event loop of the thread it lives on is kept from
// running: a precise timer ticks every millisecond or two and the largest gap
// between two ticks is kept, in wall time and in the thread's own CPU time
// (on a loaded machine a wall gap may be time the thread waited for a
// core; the CPU gap is the work that kept the loop busy). Gaps over the log limit are written as lines
// "<ms since start> gap <ms>" when a log device is set.
class HeartbeatProbe : public QObject
{
    Q_OBJECT
public:
    explicit HeartbeatProbe(int intervalMs = 1, QObject *parent = nullptr);

    void start();
    void stop();
    // Starts a new span: the worst gap goes back to zero.
    void resetWorst();
    double worstGapMs() const { return m_worstNs / 1e6; }
    double worstCpuGapMs() const { return m_worstCpuNs / 1e6; }
    void setLog(QIODevice *log, int limitMs);

private:
    void tick();
    static qint64 threadCpuNs();

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_lastNs = 0;
    qint64 m_worstNs = 0;
    qint64 m_lastCpuNs = 0;
    qint64 m_worstCpuNs = 0;
    QIODevice *m_log = nullptr;
    qint64 m_limitNs = 0;
};
