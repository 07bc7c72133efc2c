#include "cloudenvelope.h"
#include "jsonnesting.h"
#include "apptype.h"
#include "cloudtier.h"
#include "ltdinfo.h"
#include "servicesutil.h"

#include <QJsonDocument>

QJsonObject CloudEnvelope::withoutToken(const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), AppType()},
                       {QStringLiteral("data"), data}};
}

QJsonObject CloudEnvelope::build(const QJsonObject &data, const QString &token)
{
    QJsonObject envelope = withoutToken(data);
    envelope.insert(QStringLiteral("orgin_token"), token);
    return envelope;
}

QJsonObject CloudEnvelope::build(const QString &method, const QString &token, QJsonObject fields)
{
    fields.insert(QStringLiteral("method"), method);
    return build(fields, token);
}

QJsonObject CloudEnvelope::tiered(const QString &method, const LtdInfo &server, QJsonObject fields)
{
    fields.insert(QStringLiteral("qiyeID"), qiyeIdFor(&server));
    fields.insert(QStringLiteral("usetype"), usetypeFor(tierOf(&server)));
    return build(method, server.getToken(), fields);
}

QJsonObject CloudEnvelope::send(QJsonObject request)
{
    return JsonNesting::parse(ServicesUtil::AsyncReplyLoop(request)).object();
}
