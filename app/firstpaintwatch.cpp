#include "firstpaintwatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

#include <ctime>

FirstPaintWatch::FirstPaintWatch(QWidget *widget) : QObject(widget)
{
    widget->installEventFilter(this);
}

namespace {
qint64 s_startNs = 0;

qint64 realtimeNs()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return qint64(now.tv_sec) * 1000000000 + now.tv_nsec;
}
}

void FirstPaintWatch::noteStart()
{
    s_startNs = realtimeNs();
}

double FirstPaintWatch::msSinceLaunch()
{
    const qint64 launch = qEnvironmentVariableIsSet("VELORA_LAUNCH_NS")
                              ? qEnvironmentVariable("VELORA_LAUNCH_NS").toLongLong()
                              : s_startNs;
    return (realtimeNs() - launch) / 1e6;
}

bool FirstPaintWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_seen) {
        m_seen = true;
        // Right after this paint has been handled.
        QTimer::singleShot(0, this, [] {
            QTextStream(stdout) << "first paint " << qRound(msSinceLaunch()) << " ms\n";
            QCoreApplication::quit();
        });
    }
    return QObject::eventFilter(watched, event);
}
