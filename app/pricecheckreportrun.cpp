#include "pricecheckreportrun.h"
#include "pricecheckreport.h"

void PriceCheckReportRun::start(const QList<PriceCheckReportRow> &rows, const LtdInfo &server, int matchNum)
{
    m_rows.clear();
    const auto work = std::make_shared<QList<PriceCheckReportRow>>(rows);
    m_work = work;
    startJob([work, server, matchNum](const Step &step) {
        const int total = work->size();
        return PriceCheckReport::run(*work, server, matchNum, [&](int done) { return step(done, total); });
    });
}

void PriceCheckReportRun::deliver()
{
    m_rows = *m_work;
}

QList<PriceCheckReportRow> PriceCheckReportRun::takeRows()
{
    QList<PriceCheckReportRow> rows;
    rows.swap(m_rows);
    return rows;
}
