#include "cloudparams.h"
#include "recordjson.h"

QJsonObject CloudParams::toJson() const
{
    return QJsonObject{{QStringLiteral("keyword"), m_searchText}, {QStringLiteral("page"), m_page},
                       {QStringLiteral("pageSize"), m_pageSize},  {QStringLiteral("isAlgc"), m_caseProject},
                       {QStringLiteral("hsbz"), m_taxBasis},      {QStringLiteral("ddCode"), m_placeCode},
                       {QStringLiteral("dd"), m_place},           {QStringLiteral("sj"), m_time}};
}

CloudParams CloudParams::fromJson(const QJsonObject &o)
{
    using namespace RecordJson;
    CloudParams p;
    p.m_searchText = text(o.value(QLatin1String("keyword")));
    if (o.contains(QLatin1String("page")))
        p.m_page = integer(o.value(QLatin1String("page")));
    if (o.contains(QLatin1String("pageSize")))
        p.m_pageSize = integer(o.value(QLatin1String("pageSize")));
    p.m_caseProject = o.value(QLatin1String("isAlgc")).toBool();
    if (o.contains(QLatin1String("hsbz")))
        p.m_taxBasis = integer(o.value(QLatin1String("hsbz")));
    p.m_placeCode = text(o.value(QLatin1String("ddCode")));
    p.m_place = text(o.value(QLatin1String("dd")));
    p.m_time = text(o.value(QLatin1String("sj")));
    return p;
}
