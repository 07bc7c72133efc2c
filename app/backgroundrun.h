#pragma once
#include <QObject>

#include <atomic>
#include <functional>

class QThread;

// A long host job on a thread of its own. Progress and the end reach the GUI
// thread by queued signals; a run that is cancelled or replaced by a newer
// one delivers nothing. The job sees only what it captured, never widgets.
class BackgroundRun : public QObject
{
    Q_OBJECT
public:
    // Reports progress; false once the run is cancelled (the job then stops).
    using Step = std::function<bool(int done, int total)>;
    // Returns whether it ran to its end.
    using Job = std::function<bool(const Step &step)>;

    explicit BackgroundRun(QObject *parent = nullptr);
    // Cancels a running job and waits for its thread.
    ~BackgroundRun() override;

    void cancel();
    bool isRunning() const;

signals:
    void progress(int done, int total);
    void finished();
    void cancelled();
    // Queued to the GUI thread and empty: the thread sanitizer cannot see a
    // posted event's hand-over, so what they announce travels in atomics.
    void progressPending(QPrivateSignal);
    void endPending(QPrivateSignal);

protected:
    void startJob(Job job);
    // Called on the GUI thread just before finished(), for the newest run
    // only: the place to take over what the job wrote.
    virtual void deliver() {}

private:
    void stopThread();
    void showProgress();
    void threadDone();

    QThread *m_thread = nullptr;
    std::atomic<bool> m_cancel{false};
    std::atomic<unsigned> m_run{0};
    std::atomic<int> m_done{0};
    std::atomic<int> m_total{0};
    std::atomic<unsigned> m_progressRun{0};
    std::atomic<bool> m_complete{false};
    std::atomic<unsigned> m_endRun{0};
};
