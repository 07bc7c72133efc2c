#include "cloudbusiness.h"
#include "serverregistry.h"

namespace {
const QString kKindKv = QStringLiteral("kv");
const QString kKindPri = QStringLiteral("pri");
const QString kKindCj = QStringLiteral("cj");

// The Korvane-account entries are in every list; an empty filter adds the
// enterprise servers, a kind name ("cj") the servers of that kind instead.
bool inList(const LtdInfo *entry, const QString &filter)
{
    const QString kind = entry->kind();
    if (kind == kKindKv)
        return true;
    if (filter.isEmpty())
        return kind != kKindCj;
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
        if (entry && entry->kind() == kKindPri)
            return true;
    return false;
}
