#pragma once
#include "pricecheckreportrow.h"

#include <hostapi/ltdinfo.h>

#include <QList>
#include <QObject>

#include <atomic>

class QThread;

// Runs the project unit-price check on a worker thread. The worker sees only
// copies of the bills' texts; progress and the end reach the GUI thread by
// queued signals. A run that is cancelled or replaced delivers nothing.
class PriceCheckReportRun : public QObject
{
    Q_OBJECT
public:
    explicit PriceCheckReportRun(QObject *parent = nullptr);
    // Cancels a running check and waits for its thread.
    ~PriceCheckReportRun() override;

    void start(const QList<PriceCheckReportRow> &rows, const LtdInfo &server, int matchNum);
    void cancel();
    bool isRunning() const;
    // The rows of the finished run (empty after a cancel).
    QList<PriceCheckReportRow> takeRows();

signals:
    void progress(int done, int total);
    void finished();
    void cancelled();

private:
    void stopThread();
    void threadDone(unsigned run, bool complete, const QList<PriceCheckReportRow> &rows);

    QThread *m_thread = nullptr;
    std::atomic<bool> m_cancel{false};
    std::atomic<unsigned> m_run{0};
    QList<PriceCheckReportRow> m_rows;
};
