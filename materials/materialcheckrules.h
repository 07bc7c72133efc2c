#pragma once
#include <hostapi/cloudcjyjcbean.h>

#include <QList>
#include <QString>

// The rules of the material price check, without a window: the cloud price
// and deviation of one material, the place a check is scoped to, the tax
// basis label and the highlight-rate input.
class MaterialCheckRules
{
public:
    // Cloud price of a material without records.
    static constexpr double NoCloudPrice = -1000.0;

    struct Outcome
    {
        double cloudPrice = NoCloudPrice;
        QString priceText;  // "无" without records
        QString pcl;        // "null" without records, else with "%"
        bool hasCloudPrice() const { return cloudPrice != NoCloudPrice; }
    };

    // Mean of the records of material `key` (tax-included or not) against
    // the adjusted price `tj`.
    static Outcome evaluate(const QList<CloudCjyjcBean> &records, int key, double tj, bool taxIncluded);
    // (tj − cloud) / cloud in percent with "%"; "100%" for a zero cloud
    // price, "0.00%" when both agree to 12 digits.
    static QString deviationText(double tj, double cloudPrice);
    // The deviation as a number ("20.00%" -> 20); 0 for "null".
    static double deviationOf(const QString &pcl);

    // The last administrative unit of a place ("四川省成都市金牛区" -> "金牛区"),
    // after a "caption:" prefix; a place without units stays whole.
    static QString reducePlace(const QString &placeLabel);
    // "不含税" for "一般计税", "含税" for "简易计税"/"营业税", else `current`.
    static QString priceBasisLabel(const QString &taxMode, const QString &current);
    // The highlight-rate field while typing: above 100 becomes "100", a
    // leading zero is dropped.
    static QString rateInput(const QString &typed);
};
