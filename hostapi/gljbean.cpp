#include "gljbean.h"
#include "recordjson.h"

GljBean GljBean::fromJson(const QJsonObject &o)
{
    using namespace RecordJson;
    GljBean b;
    b.m_guid = integer(o.value(QLatin1String("guid")));
    b.m_bh = text(o.value(QLatin1String("bh")));
    b.m_clmc = text(o.value(QLatin1String("clmc")));
    b.m_ggxh = text(o.value(QLatin1String("ggxh")));
    b.m_dw = text(o.value(QLatin1String("dw")));
    b.m_zhfl = text(o.value(QLatin1String("zhfl")));
    b.m_cd = text(o.value(QLatin1String("cd")));
    b.m_cj = text(o.value(QLatin1String("cj")));
    b.m_pp = text(o.value(QLatin1String("pp")));
    b.m_sl = number(o.value(QLatin1String("sl")));
    b.m_dj = number(o.value(QLatin1String("dj")));
    b.m_tj = number(o.value(QLatin1String("tj")));
    return b;
}

QJsonObject GljBean::toJson() const
{
    return QJsonObject{{QStringLiteral("guid"), m_guid}, {QStringLiteral("bh"), m_bh},     {QStringLiteral("clmc"), m_clmc},
                       {QStringLiteral("ggxh"), m_ggxh}, {QStringLiteral("dw"), m_dw},     {QStringLiteral("zhfl"), m_zhfl},
                       {QStringLiteral("cd"), m_cd},     {QStringLiteral("cj"), m_cj},     {QStringLiteral("pp"), m_pp},
                       {QStringLiteral("sl"), m_sl},     {QStringLiteral("dj"), m_dj},     {QStringLiteral("tj"), m_tj}};
}
