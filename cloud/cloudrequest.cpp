#include "cloudrequest.h"

#include <hostapi/cloudenvelope.h>
#include <hostapi/ltdinfo.h>

namespace {
const QString kMethod = QStringLiteral("method");
}

CloudRequest::CloudRequest(const LtdInfo *server, const QString &method)
    : m_server(server), m_data{{kMethod, method}}
{
}

CloudRequest CloudRequest::tiered(const LtdInfo *server, const QString &personMethod, const QString &kvMethod,
                                  const QString &enterpriseMethod)
{
    return CloudRequest(server, methodFor(tierOf(server), personMethod, kvMethod, enterpriseMethod));
}

CloudRequest CloudRequest::library(const LtdInfo *server, const QString &method)
{
    CloudRequest request(server, method);
    request.set(QStringLiteral("reqeuestype"), server ? server->getType() : 0);
    request.set(QStringLiteral("qyid"), server ? server->getQyid() : 0);
    return request;
}

CloudRequest CloudRequest::withoutToken(const QString &method)
{
    CloudRequest request;
    request.m_withToken = false;
    request.m_data.insert(kMethod, method);
    return request;
}

CloudRequest &CloudRequest::withTierFields()
{
    return withQiyeId().withUsetype();
}

CloudRequest &CloudRequest::withQiyeId()
{
    return set(QStringLiteral("qiyeID"), qiyeIdFor(m_server));
}

CloudRequest &CloudRequest::withEnterpriseQiyeId()
{
    if (tier() == CloudTier::Enterprise)
        withQiyeId();
    return *this;
}

CloudRequest &CloudRequest::withUsetype()
{
    return set(QStringLiteral("usetype"), usetypeFor(tier()));
}

CloudRequest &CloudRequest::withOperation(int czlx, const QJsonObject &para)
{
    set(QStringLiteral("czlx"), czlx);
    return set(QStringLiteral("para"), para);
}

CloudRequest &CloudRequest::set(const QString &key, const QJsonValue &value)
{
    m_data.insert(key, value);
    return *this;
}

QString CloudRequest::method() const
{
    return m_data.value(kMethod).toString();
}

QJsonObject CloudRequest::toJson() const
{
    if (!m_withToken)
        return CloudEnvelope::withoutToken(m_data);
    return CloudEnvelope::build(m_data, m_server ? m_server->getToken() : QString());
}
