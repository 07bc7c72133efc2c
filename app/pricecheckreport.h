#pragma once
#include "pricecheckreportrow.h"

#include <hostapi/ltdinfo.h>

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

// The rules of the project unit-price check report: reading the bills,
// comparing each with the average of its most similar cloud bills, the
// deviation limit, the CSV form and the figures of the chart.
class PriceCheckReport
{
public:
    // Called after each bill with the number done; false stops the run.
    using Progress = std::function<bool(int done)>;

    static QList<PriceCheckReportRow> readBills(const QList<BaseDataItem *> &bills);
    // Fills the result part of `row` from the similar bills (CloudZjBean
    // strings), with the check browser's rounding and "-" rules.
    static void compare(PriceCheckReportRow &row, const QStringList &cloudBills);
    // Asks the cloud for every row in turn; safe on a worker thread. False
    // when `progress` stopped it (the rows are then to be dropped).
    static bool run(QList<PriceCheckReportRow> &rows, const LtdInfo &server, int matchNum, const Progress &progress);

    // The deviation lies beyond ±`limit` percent.
    static bool isBeyond(const PriceCheckReportRow &row, double limit);
    static QStringList headers();
    static QStringList cells(const PriceCheckReportRow &row);
    static QString csv(const QList<PriceCheckReportRow> &rows);

    // Bills per deviation range (percent), labels and counts, in rising order.
    static QVector<QPair<QString, int>> distribution(const QList<PriceCheckReportRow> &rows);
    // The `count` rows with the largest absolute deviation, largest first.
    static QList<PriceCheckReportRow> worst(const QList<PriceCheckReportRow> &rows, int count);
};
