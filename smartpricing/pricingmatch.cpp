#include "pricingmatch.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudtier.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/jjbtablebase.h>

#include <QJsonArray>

CloudRequest PricingMatch::request(const LtdInfo *server, const BaseDataItem *bill) const
{
    // The matcher takes both numbers as text, unlike the other services.
    CloudRequest request(server, QStringLiteral("getppqd"));
    request.set(QStringLiteral("usetype"), QString::number(usetypeFor(tierOf(server))))
        .set(QStringLiteral("ltdID"), QString::number(qiyeIdFor(server)))
        .set(QStringLiteral("cond"), condition(bill))
        .set(QStringLiteral("getzj"), QStringLiteral("1"))
        .set(QStringLiteral("tagNum"), QStringLiteral("10"))
        .set(QStringLiteral("data"), QJsonArray{billObject(bill)});
    return request;
}

QJsonObject PricingMatch::condition(const BaseDataItem *bill) const
{
    return QJsonObject{{QStringLiteral("jsfsIndex"), attributes.jsfsIndex},
                       {QStringLiteral("jswjIndex"), attributes.jswjIndex},
                       {QStringLiteral("delbIndex"), attributes.delbIndex},
                       {QStringLiteral("ddCode"), attributes.ddCode},
                       {QStringLiteral("dateB"), attributes.dateB},
                       {QStringLiteral("qdly"), qdly},
                       {QStringLiteral("gcids"), QJsonArray::fromStringList(projectIds)},
                       {QStringLiteral("qdkey"), keyword},
                       {QStringLiteral("xxdezy"), CloudBusiness::GetXxDeZyCode(bill)}};
}

QJsonObject PricingMatch::billObject(const BaseDataItem *bill)
{
    if (!bill)
        return QJsonObject();
    const QString kind = bill->text(BaseDataItem::KindRole).toUpper();
    const bool measure = kind.contains(CXMZJXQDAEnName) || kind.contains(CXMZJXQDBEnName);
    return QJsonObject{{QStringLiteral("qdbh"), measure ? bill->GetCsQdbh() : bill->text(BaseDataItem::CodeRole)},
                       {QStringLiteral("xmmc"), bill->text(BaseDataItem::NameRole)},
                       {QStringLiteral("gznr"), bill->text(BaseDataItem::WorkContentRole)},
                       {QStringLiteral("xmtz"), bill->text(BaseDataItem::FeaturesRole)},
                       {QStringLiteral("sjkm"), subjectCode(bill)},
                       {QStringLiteral("dw"), bill->text(BaseDataItem::UnitRole)},
                       {QStringLiteral("guidb"), QString::number(bill->GetID())}};
}

QString PricingMatch::subjectCode(const BaseDataItem *bill)
{
    if (!bill)
        return QString();
    return bill->IsSelfMade() ? QStringLiteral("自编") : bill->text(BaseDataItem::KindRole).toUpper();
}

bool PricingMatch::canMatch(const BaseDataItem *bill)
{
    return bill && bill->isBill() && !bill->IsTempDeleted();
}

bool PricingMatch::isOrganisationMeasure(const BaseDataItem *bill, const JJBTableBase *table)
{
    return bill && table && table->isMeasureTable() && bill->IsExcludeInChain();
}

CloudRequest PricingMatch::projectInfoRequest(const LtdInfo *server, const CloudZjBean &bill)
{
    CloudRequest request = CloudRequest::tiered(server, QStringLiteral("intelligencezjforpersonprojectinfo"),
                                                QStringLiteral("intelligencezjforkvprojectinfo"),
                                                QStringLiteral("intelligencezjforenterpriseprojectinfo"));
    request.withEnterpriseQiyeId().set(QStringLiteral("id"), bill.getId()).set(QStringLiteral("ly"), bill.getLy());
    return request;
}
