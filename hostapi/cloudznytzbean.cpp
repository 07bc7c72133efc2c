#include "cloudznytzbean.h"
#include "recordjson.h"

CloudZnytzBean CloudZnytzBean::fromJson(const QJsonObject &e, bool standard)
{
    CloudZnytzBean b;
    b.m_xmmc = RecordJson::text(e.value(QLatin1String("xmmc")));
    b.m_xmtz = RecordJson::text(e.value(QLatin1String("xmtz")));
    b.m_gcnr = RecordJson::text(e.value(QLatin1String("gznr")));
    const QJsonValue id = e.value(QLatin1String("guida"));
    b.m_xmid = id.isUndefined() || id.isNull() ? QString() : QString::number(RecordJson::integer(id));
    b.m_bzQd = standard;
    if (standard)
        b.m_qdkMc = RecordJson::text(e.value(QLatin1String("bzqdkmc")));
    return b;
}

bool CloudZnytzBean::operator==(const CloudZnytzBean &o) const
{
    return m_xmmc == o.m_xmmc && m_xmtz == o.m_xmtz && m_gcnr == o.m_gcnr && m_xmid == o.m_xmid && m_bzQd == o.m_bzQd
           && m_qdkMc == o.m_qdkMc;
}
