#include "pricecomparison.h"

#include <hostapi/round.h>

#include <QtMath>

namespace {
const double kTiny = 1e-12;
}

PriceComparison::PriceComparison(double ownPrice, const QList<double> &cloudPrices)
    : m_own(ownPrice), m_cloud(cloudPrices)
{
    if (m_cloud.isEmpty())
        return;
    double sum = 0.0;
    for (double price : cloudPrices)
        sum += price;
    m_averageText = Round(sum / m_cloud.size(), 2, false);
    m_average = m_averageText.toDouble();
}

bool PriceComparison::deviation(double own, double cloud, double *rate)
{
    if (qAbs(own) <= kTiny || own < 0 || qAbs(cloud) <= kTiny)
        return false;
    if (rate)
        *rate = Round((own - cloud) / cloud * 100, 2, false).toDouble();
    return true;
}

QString PriceComparison::deviationText(double own, double cloud)
{
    if (!deviation(own, cloud, nullptr))
        return QStringLiteral("-");
    QString text = Round((own - cloud) / cloud * 100, 2, false);
    if (text.isEmpty())
        text = QStringLiteral("0.00");
    return text + QLatin1Char('%');
}

QString PriceComparison::priceText(int i) const
{
    return Round(m_cloud.value(i), 2, false);
}

QString PriceComparison::deviationText(int i) const
{
    return deviationText(m_own, m_cloud.value(i));
}

QString PriceComparison::ownPriceText() const
{
    return m_own == 0 ? QString() : QStringLiteral("%1").arg(m_own, 0, 'g', -1);
}
