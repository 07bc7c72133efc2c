#pragma once
// Envelopes and replies of the cloud protocol, spelled out for tests so that a
// test states the exact request it expects without the code under test.
#include <hostapi/servicesutil.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace cloudjson {

// {"cmd":"cloudSoft","app_type":…,"orgin_token":…,"data":…}; a null token
// leaves "orgin_token" out.
inline QJsonObject envelope(const QString &token, const QJsonObject &data, int appType = 1)
{
    QJsonObject r{{"cmd", "cloudSoft"}, {"app_type", appType}, {"data", data}};
    if (!token.isNull())
        r.insert("orgin_token", token);
    return r;
}

inline QJsonObject method(const QString &name, QJsonObject fields = QJsonObject())
{
    fields.insert("method", name);
    return fields;
}

inline QJsonObject parsed(const QByteArray &bytes) { return QJsonDocument::fromJson(bytes).object(); }
// The reply to `request` through the host's channel, as a dialog gets it.
inline QJsonObject exchange(QJsonObject request) { return parsed(ServicesUtil::AsyncReplyLoop(request)); }

inline int code(const QJsonObject &r) { return r.value("code").toInt(-1); }
inline QString msg(const QJsonObject &r) { return r.value("msg").toString(); }
inline QJsonArray array(const QJsonObject &r) { return r.value("data").toArray(); }
inline QJsonObject object(const QJsonObject &r) { return r.value("data").toObject(); }

// The value of `key` in every element of `array`, as text.
inline QStringList texts(const QJsonArray &array, const QString &key)
{
    QStringList list;
    for (const QJsonValue &v : array)
        list << v.toObject().value(key).toVariant().toString();
    return list;
}

} // namespace cloudjson
