#include "cloudbusiness.h"
#include "serverregistry.h"
#include "basedataitem.h"
#include "cloudparams.h"
#include "cloudenvelope.h"
#include "hostconstants.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace {
// The bill fields every matching call sends.
QJsonObject billFields(const BaseDataItem &item)
{
    return QJsonObject{{QStringLiteral("qdbh"), item.text(BaseDataItem::CodeRole)},
                       {QStringLiteral("xmmc"), item.text(BaseDataItem::NameRole)},
                       {QStringLiteral("jldw"), item.text(BaseDataItem::UnitRole)},
                       {QStringLiteral("xmtz"), item.text(BaseDataItem::FeaturesRole)},
                       {QStringLiteral("gznr"), item.text(BaseDataItem::WorkContentRole)}};
}

bool succeeded(const QJsonObject &reply)
{
    return !reply.isEmpty() && reply.value(QStringLiteral("code")).toInt(0) == 0;
}

// The Korvane-account entries are in every list; an empty filter adds the
// enterprise servers, a kind name ("cj") the servers of that kind instead.
// The material price servers come last in the host's list, so the enterprise
// entries keep their host indexes in the filtered list.
bool inList(const LtdInfo *entry, const QString &filter)
{
    const QString kind = entry->kind();
    if (kind == QLatin1String("kv"))
        return true;
    if (filter.isEmpty())
        return kind != QLatin1String("cj");
    return kind == filter;
}
}

bool CloudBusiness::requestServerList(QList<LtdInfo *> &list, QString filter)
{
    list.clear();
    ServerRegistry *registry = ServerRegistry::instance();
    if (!registry->refresh())
        return false;
    for (LtdInfo *entry : registry->servers())
        if (inList(entry, filter))
            list << entry;
    return true;
}

bool CloudBusiness::hasPriServer(QList<LtdInfo *> &list)
{
    for (const LtdInfo *entry : qAsConst(list))
        if (entry && entry->kind() == QLatin1String("pri"))
            return true;
    return false;
}

bool CloudBusiness::MatchQdtz(BaseDataItem *item, CloudParams params, LtdInfo *server, QJsonObject &reply,
                              int sourceMask, QStringList projectIds)
{
    reply = QJsonObject();
    if (!item || !server)
        return false;
    QJsonObject fields = billFields(*item);
    fields.insert(QStringLiteral("params"), params.toJson());
    fields.insert(QStringLiteral("sourceMask"), sourceMask);
    fields.insert(QStringLiteral("gcids"), QJsonArray::fromStringList(projectIds));
    reply = CloudEnvelope::send(CloudEnvelope::tiered(QStringLiteral("matchqdtz"), *server, fields));
    return !reply.isEmpty();
}

bool CloudBusiness::RequestGcslData(LtdInfo *server, QString &id, QJsonObject &reply)
{
    reply = QJsonObject();
    if (!server || id.isEmpty())
        return false;
    reply = CloudEnvelope::send(
        CloudEnvelope::tiered(QStringLiteral("getgcsldata"), *server, QJsonObject{{QStringLiteral("id"), id}}));
    return succeeded(reply);
}

bool CloudBusiness::RequestSimilarBillPrices(BaseDataItem *item, LtdInfo *server, int matchNum, QStringList &bills,
                                             QString *error)
{
    bills.clear();
    if (error)
        error->clear();
    if (!item || !server)
        return false;
    QJsonObject fields = billFields(*item);
    fields.insert(QStringLiteral("matchNum"), matchNum);
    return TakeSimilarBillPrices(
        CloudEnvelope::send(CloudEnvelope::tiered(QStringLiteral("getsimilarbillprices"), *server, fields)), bills,
        error);
}

bool CloudBusiness::TakeSimilarBillPrices(const QJsonObject &reply, QStringList &bills, QString *error)
{
    if (!succeeded(reply)) {
        if (error)
            *error = reply.value(QStringLiteral("msg")).toString();
        return false;
    }
    for (const QJsonValue &bill : reply.value(QStringLiteral("data")).toArray())
        if (bill.isObject()) // anything else would list as an empty bill with id 0
            bills << QString::fromUtf8(QJsonDocument(bill.toObject()).toJson(QJsonDocument::Compact));
    return true;
}

QString CloudBusiness::GetXxDeZyCode(const BaseDataItem *bill)
{
    if (!bill || bill->IsSelfMade())
        return QString();
    const QString kind = bill->text(BaseDataItem::KindRole).toUpper();
    const bool measure = kind.contains(CXMZJXQDAEnName) || kind.contains(CXMZJXQDBEnName);
    const QString code = measure ? bill->GetCsQdbh() : bill->text(BaseDataItem::CodeRole);
    static const QRegularExpression national(QStringLiteral("^(\\d{2})\\d{7}"));
    const QRegularExpressionMatch m = national.match(code.trimmed());
    return m.hasMatch() ? m.captured(1) : QString();
}
