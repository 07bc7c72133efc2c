#pragma once
#include "accountstore.h"

#include <QString>

class RequestContext;

// Whose data a request addresses and what the caller may do there, decided
// from the request's "orgin_token" (personal, Korvane or an enterprise
// session token), the Korvane login session and the body's tier fields.
class TierScope
{
public:
    enum Tier { Personal = 1, Enterprise = 2, Korvane = 3 };
    // Which tiers a method name admits.
    enum Admits { AnyTier, PersonalOnly, KorvaneOnly, EnterpriseOrKorvane, EnterpriseOnly };

    // Throws ServiceError when not logged in, when the method does not fit
    // the token, or when the body names another enterprise.
    static TierScope resolve(const RequestContext &request, AccountStore &accounts, Admits admits = AnyTier);

    Tier tier() const { return m_tier; }
    // User id (personal), enterprise id (enterprise) or 0 (Korvane).
    int owner() const { return m_owner; }
    int userId() const { return m_userId; }
    AccountStore::Role role() const { return m_role; }
    // Key of this tier's data for the matcher.
    QString scopeKey() const;
    static QString scopeKey(int tier, int owner);

    bool canWrite() const;
    bool isAdmin() const;
    // Throws Forbidden with the tier's own message.
    void requireWrite() const;
    void requireAdmin() const;

private:
    Tier m_tier = Personal;
    int m_owner = 0;
    int m_userId = 0;
    AccountStore::Role m_role = AccountStore::NoRole;
};
