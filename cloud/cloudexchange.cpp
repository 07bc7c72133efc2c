#include "cloudexchange.h"

#include <hostapi/cloudenvelope.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/servicesutil.h>

#include <QWidget>

CloudExchange::CloudExchange(const GuardSite &site)
    : m_site(site)
{
}

QWidget *CloudExchange::dialog() const
{
    return qobject_cast<QWidget *>(m_site.owner());
}

std::optional<CloudReply> CloudExchange::call(const CloudRequest &request) const
{
    return GUARDED_OR(std::optional<CloudReply>(), m_site, [&] {
        const CloudReply reply = send(request);
        if (!reply.answered())
            return std::optional<CloudReply>();
        if (reply.code() != 0) {
            showFailure(reply);
            return std::optional<CloudReply>();
        }
        return std::optional<CloudReply>(reply);
    });
}

void CloudExchange::showFailure(const CloudReply &reply) const
{
    showMessageBox(reply.msg(), dialog());
}

CloudReply CloudExchange::send(const CloudRequest &request)
{
    return CloudReply(CloudEnvelope::send(request.toJson()));
}

QString CloudExchange::configValue(const QString &key)
{
    QJsonObject query{{QStringLiteral("cmd"), QStringLiteral("getConfigValue")}, {QStringLiteral("data"), key}};
    return CloudReply::parse(ServicesUtil::AsyncReplyLoop(query)).data().toString();
}
