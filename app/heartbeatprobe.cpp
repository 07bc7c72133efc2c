#include "heartbeatprobe.h"

#include <QIODevice>

#include <ctime>

HeartbeatProbe::HeartbeatProbe(int intervalMs, QObject *parent) : QObject(parent)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(intervalMs);
    connect(&m_timer, &QTimer::timeout, this, &HeartbeatProbe::tick);
}

void HeartbeatProbe::start()
{
    m_clock.start();
    m_lastNs = 0;
    m_lastCpuNs = threadCpuNs();
    m_timer.start();
}

void HeartbeatProbe::stop()
{
    tick();
    m_timer.stop();
}

void HeartbeatProbe::resetWorst()
{
    m_worstNs = 0;
    m_worstCpuNs = 0;
    m_lastNs = m_clock.nsecsElapsed();
    m_lastCpuNs = threadCpuNs();
}

void HeartbeatProbe::setLog(QIODevice *log, int limitMs)
{
    m_log = log;
    m_limitNs = qint64(limitMs) * 1000000;
}

void HeartbeatProbe::tick()
{
    const qint64 now = m_clock.nsecsElapsed();
    const qint64 gap = now - m_lastNs;
    m_lastNs = now;
    const qint64 cpuNow = threadCpuNs();
    const qint64 cpuGap = cpuNow - m_lastCpuNs;
    m_lastCpuNs = cpuNow;
    m_worstNs = std::max(m_worstNs, gap);
    m_worstCpuNs = std::max(m_worstCpuNs, cpuGap);
    if (m_log && gap > m_limitNs) {
        m_log->write(QByteArray::number(now / 1000000) + " gap " + QByteArray::number(gap / 1e6, 'f', 1) + " cpu "
                     + QByteArray::number(cpuGap / 1e6, 'f', 1) + '\n');
        m_log->waitForBytesWritten(0);
    }
}

qint64 HeartbeatProbe::threadCpuNs()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return qint64(t.tv_sec) * 1000000000 + t.tv_nsec;
}
