#include "cloudtier.h"

#include "hostconstants.h"
#include "ltdinfo.h"

CloudTier tierOf(const LtdInfo *server)
{
    if (!server)
        return CloudTier::Enterprise;
    const QString token = server->getToken();
    // KvToken is a prefix of KvTokenUser, so the personal test must come first.
    if (token == KvTokenUser)
        return CloudTier::Person;
    if (token == KvToken)
        return CloudTier::Korvane;
    return CloudTier::Enterprise;
}

QString methodFor(CloudTier tier, const QString &personMethod, const QString &kvMethod,
                  const QString &enterpriseMethod)
{
    switch (tier) {
    case CloudTier::Person:
        return personMethod;
    case CloudTier::Korvane:
        return kvMethod;
    case CloudTier::Enterprise:
        break;
    }
    return enterpriseMethod;
}

int qiyeIdFor(const LtdInfo *server)
{
    switch (tierOf(server)) {
    case CloudTier::Person:
        return -1;
    case CloudTier::Korvane:
        return 0;
    case CloudTier::Enterprise:
        break;
    }
    return server ? server->getQyid() : 0;
}

int usetypeFor(CloudTier tier)
{
    switch (tier) {
    case CloudTier::Person:
        return 1;
    case CloudTier::Korvane:
        return 3;
    case CloudTier::Enterprise:
        break;
    }
    return 2;
}
