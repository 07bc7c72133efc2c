#include "cloudworkerrequest.h"
#include "cloudexchange.h"

#include <hostapi/cloudenvelope.h>
#include <hostapi/exceptionguard.h>

#include <QAtomicInt>
#include <QElapsedTimer>
#include <QFutureInterface>
#include <QFutureWatcher>
#include <QThread>

#include <mutex>

struct CloudWorkerRequest::Shared
{
    // A std::mutex (pthreads) rather than QMutex: the thread sanitizer sees
    // it, while QMutex's contended path runs inside Qt where it cannot look.
    mutable std::mutex mutex;
    QJsonObject reply;
    unsigned storedSequence = 0;
};

namespace {
QAtomicInt s_running;
}

CloudWorkerRequest::CloudWorkerRequest(const GuardSite &site)
    : QObject(site.owner()), m_site(site), m_shared(std::make_shared<Shared>())
{
    qRegisterMetaType<CloudReply>();
}

CloudWorkerRequest::~CloudWorkerRequest() = default;

unsigned CloudWorkerRequest::start(Job job, const char *caller, int line)
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
    const GuardSite site = m_site.detached();
    s_running.ref();
    QThread *thread = QThread::create([shared, site, caller, line, job = std::move(job), sequence, result]() mutable {
        QJsonObject reply;
        const bool ok = guardedCallOr(false, site, line, caller, [&] { return job(reply); });
        {
            std::lock_guard<std::mutex> lock(shared->mutex);
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

unsigned CloudWorkerRequest::start(const CloudRequest &request, const char *caller, int line)
{
    // Built here: the worker must not read the server entry while the GUI
    // thread may update it.
    const QJsonObject envelope = request.toJson();
    return start([envelope](QJsonObject &reply) {
        reply = CloudEnvelope::send(envelope);
        return true;
    }, caller, line);
}

void CloudWorkerRequest::discardPending()
{
    ++m_sequence;
}

CloudReply CloudWorkerRequest::lastReply() const
{
    std::lock_guard<std::mutex> lock(m_shared->mutex);
    return CloudReply(m_shared->reply);
}

void CloudWorkerRequest::deliver(unsigned sequence, bool hasReply)
{
    if (!hasReply || sequence != m_sequence)
        return;
    QJsonObject reply;
    {
        std::lock_guard<std::mutex> lock(m_shared->mutex);
        if (m_shared->storedSequence != sequence)
            return;
        reply = m_shared->reply;
    }
    emit signalReply(sequence, CloudReply(reply));
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
