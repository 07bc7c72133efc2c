#include "cloudfymb.h"
#include "recordjson.h"

cloudFymb::cloudFymb(const QString &fybh, const QString &fymc, const QString &jsgs, const QString &fl,
                     const QString &je, const QString &jjbzd)
    : m_fybh(fybh), m_fymc(fymc), m_jsgs(jsgs), m_fl(fl), m_je(je), m_jjbzd(jjbzd)
{
}

cloudFymb cloudFymb::fromJson(const QJsonObject &entry)
{
    return cloudFymb(RecordJson::text(entry.value(QLatin1String("BH"))), RecordJson::text(entry.value(QLatin1String("MC"))),
                     RecordJson::text(entry.value(QLatin1String("GS"))), RecordJson::text(entry.value(QLatin1String("FL"))),
                     RecordJson::text(entry.value(QLatin1String("JE"))), RecordJson::text(entry.value(QLatin1String("ZD"))));
}

QJsonObject cloudFymb::toJson() const
{
    return QJsonObject{{QStringLiteral("BH"), m_fybh}, {QStringLiteral("MC"), m_fymc}, {QStringLiteral("GS"), m_jsgs},
                       {QStringLiteral("FL"), m_fl},   {QStringLiteral("JE"), m_je},   {QStringLiteral("ZD"), m_jjbzd}};
}

bool cloudFymb::operator==(const cloudFymb &o) const
{
    return m_fybh == o.m_fybh && m_fymc == o.m_fymc && m_jsgs == o.m_jsgs && m_fl == o.m_fl && m_je == o.m_je
           && m_jjbzd == o.m_jjbzd;
}
