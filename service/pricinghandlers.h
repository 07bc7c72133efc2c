#pragma once
#include "billcatalog.h"
#include "billstore.h"
#include "handlergroup.h"
#include "readcache.h"
#include "tierscope.h"

// Matching and the information behind matched bills: "getppqd", the
// project-information methods of pricing and of the unit-price check, and the
// host's "matchqdtz", "getgcsldata", "getsimilarbillprices" and
// "getaccumulatedprojects".
class PricingHandlers : public HandlerGroup
{
public:
    using HandlerGroup::HandlerGroup;
    void registerOn(QHash<QString, MethodHandler> &table) override;

private:
    QJsonObject matchedBills(const RequestContext &request);
    QJsonObject projectInfo(const RequestContext &request, TierScope::Admits admits);
    QJsonObject featureMatches(const RequestContext &request);
    QJsonObject sourceInfo(const RequestContext &request);
    QJsonObject similarBills(const RequestContext &request);
    QJsonObject accumulatedProjects(const RequestContext &request);

    static BillCatalog::Query billQuery(const QJsonObject &bill);
    // The bill `id` when `scope` may see it; throws NotFound otherwise.
    BillStore::Bill visibleBill(const TierScope &scope, qint64 id);
    // {"id", "qdly", "qdbh", ...}: one priced bill as the pricing browsers read it.
    QJsonObject pricedBill(const BillStore::Bill &bill, bool withComposition);
    QString uploaderName(const BillStore::Bill &bill, const BillStore::Project &project);

    // Matched bills as priced, by id: the same few answer most queries.
    ReadCache m_pricedBills{1000};
};
