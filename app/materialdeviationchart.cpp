#include "materialdeviationchart.h"

#include <hostapi/buttonrow.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/round.h>

#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSet>
#include <QtCharts/QChartView>
#include <QtCharts/QHorizontalBarSeries>
#include <QtCharts/QValueAxis>
#include <QVBoxLayout>

using namespace QtCharts;

MaterialDeviationChart::MaterialDeviationChart(const QList<MaterialDeviations::Excess> &ranking, QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(QStringLiteral("材价偏差分析"));
    setScaledFixedSize(760, 520);
    auto *set = new QBarSet(QStringLiteral("高于云单价的金额（元）"));
    set->setColor(QColor(65, 127, 249));
    QStringList names;
    // The largest excess at the top of the chart.
    for (int i = ranking.size() - 1; i >= 0; --i) {
        const MaterialDeviations::Excess &e = ranking.at(i);
        *set << Round(e.amount, 2, true).toDouble();
        names << QStringLiteral("%1（+%2%）").arg(e.name, Round(e.deviation, 2, true));
    }
    auto *series = new QHorizontalBarSeries;
    series->append(set);
    series->setLabelsVisible(true);
    series->setLabelsFormat(QStringLiteral("@value"));
    series->setLabelsPrecision(12);
    m_chart = new QChart;
    m_chart->addSeries(series);
    m_chart->setTitle(ranking.isEmpty() ? QStringLiteral("没有调价高于云单价的材料")
                                        : QStringLiteral("调价高于云单价的材料（按数量加权，前%1项）").arg(Limit));
    auto *nameAxis = new QBarCategoryAxis;
    nameAxis->append(names);
    m_chart->addAxis(nameAxis, Qt::AlignLeft);
    series->attachAxis(nameAxis);
    auto *amounts = new QValueAxis;
    amounts->setLabelFormat(QStringLiteral("%.0f"));
    amounts->applyNiceNumbers();
    m_chart->addAxis(amounts, Qt::AlignBottom);
    series->attachAxis(amounts);
    amounts->applyNiceNumbers();
    m_chart->legend()->setAlignment(Qt::AlignBottom);
    m_chart->setBackgroundRoundness(0);
    auto *view = new QChartView(m_chart, clientWidget());
    view->setObjectName(QStringLiteral("chartPcl"));
    view->setRenderHint(QPainter::Antialiasing);
    auto *body = new QVBoxLayout;
    const int m = InterfaceAdaptation::scaled(12);
    body->setContentsMargins(m, m, m, m);
    body->addWidget(view, 1);
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(72, 28);
    buttons->addOk(this);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
}
