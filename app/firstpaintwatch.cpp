#include "firstpaintwatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QTextStream>
#include <QTimer>
#include <QWidget>

#include <ctime>
#include <unistd.h>

FirstPaintWatch::FirstPaintWatch(QWidget *widget) : QObject(widget)
{
    widget->installEventFilter(this);
}

double FirstPaintWatch::msSinceProcessStart()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return -1;
    // The command name may hold spaces: fields are counted after its ')'.
    const QByteArray text = stat.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    const double startTicks = fields.value(19).toDouble();
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * 1e3 + now.tv_nsec / 1e6 - startTicks * 1e3 / sysconf(_SC_CLK_TCK);
}

bool FirstPaintWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_seen) {
        m_seen = true;
        // Right after this paint has been handled.
        QTimer::singleShot(0, this, [] {
            QTextStream(stdout) << "first paint " << qRound(msSinceProcessStart()) << " ms\n";
            QCoreApplication::quit();
        });
    }
    return QObject::eventFilter(watched, event);
}
