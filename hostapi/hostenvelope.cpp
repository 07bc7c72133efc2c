#include "hostenvelope.h"
#include "apptype.h"
#include "hostconstants.h"
#include "ltdinfo.h"
#include "servicesutil.h"

#include <QJsonDocument>

QJsonObject HostEnvelope::build(const QString &method, const QString &token, QJsonObject fields)
{
    fields.insert(QStringLiteral("method"), method);
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), AppType()},
                       {QStringLiteral("orgin_token"), token},
                       {QStringLiteral("data"), fields}};
}

QJsonObject HostEnvelope::tiered(const QString &method, const LtdInfo &server, QJsonObject fields)
{
    int qiyeId = server.getQyid();
    int useType = 2;
    if (server.getToken() == KvTokenUser) {
        qiyeId = -1;
        useType = 1;
    } else if (server.getToken() == KvToken) {
        qiyeId = 0;
        useType = 3;
    }
    fields.insert(QStringLiteral("qiyeID"), qiyeId);
    fields.insert(QStringLiteral("usetype"), useType);
    return build(method, server.getToken(), fields);
}

QJsonObject HostEnvelope::send(QJsonObject request)
{
    return QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(request)).object();
}
