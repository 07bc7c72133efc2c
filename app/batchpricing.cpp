#include "batchpricing.h"

#include <smartpricing/pricingmatch.h>

#include <hostapi/basedataitem.h>

#include <QJsonArray>

BatchPricing::BatchPricing(const LtdInfo &server, bool skipPriced, int gcType, const QStringList &projectIds,
                           const TQDNodeInfo &attributes)
    : m_server(server), m_skipPriced(skipPriced), m_gcType(gcType), m_projectIds(projectIds), m_attributes(attributes)
{
}

void BatchPricing::plan(const QList<BaseDataItem *> &bills,
                        const std::function<JJBTableBase *(BaseDataItem *)> &tableOf)
{
    m_rows.clear();
    for (BaseDataItem *bill : bills) {
        Row row;
        row.bill = bill;
        row.before = bill->data(BaseDataItem::UnitPriceRole).toDouble();
        row.note = skipReason(bill, tableOf ? tableOf(bill) : nullptr);
        if (!row.note.isEmpty())
            row.outcome = Skipped;
        m_rows.append(row);
    }
}

QString BatchPricing::skipReason(const BaseDataItem *bill, JJBTableBase *table) const
{
    if (!PricingMatch::canMatch(bill))
        return QStringLiteral("临时删除");
    if (PricingMatch::isOrganisationMeasure(bill, table))
        return QStringLiteral("组织措施项目");
    if (qFuzzyIsNull(bill->data(BaseDataItem::QuantityRole).toDouble()))
        return QStringLiteral("工程量为零");
    if (m_skipPriced && !qFuzzyIsNull(bill->data(BaseDataItem::UnitPriceRole).toDouble()))
        return QStringLiteral("已有单价");
    return QString();
}

QList<QJsonObject> BatchPricing::requests() const
{
    PricingMatch match;
    match.attributes = m_attributes;
    match.qdly = m_gcType;
    match.projectIds = m_projectIds;
    QList<QJsonObject> envelopes;
    for (const Row &row : m_rows) {
        if (row.outcome == Pending)
            envelopes.append(match.request(&m_server, row.bill).toJson());
    }
    return envelopes;
}

QString BatchPricing::takeReplies(const QList<QJsonObject> &replies)
{
    QString refusal;
    int next = 0;
    for (Row &row : m_rows) {
        if (row.outcome != Pending)
            continue;
        const QJsonObject reply = replies.value(next++);
        const QJsonObject best = reply.value(QStringLiteral("data")).toArray().first().toObject();
        const bool ok = !reply.isEmpty() && reply.value(QStringLiteral("code")).toInt(-1) == 0;
        if (!ok && refusal.isEmpty())
            refusal = reply.isEmpty() ? QStringLiteral("云端未响应") : reply.value(QStringLiteral("msg")).toString();
        // A cloud bill always has a numeric id; anything else is no match to
        // write into the project.
        row.outcome = ok && best.value(QStringLiteral("id")).isDouble() ? Applied : NoMatch;
        row.match = row.outcome == Applied ? best : QJsonObject();
        if (row.outcome == NoMatch)
            row.note = ok ? QStringLiteral("没有匹配的组价") : reply.value(QStringLiteral("msg")).toString();
    }
    return refusal;
}

QList<QPair<BaseDataItem *, QJsonObject>> BatchPricing::choices() const
{
    QList<QPair<BaseDataItem *, QJsonObject>> list;
    for (const Row &row : m_rows) {
        if (row.outcome == Applied)
            list.append(qMakePair(row.bill, row.match));
    }
    return list;
}

int BatchPricing::count(Outcome outcome) const
{
    int n = 0;
    for (const Row &row : m_rows)
        n += row.outcome == outcome ? 1 : 0;
    return n;
}

QString BatchPricing::summaryText() const
{
    return QStringLiteral("已组价 %1 条，未匹配 %2 条，跳过 %3 条").arg(count(Applied)).arg(count(NoMatch)).arg(count(Skipped));
}

QString BatchPricing::outcomeText(Outcome outcome)
{
    switch (outcome) {
    case Applied:
        return QStringLiteral("已组价");
    case NoMatch:
        return QStringLiteral("未匹配");
    case Skipped:
        return QStringLiteral("跳过");
    default:
        return QString();
    }
}
