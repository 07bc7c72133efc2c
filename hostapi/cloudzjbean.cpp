#include "cloudzjbean.h"
#include "jsonnesting.h"
#include "recordjson.h"

#include <QJsonDocument>

CloudZjBean::CloudZjBean(const QString &text)
{
    // Cloud text, stored there by whoever uploaded the bill.
    const QJsonDocument doc = JsonNesting::parse(text.toUtf8());
    if (doc.isObject())
        *this = fromJson(doc.object());
}

CloudZjBean CloudZjBean::fromJson(const QJsonObject &o)
{
    using namespace RecordJson;
    CloudZjBean b;
    b.m_valid = true;
    b.m_id = integer(o.value(QLatin1String("id")));
    b.m_ly = integer(firstOf(o, {"qdly", "ly"}));
    b.m_xmbh = text(o.value(QLatin1String("qdbh")));
    b.m_xmmc = text(o.value(QLatin1String("xmmc")));
    b.m_dw = text(o.value(QLatin1String("jldw")));
    b.m_zhdj = number(o.value(QLatin1String("zhdj")));
    b.m_jzsj = text(o.value(QLatin1String("jzsj")));
    b.m_dd = text(o.value(QLatin1String("dd")));
    b.m_xmtz = text(o.value(QLatin1String("xmtz")));
    b.m_gcnr = text(o.value(QLatin1String("gznr")));
    b.m_zjnrlist = cloudZjnr::parseList(o.value(QLatin1String("zjnr")));
    return b;
}

QJsonObject CloudZjBean::toJson() const
{
    return QJsonObject{{QStringLiteral("id"), m_id},
                       {QStringLiteral("qdly"), QString::number(m_ly)},
                       {QStringLiteral("qdbh"), m_xmbh},
                       {QStringLiteral("xmmc"), m_xmmc},
                       {QStringLiteral("jldw"), m_dw},
                       {QStringLiteral("zhdj"), m_zhdj},
                       {QStringLiteral("jzsj"), m_jzsj},
                       {QStringLiteral("dd"), m_dd},
                       {QStringLiteral("xmtz"), m_xmtz},
                       {QStringLiteral("gznr"), m_gcnr},
                       {QStringLiteral("zjnr"), cloudZjnr::toZjnrText(m_zjnrlist)}};
}

QString CloudZjBean::toString() const
{
    return QString::fromUtf8(QJsonDocument(toJson()).toJson(QJsonDocument::Compact));
}

bool CloudZjBean::operator==(const CloudZjBean &o) const
{
    return m_valid == o.m_valid && m_id == o.m_id && m_ly == o.m_ly && m_xmbh == o.m_xmbh && m_xmmc == o.m_xmmc
           && m_dw == o.m_dw && m_zhdj == o.m_zhdj && m_jzsj == o.m_jzsj && m_dd == o.m_dd && m_xmtz == o.m_xmtz
           && m_gcnr == o.m_gcnr && m_zjnrlist == o.m_zjnrlist;
}
