#include "materiallibraryrequests.h"

#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>

namespace {
bool personal(const LtdInfo *server)
{
    return server && server->getToken() == KvTokenUser;
}
}

CloudRequest MaterialLibraryRequests::list(const LtdInfo *server)
{
    if (personal(server))
        return CloudRequest(server, QStringLiteral("materiallist"));
    return CloudRequest(server, QStringLiteral("getenterprisepricelist"))
        .set(QStringLiteral("klb"), QStringLiteral("cj"))
        .set(QStringLiteral("qiyeID"), server ? server->getQyid() : 0);
}

bool MaterialLibraryRequests::needsPermission(const LtdInfo *server)
{
    return server && server->getToken() != KvTokenUser && server->getToken() != KvToken;
}

CloudRequest MaterialLibraryRequests::permission(const LtdInfo *server)
{
    return CloudRequest(server, QStringLiteral("isauthorityforenterprise"))
        .set(QStringLiteral("qiyeId"), server ? server->getQyid() : 0);
}

CloudRequest MaterialLibraryRequests::edit(const LtdInfo *server, Oper oper, const QString &libraryId,
                                           const QString &name)
{
    if (personal(server))
        return CloudRequest(server, QStringLiteral("personmaterialedit"))
            .set(QStringLiteral("sjksyid"), libraryId)
            .set(QStringLiteral("kmc"), name)
            .set(QStringLiteral("oper"), int(oper));
    return CloudRequest(server, QStringLiteral("enterprisematrialedit"))
        .set(QStringLiteral("sjksyid"), libraryId)
        .set(QStringLiteral("kuName"), name)
        .set(QStringLiteral("oper"), int(oper))
        .set(QStringLiteral("qiyeId"), server ? server->getQyid() : 0);
}
