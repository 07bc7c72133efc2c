#pragma once
#include "sizeparser.h"

#include <QString>

// The size range a quota name states: "公称直径(mm以内) 100", "导线截面2.5mm2以内",
// "电缆截面(mm2) ≤10", "50kg以上". Quotas of one family differ only in that
// number; the step below a bound is the next smaller bound of the family.
class QuotaBound
{
public:
    bool valid = false;
    SizeParser::Kind kind = SizeParser::Nominal;
    double value = 0.0;
    bool atLeast = false; // "以上": the value is a lower bound
    QString family;       // the name with the bound's number left out
    // "公称直径/管外径 20/25": a quota for one size, nominal and outer; 0 when none.
    double pairNominal = 0.0;
    double pairOuter = 0.0;

    static QuotaBound parse(const QString &quotaName);
    // Whether `size` falls in (lower, value] (or above value for "以上").
    bool fits(double size, double lower) const;
};
