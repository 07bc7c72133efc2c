#include "cloudbusiness.h"
#include "serverregistry.h"

namespace {
// The Korvane-account entries are in every list; an empty filter adds the
// enterprise servers, a kind name ("cj") the servers of that kind instead.
// The material price servers come last in the host's list, so the enterprise
// entries keep their host indexes in the filtered list.
bool inList(const LtdInfo *entry, const QString &filter)
{
    const QString kind = entry->kind();
    if (kind == QLatin1String("kv"))
        return true;
    if (filter.isEmpty())
        return kind != QLatin1String("cj");
    return kind == filter;
}
}

bool CloudBusiness::requestServerList(QList<LtdInfo *> &list, QString filter)
{
    list.clear();
    ServerRegistry *registry = ServerRegistry::instance();
    if (!registry->refresh())
        return false;
    for (LtdInfo *entry : registry->servers())
        if (inList(entry, filter))
            list << entry;
    return true;
}

bool CloudBusiness::hasPriServer(QList<LtdInfo *> &list)
{
    for (const LtdInfo *entry : qAsConst(list))
        if (entry && entry->kind() == QLatin1String("pri"))
            return true;
    return false;
}
