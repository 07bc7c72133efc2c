#pragma once
#include "cloudreply.h"
#include "cloudrequest.h"

#include <hostapi/guardsite.h>

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>

// Host requests on detached worker threads where only the newest reply counts
// (a search that may be repeated while an answer is pending). Each start()
// takes the next sequence number and runs its job on a thread of its own; the
// job stores its reply under the shared mutex and the sequence number travels
// back to the owner's thread, which drops every number but the newest. The
// helper is parented to its site's owner (the dialog): when that dies first,
// late replies have nowhere to go and are dropped. A job that throws is
// reported under the site.
class CloudWorkerRequest : public QObject
{
    Q_OBJECT
public:
    // Runs on the worker thread: performs one host request into `reply`;
    // false means there is nothing to deliver. Capture values, never widgets.
    using Job = std::function<bool(QJsonObject &reply)>;

    explicit CloudWorkerRequest(const GuardSite &site);
    ~CloudWorkerRequest() override;

    // Starts a job; returns its sequence number. A job that throws is
    // reported as the caller's function (and line) in the site's class.
    unsigned start(Job job, const char *caller = __builtin_FUNCTION(), int line = __builtin_LINE());
    // Starts a job that sends `request` through the host's reply loop.
    unsigned start(const CloudRequest &request, const char *caller = __builtin_FUNCTION(),
                   int line = __builtin_LINE());
    // Makes every reply still on its way stale.
    void discardPending();

    unsigned newest() const { return m_sequence; }
    // The last reply stored by a worker (under the mutex).
    CloudReply lastReply() const;

    // Worker threads still running in the process (tests, shutdown).
    static int runningWorkers();
    // Waits up to `msecs` for every worker thread to end; false on time-out.
    static bool waitForWorkers(int msecs);

signals:
    // The newest reply, on the owner's thread. An unanswered request gives an
    // unanswered reply.
    void signalReply(unsigned sequence, const CloudReply &reply);

private:
    struct Shared;
    void deliver(unsigned sequence, bool hasReply);
    GuardSite m_site;
    std::shared_ptr<Shared> m_shared;
    unsigned m_sequence = 0;
};
