#pragma once
#include "pricecheckreportrow.h"

#include <QList>
#include <QWidget>

namespace QtCharts {
class QChartView;
}

// The report's two charts: how many bills fall into each deviation range,
// and the bills that deviate most.
class PriceCheckReportChart : public QWidget
{
    Q_OBJECT
public:
    explicit PriceCheckReportChart(QWidget *parent = nullptr);

    void setRows(const QList<PriceCheckReportRow> &rows);
    // The two halves of setRows, for a caller that paints between them.
    void showDistribution(const QList<PriceCheckReportRow> &rows);
    void showWorst(const QList<PriceCheckReportRow> &rows);
    QtCharts::QChartView *distributionView() const { return m_distribution; }
    QtCharts::QChartView *worstView() const { return m_worst; }

private:
    QtCharts::QChartView *m_distribution = nullptr;
    QtCharts::QChartView *m_worst = nullptr;
};
