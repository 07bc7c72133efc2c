#include "materialcheckrules.h"

#include <hostapi/round.h>

#include <QRegularExpression>

#include <cmath>

MaterialCheckRules::Outcome MaterialCheckRules::evaluate(const QList<CloudCjyjcBean> &records, int key, double tj,
                                                         bool taxIncluded)
{
    double sum = 0.0;
    int count = 0;
    for (const CloudCjyjcBean &r : records) {
        if (r.getGuid() != key)
            continue;
        sum += taxIncluded ? r.getYdjhs() : r.getYdjbhs();
        ++count;
    }
    Outcome out;
    if (count == 0) {
        out.priceText = QStringLiteral("无");
        out.pcl = QStringLiteral("null");
        return out;
    }
    double price = sum / count;
    if (std::fabs(price) <= 1e-12) {
        price = 0.0;
        out.priceText = QStringLiteral("0.00");
    } else {
        out.priceText = Round(price, 2, true);
        price = out.priceText.toDouble();
    }
    out.cloudPrice = price;
    out.pcl = deviationText(tj, price);
    return out;
}

QString MaterialCheckRules::deviationText(double tj, double cloudPrice)
{
    if (std::fabs(cloudPrice) <= 1e-12)
        return QStringLiteral("100%");
    if (std::min(std::fabs(cloudPrice), std::fabs(tj)) >= std::fabs(tj - cloudPrice) * 1e12)
        return QStringLiteral("0.00%");
    return Round((tj - cloudPrice) / cloudPrice * 100.0, 2, true) + QLatin1Char('%');
}

double MaterialCheckRules::deviationOf(const QString &pcl)
{
    QString number = pcl;
    number.remove(QLatin1Char('%'));
    return number.toDouble();
}

QString MaterialCheckRules::reducePlace(const QString &placeLabel)
{
    QString place = placeLabel;
    const int colon = place.indexOf(QLatin1Char(':'));
    if (colon >= 0)
        place = place.mid(colon + 1);
    static const QRegularExpression unit(QStringLiteral("[") + QStringLiteral("省市州区县") + QStringLiteral("]"));
    QRegularExpressionMatch m = unit.match(place);
    while (m.hasMatch() && m.capturedEnd() != place.size()) {
        place = place.mid(m.capturedEnd());
        m = unit.match(place);
    }
    return place;
}

QString MaterialCheckRules::priceBasisLabel(const QString &taxMode, const QString &current)
{
    if (taxMode.contains(QStringLiteral("一般计税")))
        return QStringLiteral("不含税");
    if (taxMode.contains(QStringLiteral("简易计税")) || taxMode.contains(QStringLiteral("营业税")))
        return QStringLiteral("含税");
    return current;
}

QString MaterialCheckRules::rateInput(const QString &typed)
{
    bool ok = false;
    const double value = typed.toDouble(&ok);
    if (!ok)
        return typed;
    if (value > 100)
        return QStringLiteral("100");
    const bool leadingZero = typed.size() > 1 && typed.at(0) == QLatin1Char('0') && typed.at(1).isDigit();
    if (leadingZero && ((typed.size() == 2 && value < 10) || (typed.size() == 3 && value < 100)))
        return typed.mid(1);
    return typed;
}
