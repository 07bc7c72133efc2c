#include "pricecheckreportchart.h"
#include "pricecheckreport.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QHBoxLayout>
#include <QHorizontalBarSeries>
#include <QValueAxis>

#include <algorithm>

using namespace QtCharts;

namespace {
const int kWorstCount = 10;

QChartView *chartView(const QString &title, QWidget *parent)
{
    auto *chart = new QChart;
    chart->setTitle(title);
    chart->legend()->hide();
    chart->setAnimationOptions(QChart::NoAnimation);
    auto *view = new QChartView(chart, parent);
    view->setRenderHint(QPainter::Antialiasing);
    return view;
}

void replaceSeries(QChart *chart, QAbstractBarSeries *series, QBarCategoryAxis *categories, QValueAxis *values,
                   bool horizontal)
{
    QFont small = chart->font();
    small.setPixelSize(10);
    categories->setLabelsFont(small);
    values->setLabelsFont(small);
    chart->removeAllSeries();
    for (QAbstractAxis *axis : chart->axes())
        chart->removeAxis(axis);
    chart->addSeries(series);
    chart->addAxis(categories, horizontal ? Qt::AlignLeft : Qt::AlignBottom);
    chart->addAxis(values, horizontal ? Qt::AlignBottom : Qt::AlignLeft);
    series->attachAxis(categories);
    series->attachAxis(values);
}
}

PriceCheckReportChart::PriceCheckReportChart(QWidget *parent) : QWidget(parent)
{
    m_distribution = chartView(QStringLiteral("偏差率分布（%，清单数）"), this);
    m_distribution->setObjectName(QStringLiteral("chartDistribution"));
    m_worst = chartView(QStringLiteral("偏差最大的%1条清单（%）").arg(kWorstCount), this);
    m_worst->setObjectName(QStringLiteral("chartWorst"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_distribution, 1);
    layout->addWidget(m_worst, 1);
}

void PriceCheckReportChart::setRows(const QList<PriceCheckReportRow> &rows)
{
    showDistribution(rows);
    showWorst(rows);
}

void PriceCheckReportChart::showDistribution(const QList<PriceCheckReportRow> &rows)
{
    auto *set = new QBarSet(QStringLiteral("清单数"));
    set->setColor(QColor(0x2F, 0x7C, 0xF6));
    auto *categories = new QBarCategoryAxis;
    int most = 0;
    for (const auto &range : PriceCheckReport::distribution(rows)) {
        *set << range.second;
        categories->append(range.first);
        most = std::max(most, range.second);
    }
    auto *series = new QBarSeries;
    series->append(set);
    series->setLabelsVisible(true);
    auto *values = new QValueAxis;
    values->setRange(0, std::max(4, most + most / 10 + 1));
    values->applyNiceNumbers();
    values->setLabelFormat(QStringLiteral("%d"));
    replaceSeries(m_distribution->chart(), series, categories, values, false);
}

void PriceCheckReportChart::showWorst(const QList<PriceCheckReportRow> &rows)
{
    QList<PriceCheckReportRow> worst = PriceCheckReport::worst(rows, kWorstCount);
    std::reverse(worst.begin(), worst.end());
    auto *set = new QBarSet(QStringLiteral("偏差率"));
    set->setColor(QColor(0xF5, 0x6C, 0x6C));
    auto *categories = new QBarCategoryAxis;
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < worst.size(); ++i) {
        const PriceCheckReportRow &row = worst.at(i);
        *set << row.deviation;
        // The rank keeps labels of look-alike bills apart.
        categories->append(row.code);
        low = std::min(low, row.deviation);
        high = std::max(high, row.deviation);
    }
    auto *series = new QHorizontalBarSeries;
    series->append(set);
    auto *values = new QValueAxis;
    values->setRange(low * 1.1, high * 1.1);
    values->applyNiceNumbers();
    values->setLabelFormat(QStringLiteral("%.0f%%"));
    replaceSeries(m_worst->chart(), series, categories, values, true);
}
