#include "pricecheckreport.h"

#include <pricecheck/pricecomparison.h>

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/round.h>

#include <QtMath>

#include <algorithm>

namespace {
QString csvField(const QString &text)
{
    if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n'))
        && !text.contains(QLatin1Char('\r')))
        return text;
    return QLatin1Char('"') + QString(text).replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}
}

QList<PriceCheckReportRow> PriceCheckReport::readBills(const QList<BaseDataItem *> &bills)
{
    QList<PriceCheckReportRow> rows;
    rows.reserve(bills.size());
    for (BaseDataItem *bill : bills) {
        PriceCheckReportRow row;
        row.bill = bill;
        row.code = bill->text(BaseDataItem::CodeRole);
        row.name = bill->text(BaseDataItem::NameRole);
        row.unit = bill->text(BaseDataItem::UnitRole);
        row.features = bill->text(BaseDataItem::FeaturesRole);
        row.workContent = bill->text(BaseDataItem::WorkContentRole);
        row.ownPrice = bill->data(BaseDataItem::UnitPriceRole).toDouble();
        rows.append(row);
    }
    return rows;
}

void PriceCheckReport::compare(PriceCheckReportRow &row, const QStringList &cloudBills)
{
    QList<double> prices;
    for (const QString &text : cloudBills)
        prices.append(CloudZjBean(text).getZhdj());
    row.cloudCount = prices.size();
    const PriceComparison comparison(row.ownPrice, prices);
    row.averageText = comparison.averageText();
    row.average = comparison.average();
    row.hasDeviation = !prices.isEmpty() && comparison.averageDeviation(&row.deviation);
    row.deviationText = prices.isEmpty() ? QStringLiteral("-") : comparison.averageDeviationText();
}

bool PriceCheckReport::run(QList<PriceCheckReportRow> &rows, const LtdInfo &server, int matchNum,
                           const Progress &progress)
{
    LtdInfo entry = server;
    for (int i = 0; i < rows.size(); ++i) {
        PriceCheckReportRow &row = rows[i];
        BaseDataItem item(1, BaseDataItem::BillKind);
        item.setData(BaseDataItem::CodeRole, row.code);
        item.setData(BaseDataItem::NameRole, row.name);
        item.setData(BaseDataItem::UnitRole, row.unit);
        item.setData(BaseDataItem::FeaturesRole, row.features);
        item.setData(BaseDataItem::WorkContentRole, row.workContent);
        QStringList bills;
        CloudBusiness::RequestSimilarBillPrices(&item, &entry, matchNum, bills);
        compare(row, bills);
        if (progress && !progress(i + 1))
            return false;
    }
    return true;
}

bool PriceCheckReport::isBeyond(const PriceCheckReportRow &row, double limit)
{
    return row.hasDeviation && qAbs(row.deviation) > limit;
}

QStringList PriceCheckReport::headers()
{
    return {QStringLiteral("项目编码"), QStringLiteral("项目名称"), QStringLiteral("单位"), QStringLiteral("综合单价"),
            QStringLiteral("云平均单价"), QStringLiteral("相似清单数"), QStringLiteral("偏差率")};
}

QStringList PriceCheckReport::cells(const PriceCheckReportRow &row)
{
    const QString average = row.averageText.isEmpty() ? QString() : Round(row.average, 2, true);
    return {row.code, row.name, row.unit, Round(row.ownPrice, 2, true), average,
            QString::number(row.cloudCount), row.deviationText};
}

QString PriceCheckReport::csv(const QList<PriceCheckReportRow> &rows)
{
    QStringList lines{headers().join(QLatin1Char(','))};
    for (const PriceCheckReportRow &row : rows) {
        QStringList fields;
        for (const QString &cell : cells(row))
            fields << csvField(cell);
        lines << fields.join(QLatin1Char(','));
    }
    return lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

QVector<QPair<QString, int>> PriceCheckReport::distribution(const QList<PriceCheckReportRow> &rows)
{
    static const double edges[] = {-50, -20, -10, 0, 10, 20, 50};
    QVector<QPair<QString, int>> ranges{{QStringLiteral("＜-50"), 0},   {QStringLiteral("-50~-20"), 0},
                                        {QStringLiteral("-20~-10"), 0}, {QStringLiteral("-10~0"), 0},
                                        {QStringLiteral("0~10"), 0},     {QStringLiteral("10~20"), 0},
                                        {QStringLiteral("20~50"), 0},    {QStringLiteral("＞50"), 0}};
    for (const PriceCheckReportRow &row : rows) {
        if (!row.hasDeviation)
            continue;
        const int range = int(std::upper_bound(std::begin(edges), std::end(edges), row.deviation) - std::begin(edges));
        ++ranges[range].second;
    }
    return ranges;
}

QList<PriceCheckReportRow> PriceCheckReport::worst(const QList<PriceCheckReportRow> &rows, int count)
{
    QList<PriceCheckReportRow> found;
    for (const PriceCheckReportRow &row : rows) {
        if (row.hasDeviation)
            found.append(row);
    }
    std::stable_sort(found.begin(), found.end(), [](const PriceCheckReportRow &a, const PriceCheckReportRow &b) {
        return qAbs(a.deviation) > qAbs(b.deviation);
    });
    return found.mid(0, count);
}
