#pragma once
#include <QString>

class BaseDataItem;

// One bill of the project unit-price check report: what was read from the
// bill on the GUI thread, and what the check found.
struct PriceCheckReportRow
{
    // Only for the GUI thread (highlighting, going to the bill).
    BaseDataItem *bill = nullptr;
    QString code;
    QString name;
    QString unit;
    QString features;
    QString workContent;
    double ownPrice = 0.0;

    int cloudCount = 0;
    // Rounded average of the similar bills' prices; empty without any.
    QString averageText;
    double average = 0.0;
    bool hasDeviation = false;
    double deviation = 0.0;
    // "-" without a deviation, as the check browser shows it.
    QString deviationText = QStringLiteral("-");
};
