#include "cloudworkerrequest.h"
#include "cloudexchange.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/servicesutil.h>

#include <QAtomicInt>
#include <QElapsedTimer>
#include <QFutureInterface>
#include <QFutureWatcher>
#include <QMutex>
#include <QThread>

struct CloudWorkerRequest::Shared
{
    mutable QMutex mutex;
    QJsonObject reply;
    unsigned storedSequence = 0;
};

namespace {
QAtomicInt s_running;
}

CloudWorkerRequest::CloudWorkerRequest(QObject *receiver)
    : QObject(receiver), m_shared(std::make_shared<Shared>())
{
}

CloudWorkerRequest::~CloudWorkerRequest() = default;

unsigned CloudWorkerRequest::start(Job job)
{
    const unsigned sequence = ++m_sequence;
    QFutureInterface<bool> result;
    result.reportStarted();

    // The watcher belongs to this object: if it dies first, the future ends
    // unobserved and the worker's late reply is simply dropped.
    auto *watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, sequence] {
        watcher->deleteLater();
        deliver(sequence, watcher->future().resultCount() > 0 && watcher->result());
    });
    watcher->setFuture(result.future());

    std::shared_ptr<Shared> shared = m_shared;
    s_running.ref();
    QThread *thread = QThread::create([shared, job = std::move(job), sequence, result]() mutable {
        QJsonObject reply;
        const bool ok = GUARDED_OR(false, "CloudWorkerRequest", "CloudWorkerRequest::start",
                                   [&] { return job(reply); });
        {
            QMutexLocker lock(&shared->mutex);
            if (sequence > shared->storedSequence) {
                shared->reply = reply;
                shared->storedSequence = sequence;
            }
        }
        result.reportResult(ok);
        result.reportFinished();
        s_running.deref();
    });
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
    return sequence;
}

unsigned CloudWorkerRequest::start(const CloudRequest &request)
{
    // Built here: the worker must not read the server entry while the GUI
    // thread may update it.
    const QJsonObject envelope = request.toJson();
    return start([envelope](QJsonObject &reply) {
        QJsonObject sent = envelope;
        reply = CloudReply::parse(ServicesUtil::AsyncReplyLoop(sent)).object();
        return true;
    });
}

void CloudWorkerRequest::discardPending()
{
    ++m_sequence;
}

QJsonObject CloudWorkerRequest::lastReply() const
{
    QMutexLocker lock(&m_shared->mutex);
    return m_shared->reply;
}

void CloudWorkerRequest::deliver(unsigned sequence, bool hasReply)
{
    if (!hasReply || sequence != m_sequence)
        return;
    QJsonObject reply;
    {
        QMutexLocker lock(&m_shared->mutex);
        if (m_shared->storedSequence != sequence)
            return;
        reply = m_shared->reply;
    }
    emit signalReply(sequence, reply);
}

int CloudWorkerRequest::runningWorkers()
{
    return s_running.loadAcquire();
}

bool CloudWorkerRequest::waitForWorkers(int msecs)
{
    QElapsedTimer timer;
    timer.start();
    while (runningWorkers() > 0) {
        if (timer.elapsed() > msecs)
            return false;
        QThread::msleep(5);
    }
    return true;
}
