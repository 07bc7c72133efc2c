#pragma once
#include <QJsonObject>
#include <QString>

class LtdInfo;

// The host's own calls on the cloud envelope ("cmd" "cloudSoft", "app_type",
// "orgin_token", "data" with "method"), built in one place for every host
// business call.
class HostEnvelope
{
public:
    // A request addressed to `token` with "method" and `fields` in "data".
    static QJsonObject build(const QString &method, const QString &token, QJsonObject fields = QJsonObject());
    // The same addressed to `server`, with its tier fields "qiyeID" (-1
    // personal, 0 Korvane, the enterprise id) and "usetype" (1, 3, 2).
    static QJsonObject tiered(const QString &method, const LtdInfo &server, QJsonObject fields = QJsonObject());
    // Sends through ServicesUtil and parses; an empty object when unanswered.
    static QJsonObject send(QJsonObject request);
};
