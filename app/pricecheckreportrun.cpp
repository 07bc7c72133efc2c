#include "pricecheckreportrun.h"
#include "pricecheckreport.h"

#include <QMetaObject>
#include <QThread>

PriceCheckReportRun::PriceCheckReportRun(QObject *parent) : QObject(parent) {}

PriceCheckReportRun::~PriceCheckReportRun()
{
    stopThread();
}

void PriceCheckReportRun::stopThread()
{
    m_cancel = true;
    if (!m_thread)
        return;
    m_thread->wait();
    delete m_thread;
    m_thread = nullptr;
}

void PriceCheckReportRun::start(const QList<PriceCheckReportRow> &rows, const LtdInfo &server, int matchNum)
{
    stopThread();
    m_cancel = false;
    const unsigned run = ++m_run;
    const int total = rows.size();
    // The destructor waits for the thread, so `this` outlives it; queued
    // calls to a deleted run are dropped by Qt.
    m_thread = QThread::create([this, rows, server, matchNum, run, total] {
        QList<PriceCheckReportRow> work = rows;
        const bool complete = PriceCheckReport::run(work, server, matchNum, [&](int done) {
            if (m_cancel)
                return false;
            QMetaObject::invokeMethod(this, [this, run, done, total] {
                if (m_run == run && !m_cancel)
                    emit progress(done, total);
            }, Qt::QueuedConnection);
            return true;
        });
        QMetaObject::invokeMethod(this, [this, run, complete, work] { threadDone(run, complete, work); },
                                  Qt::QueuedConnection);
    });
    m_thread->start();
}

void PriceCheckReportRun::threadDone(unsigned run, bool complete, const QList<PriceCheckReportRow> &rows)
{
    if (run != m_run)
        return;
    if (!complete || m_cancel) {
        emit cancelled();
        return;
    }
    m_rows = rows;
    emit finished();
}

void PriceCheckReportRun::cancel()
{
    // Also wins over a run whose end is still on its way to the GUI thread.
    if (m_thread)
        m_cancel = true;
}

bool PriceCheckReportRun::isRunning() const
{
    return m_thread && m_thread->isRunning();
}

QList<PriceCheckReportRow> PriceCheckReportRun::takeRows()
{
    QList<PriceCheckReportRow> rows;
    rows.swap(m_rows);
    return rows;
}
