#include "backgroundrun.h"

#include <QThread>

#include <memory>

BackgroundRun::BackgroundRun(QObject *parent) : QObject(parent)
{
    connect(this, &BackgroundRun::progressPending, this, &BackgroundRun::showProgress, Qt::QueuedConnection);
    connect(this, &BackgroundRun::endPending, this, &BackgroundRun::threadDone, Qt::QueuedConnection);
}

BackgroundRun::~BackgroundRun()
{
    stopThread();
}

void BackgroundRun::stopThread()
{
    m_cancel = true;
    if (!m_thread)
        return;
    m_thread->wait();
    delete m_thread;
    m_thread = nullptr;
}

void BackgroundRun::startJob(Job job)
{
    stopThread();
    m_cancel = false;
    const unsigned run = ++m_run;
    // stopThread() waits for the thread, so `this` outlives it; queued calls
    // to a deleted run are dropped by Qt.
    m_thread = QThread::create([this, job = std::move(job), run] {
        // One progress event per percent: thousands of them, each repainting
        // a bar, would keep the GUI thread busy.
        auto shown = std::make_shared<std::atomic<int>>(-1);
        const Step step = [this, run, shown](int done, int total) {
            if (m_cancel)
                return false;
            const int percent = total > 0 ? int(qint64(done) * 100 / total) : 100;
            if (shown->exchange(percent) == percent)
                return true;
            m_done = done;
            m_total = total;
            m_progressRun = run;
            emit progressPending(QPrivateSignal());
            return true;
        };
        m_complete = job(step);
        m_endRun = run;
        emit endPending(QPrivateSignal());
    });
    m_thread->start();
}

void BackgroundRun::showProgress()
{
    if (m_progressRun == m_run && !m_cancel)
        emit progress(m_done, m_total);
}

void BackgroundRun::threadDone()
{
    // Each end is taken once; that of a run replaced by a newer one is
    // dropped.
    const unsigned ended = m_endRun.exchange(0);
    if (ended == 0 || ended != m_run)
        return;
    if (!m_complete || m_cancel) {
        emit cancelled();
        return;
    }
    deliver();
    emit finished();
}

void BackgroundRun::cancel()
{
    // Also wins over a run whose end is still on its way to the GUI thread.
    if (m_thread)
        m_cancel = true;
}

bool BackgroundRun::isRunning() const
{
    return m_thread && m_thread->isRunning();
}
