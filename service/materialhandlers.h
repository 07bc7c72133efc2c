#pragma once
#include "handlergroup.h"
#include "readcache.h"
#include "tierscope.h"

// Material price libraries: "materiallist", "getenterprisepricelist",
// "personmaterialedit", "enterprisematrialedit", "isauthorityforenterprise",
// and the host's "getmaterialcheckrecords" and "savematerialprices".
class MaterialHandlers : public HandlerGroup
{
public:
    using HandlerGroup::HandlerGroup;
    void registerOn(QHash<QString, MethodHandler> &table) override;

private:
    QJsonObject personalList(const RequestContext &request);
    QJsonObject enterpriseList(const RequestContext &request);
    QJsonObject editLibrary(const RequestContext &request, TierScope::Admits admits, const QString &nameKey);
    QJsonObject authority(const RequestContext &request);
    QJsonObject checkRecords(const RequestContext &request);
    QJsonObject savePrices(const RequestContext &request);

    QJsonArray libraries(const TierScope &scope);
    // Throws NotFound unless `id` is a price library of the scope's tier.
    void requireOwnLibrary(const TierScope &scope, const QString &id);

    // Price library lists by tier scope.
    ReadCache m_lists;
};
