#pragma once
#include <hostapi/cloudtier.h>

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

class LtdInfo;

// The envelope of one cloud request: "cmd" "cloudSoft", "app_type",
// "orgin_token" (the addressed entry's token) and "data" with "method" and the
// operation's fields. Build it, add the fields, hand it to CloudExchange.
//
//   CloudRequest::tiered(server, "xforperson", "xforkv", "xforenterprise")
//       .withTierFields().set("id", id);
class CloudRequest
{
public:
    // Method style addressed to `server` with a fixed method name.
    CloudRequest(const LtdInfo *server, const QString &method);

    // Method style; the method name is chosen by the entry's tier.
    static CloudRequest tiered(const LtdInfo *server, const QString &personMethod, const QString &kvMethod,
                               const QString &enterpriseMethod);
    // Bill-library style: "reqeuestype" (entry type) and "qyid" (enterprise id).
    static CloudRequest library(const LtdInfo *server, const QString &method);
    // The asynchronous channel's form: no "orgin_token" at the top level.
    static CloudRequest withoutToken(const QString &method);

    // "qiyeID" and "usetype" of the entry's tier.
    CloudRequest &withTierFields();
    CloudRequest &withQiyeId();
    // "qiyeID" only when the entry is an enterprise server.
    CloudRequest &withEnterpriseQiyeId();
    CloudRequest &withUsetype();
    // Library-style parameters: "czlx" (0 = add) and "para".
    CloudRequest &withOperation(int czlx, const QJsonObject &para);
    // One operation field of "data".
    CloudRequest &set(const QString &key, const QJsonValue &value);

    const LtdInfo *server() const { return m_server; }
    CloudTier tier() const { return tierOf(m_server); }
    QString method() const;
    QJsonObject data() const { return m_data; }
    QJsonObject toJson() const;

private:
    CloudRequest() = default;
    const LtdInfo *m_server = nullptr;
    bool m_withToken = true;
    QJsonObject m_data;
};
