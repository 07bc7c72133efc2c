#pragma once
#include <QJsonObject>
#include <QList>
#include <QObject>

#include <atomic>

class QThread;

// Sends the match requests of a batch pricing on a worker thread, one after
// the other. The worker sees only the prepared envelopes; progress and the
// replies reach the GUI thread by queued calls. A cancelled run delivers
// nothing, so the project stays as it was.
class BatchPricingRun : public QObject
{
    Q_OBJECT
public:
    explicit BatchPricingRun(QObject *parent = nullptr);
    // Cancels a running batch and waits for its thread.
    ~BatchPricingRun() override;

    void start(const QList<QJsonObject> &requests);
    void cancel();
    bool isRunning() const;
    // The replies of the finished run, in request order; it ends early at an
    // unanswered request, the last reply then being empty.
    QList<QJsonObject> takeReplies();

signals:
    void progress(int done, int total);
    void finished();
    void cancelled();

private:
    void stopThread();
    void threadDone(unsigned run, bool complete, const QList<QJsonObject> &replies);

    QThread *m_thread = nullptr;
    std::atomic<bool> m_cancel{false};
    std::atomic<unsigned> m_run{0};
    QList<QJsonObject> m_replies;
};
