#pragma once
#include "backgroundrun.h"
#include "pricecheckreportrow.h"

#include <hostapi/ltdinfo.h>

#include <QList>

#include <memory>

// Runs the project unit-price check in the background on copies of the
// bills' texts.
class PriceCheckReportRun : public BackgroundRun
{
    Q_OBJECT
public:
    using BackgroundRun::BackgroundRun;

    void start(const QList<PriceCheckReportRow> &rows, const LtdInfo &server, int matchNum);
    // The rows of the finished run (empty after a cancel).
    QList<PriceCheckReportRow> takeRows();

private:
    void deliver() override;

    std::shared_ptr<QList<PriceCheckReportRow>> m_work;
    QList<PriceCheckReportRow> m_rows;
};
