#include "materialdeviations.h"

#include <materials/materialcheckrules.h>

#include <hostapi/gljbean.h>

#include <algorithm>
#include <cmath>

void MaterialDeviations::setResults(const QList<CloudCjyjcBean> &results)
{
    m_cloudPrices.clear();
    for (const CloudCjyjcBean &r : results)
        if (r.getYdj() != MaterialCheckRules::NoCloudPrice)
            m_cloudPrices.insert(r.getGuid(), r.getYdj());
}

std::optional<double> MaterialDeviations::deviation(const GljBean &material) const
{
    const auto it = m_cloudPrices.constFind(material.GetGuid());
    if (it == m_cloudPrices.constEnd())
        return std::nullopt;
    return MaterialCheckRules::deviationOf(MaterialCheckRules::deviationText(material.GetTj(), it.value()));
}

int MaterialDeviations::standing(const GljBean &material) const
{
    const std::optional<double> d = deviation(material);
    const double rate = m_rate.toDouble();
    if (!d || std::fabs(*d) <= rate)
        return 0;
    return *d > 0 ? 1 : -1;
}

QList<MaterialDeviations::Excess> MaterialDeviations::ranking(const QList<GljBean *> &materials, int limit) const
{
    QList<Excess> out;
    for (const GljBean *m : materials) {
        const auto it = m_cloudPrices.constFind(m->GetGuid());
        if (it == m_cloudPrices.constEnd() || m->GetTj() <= it.value())
            continue;
        const QString name = m->GetGgxh().isEmpty() ? m->GetClmc() : m->GetClmc() + QLatin1Char(' ') + m->GetGgxh();
        out.append({name, (m->GetTj() - it.value()) * m->GetSl(), *deviation(*m)});
    }
    std::stable_sort(out.begin(), out.end(), [](const Excess &a, const Excess &b) { return a.amount > b.amount; });
    return out.mid(0, limit);
}
