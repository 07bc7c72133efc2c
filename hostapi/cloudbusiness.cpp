#include "cloudbusiness.h"
#include "serverregistry.h"

bool CloudBusiness::requestServerList(QList<LtdInfo *> &list, QString filter)
{
    list.clear();
    ServerRegistry *registry = ServerRegistry::instance();
    if (!registry->refresh(filter))
        return false;
    list = registry->servers(filter);
    return true;
}

bool CloudBusiness::hasPriServer(QList<LtdInfo *> &list)
{
    for (const LtdInfo *entry : qAsConst(list))
        if (entry && entry->kind() == QLatin1String("pri"))
            return true;
    return false;
}
