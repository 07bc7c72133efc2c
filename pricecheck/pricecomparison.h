#pragma once
#include <QList>
#include <QString>

// A bill's own composite unit price against the unit prices of its most
// similar cloud bills: the texts of the check browser's rows and of its
// summary row, and the numbers the project report sorts and charts.
class PriceComparison
{
public:
    PriceComparison(double ownPrice, const QList<double> &cloudPrices);

    // Deviation rate of `own` against `cloud` in percent, rounded to two
    // decimals; false when there is none (own price 0 or below, cloud price 0).
    static bool deviation(double own, double cloud, double *rate);
    // The deviation as shown: "-" when there is none, "0.00%" when it rounds
    // to nothing, else the rounded rate followed by "%".
    static QString deviationText(double own, double cloud);

    int count() const { return m_cloud.size(); }
    QString priceText(int i) const;
    QString deviationText(int i) const;

    // Average of the unrounded cloud prices, rounded to two decimals.
    QString averageText() const { return m_averageText; }
    double average() const { return m_average; }
    // Deviation of the own price against the rounded average.
    QString averageDeviationText() const { return deviationText(m_own, m_average); }
    bool averageDeviation(double *rate) const { return deviation(m_own, m_average, rate); }
    // Empty when the own price is 0.
    QString ownPriceText() const;

private:
    double m_own;
    QList<double> m_cloud;
    QString m_averageText;
    double m_average = 0.0;
};
