#include "batchpricingrun.h"

#include <hostapi/cloudenvelope.h>

#include <QMetaObject>
#include <QThread>

BatchPricingRun::BatchPricingRun(QObject *parent) : QObject(parent) {}

BatchPricingRun::~BatchPricingRun()
{
    stopThread();
}

void BatchPricingRun::stopThread()
{
    m_cancel = true;
    if (!m_thread)
        return;
    m_thread->wait();
    delete m_thread;
    m_thread = nullptr;
}

void BatchPricingRun::start(const QList<QJsonObject> &requests)
{
    stopThread();
    m_cancel = false;
    const unsigned run = ++m_run;
    // The destructor waits for the thread, so `this` outlives it.
    m_thread = QThread::create([this, requests, run] {
        QList<QJsonObject> replies;
        for (const QJsonObject &request : requests) {
            if (m_cancel)
                break;
            replies.append(CloudEnvelope::send(request));
            // A server that does not answer will not answer the next bill either.
            if (replies.last().isEmpty())
                break;
            const int done = replies.size();
            const int total = requests.size();
            QMetaObject::invokeMethod(this, [this, run, done, total] {
                if (m_run == run && !m_cancel)
                    emit progress(done, total);
            }, Qt::QueuedConnection);
        }
        const bool complete = !m_cancel;
        QMetaObject::invokeMethod(this, [this, run, complete, replies] { threadDone(run, complete, replies); },
                                  Qt::QueuedConnection);
    });
    m_thread->start();
}

void BatchPricingRun::threadDone(unsigned run, bool complete, const QList<QJsonObject> &replies)
{
    if (run != m_run)
        return;
    if (!complete || m_cancel) {
        emit cancelled();
        return;
    }
    m_replies = replies;
    emit finished();
}

void BatchPricingRun::cancel()
{
    if (m_thread)
        m_cancel = true;
}

bool BatchPricingRun::isRunning() const
{
    return m_thread && m_thread->isRunning();
}

QList<QJsonObject> BatchPricingRun::takeReplies()
{
    QList<QJsonObject> replies;
    replies.swap(m_replies);
    return replies;
}
