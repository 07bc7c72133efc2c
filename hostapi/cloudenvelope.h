#pragma once
#include <QJsonObject>
#include <QString>

class LtdInfo;

// The one envelope of every cloud request, the module's and the host's own:
// "cmd" "cloudSoft", "app_type", "orgin_token" and "data" with "method" and
// the operation's fields.
class CloudEnvelope
{
public:
    // `data` (which carries "method") addressed to `token`.
    static QJsonObject build(const QJsonObject &data, const QString &token);
    // The asynchronous channel's form: no "orgin_token".
    static QJsonObject withoutToken(const QJsonObject &data);
    // "method" and `fields` addressed to `token`.
    static QJsonObject build(const QString &method, const QString &token, QJsonObject fields = QJsonObject());
    // The same addressed to `server` with its tier fields "qiyeID" and "usetype".
    static QJsonObject tiered(const QString &method, const LtdInfo &server, QJsonObject fields = QJsonObject());
    // Sends through the host's reply loop and parses; an empty object when
    // unanswered.
    static QJsonObject send(QJsonObject request);
};
