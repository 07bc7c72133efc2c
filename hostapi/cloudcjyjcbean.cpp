#include "cloudcjyjcbean.h"
#include "recordjson.h"

CloudCjyjcBean CloudCjyjcBean::fromJson(const QJsonObject &o)
{
    using namespace RecordJson;
    CloudCjyjcBean b;
    b.m_guid = integer(o.value(QLatin1String("guid")));
    b.m_ydjhs = number(o.value(QLatin1String("ydjhs")));
    b.m_ydjbhs = number(o.value(QLatin1String("ydjbhs")));
    b.m_dj = number(o.value(QLatin1String("dj")));
    b.m_clmc = text(o.value(QLatin1String("clmc")));
    b.m_ggxh = text(o.value(QLatin1String("ggxh")));
    b.m_dw = text(o.value(QLatin1String("dw")));
    b.m_cd = text(o.value(QLatin1String("cd")));
    b.m_cj = text(o.value(QLatin1String("cj")));
    b.m_jgjzsj = text(o.value(QLatin1String("jgjzsj")));
    b.m_gcdd = text(o.value(QLatin1String("gcdd")));
    b.m_xmmc = text(o.value(QLatin1String("xmmc")));
    return b;
}

QJsonObject CloudCjyjcBean::toJson() const
{
    return QJsonObject{{QStringLiteral("guid"), m_guid},     {QStringLiteral("ydjhs"), m_ydjhs},
                       {QStringLiteral("ydjbhs"), m_ydjbhs}, {QStringLiteral("dj"), m_dj},
                       {QStringLiteral("clmc"), m_clmc},     {QStringLiteral("ggxh"), m_ggxh},
                       {QStringLiteral("dw"), m_dw},         {QStringLiteral("cd"), m_cd},
                       {QStringLiteral("cj"), m_cj},         {QStringLiteral("jgjzsj"), m_jgjzsj},
                       {QStringLiteral("gcdd"), m_gcdd},     {QStringLiteral("xmmc"), m_xmmc}};
}
