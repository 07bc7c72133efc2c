#pragma once
#include <hostapi/cloudcjyjcbean.h>

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

class GljBean;

// The host's memory of the last material price check: the cloud price of
// each checked material and the highlight rate. Deviations follow the
// materials' current prices, so an applied cloud price stops standing out.
class MaterialDeviations
{
public:
    struct Excess
    {
        QString name;
        double amount = 0.0;  // (price − cloud price) × quantity
        double deviation = 0.0;
    };

    // Results of a check (records without a cloud price are left out).
    void setResults(const QList<CloudCjyjcBean> &results);
    bool isEmpty() const { return m_cloudPrices.isEmpty(); }
    void setRate(const QString &rate) { m_rate = rate; }
    QString rate() const { return m_rate; }

    std::optional<double> deviation(const GljBean &material) const;
    // +1 above the cloud price by more than the rate, -1 below, 0 otherwise.
    int standing(const GljBean &material) const;
    // Materials above their cloud price, the largest excess first.
    QList<Excess> ranking(const QList<GljBean *> &materials, int limit) const;

private:
    QHash<int, double> m_cloudPrices;
    QString m_rate = QStringLiteral("10");
};
