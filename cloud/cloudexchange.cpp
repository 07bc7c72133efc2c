#include "cloudexchange.h"

#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/servicesutil.h>

std::optional<QJsonValue> CloudExchange::call(const CloudRequest &request, QWidget *dialog)
{
    return GUARDED_OR(std::optional<QJsonValue>(), "CloudExchange", "CloudExchange::call", [&] {
        const CloudReply reply = send(request);
        if (!reply.answered())
            return std::optional<QJsonValue>();
        if (reply.code() != 0) {
            showFailure(reply, dialog);
            return std::optional<QJsonValue>();
        }
        return std::optional<QJsonValue>(reply.data());
    });
}

CloudReply CloudExchange::send(const CloudRequest &request)
{
    QJsonObject envelope = request.toJson();
    return CloudReply::parse(ServicesUtil::AsyncReplyLoop(envelope));
}

void CloudExchange::showFailure(const CloudReply &reply, QWidget *dialog)
{
    showInformation(reply.msg(), dialog, QString(), QString(), QString(), QString(), 0, 0, 0);
}

QString CloudExchange::configValue(const QString &key)
{
    QJsonObject query{{QStringLiteral("cmd"), QStringLiteral("getConfigValue")}, {QStringLiteral("data"), key}};
    return CloudReply::parse(ServicesUtil::AsyncReplyLoop(query)).data().toString();
}
