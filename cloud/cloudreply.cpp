#include "cloudreply.h"
#include <hostapi/jsonnesting.h>

#include <QJsonDocument>

CloudReply CloudReply::parse(const QByteArray &bytes)
{
    return CloudReply(JsonNesting::parse(bytes).object());
}

int CloudReply::code() const
{
    return m_object.value(QStringLiteral("code")).toInt(0);
}

QString CloudReply::msg() const
{
    return m_object.value(QStringLiteral("msg")).toString();
}

QJsonValue CloudReply::data() const
{
    return m_object.value(QStringLiteral("data"));
}
