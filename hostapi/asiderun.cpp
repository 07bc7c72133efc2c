#include "asiderun.h"

#include <QEventLoop>
#include <QFutureWatcher>
#include <QtConcurrent>

void AsideRun::wait(const std::function<void()> &job)
{
    QFutureWatcher<void> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcher<void>::finished, &loop, &QEventLoop::quit);
    watcher.setFuture(QtConcurrent::run([job] {
        try {
            job();
        } catch (...) {
        }
    }));
    if (!watcher.isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    // The loop also ends when the application quits: the job may use the
    // caller's variables, so it is waited for in any case.
    watcher.waitForFinished();
}
