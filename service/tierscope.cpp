#include "tierscope.h"
#include "requestcontext.h"
#include "serviceerror.h"

namespace {

const QString kPersonalToken = QStringLiteral("kv_token_user");
const QString kKorvaneToken = QStringLiteral("kv_token");
const QString kBigDataToken = QStringLiteral("kv_token_bigdata");

ServiceError notLoggedIn()
{
    return ServiceError(ServiceError::NotLoggedIn, QStringLiteral("未登录Korvane云或登录已失效，请重新登录"));
}

ServiceError wrongTier()
{
    return ServiceError(ServiceError::BadRequest, QStringLiteral("请求的方法与所选服务器不符"));
}

// The enterprise id named in the body, under any of the spellings the
// dialogs use; `found` tells whether one was given.
int bodyEnterpriseId(const RequestContext &request, bool *found)
{
    for (const char *key : {"qiyeID", "qiyeId", "qyid", "ltdID"}) {
        const QString k = QString::fromLatin1(key);
        if (request.has(k)) {
            *found = true;
            return request.integer(k);
        }
    }
    *found = false;
    return 0;
}

}

TierScope TierScope::resolve(const RequestContext &request, AccountStore &accounts, Admits admits)
{
    TierScope scope;
    bool hasEnterpriseId = false;
    const int enterpriseId = bodyEnterpriseId(request, &hasEnterpriseId);
    const int usetype = request.integer(QStringLiteral("usetype"));
    const QString token = request.hasOriginToken() ? request.originToken() : kPersonalToken;

    if (token == kPersonalToken || token == kKorvaneToken || token == kBigDataToken) {
        const AccountStore::Session session = accounts.session(request.session());
        if (session.userId == 0)
            throw notLoggedIn();
        scope.m_userId = session.userId;
        if (token == kPersonalToken) {
            if (admits != AnyTier && admits != PersonalOnly)
                throw wrongTier();
            if ((hasEnterpriseId && enterpriseId > 0) || (usetype != 0 && usetype != 1))
                throw wrongTier();
            scope.m_tier = Personal;
            scope.m_owner = session.userId;
            scope.m_role = AccountStore::AdminRole;
        } else {
            if (admits == PersonalOnly || admits == EnterpriseOnly)
                throw wrongTier();
            // The big-data entry is neither constant, so the module addresses it
            // like an enterprise server with enterprise id 0 ("usetype" 2).
            const bool bigData = token == kBigDataToken;
            if ((hasEnterpriseId && enterpriseId > 0) || (usetype != 0 && usetype != 3 && !(bigData && usetype == 2)))
                throw wrongTier();
            scope.m_tier = Korvane;
            scope.m_owner = 0;
            scope.m_role = AccountStore::ReadRole;
        }
        return scope;
    }

    const AccountStore::EnterpriseSession session = accounts.enterpriseSession(token, request.session());
    if (session.userId == 0)
        throw ServiceError(ServiceError::NotLoggedIn, QStringLiteral("企业服务器未登录或登录已失效，请重新登录"));
    if (admits == PersonalOnly || admits == KorvaneOnly)
        throw wrongTier();
    if ((hasEnterpriseId && enterpriseId != session.enterpriseId) || (usetype != 0 && usetype != 2))
        throw ServiceError(ServiceError::Forbidden, QStringLiteral("请求的企业与登录的企业服务器不一致"));
    const AccountStore::Role role = accounts.role(session.enterpriseId, session.userId);
    if (role == AccountStore::NoRole)
        throw ServiceError(ServiceError::Forbidden, QStringLiteral("您已不是该企业的成员"));
    scope.m_tier = Enterprise;
    scope.m_owner = session.enterpriseId;
    scope.m_userId = session.userId;
    scope.m_role = role;
    return scope;
}

QString TierScope::scopeKey() const
{
    return scopeKey(m_tier, m_owner);
}

QString TierScope::scopeKey(int tier, int owner)
{
    switch (tier) {
    case Personal:
        return QStringLiteral("p:%1").arg(owner);
    case Enterprise:
        return QStringLiteral("e:%1").arg(owner);
    default:
        return QStringLiteral("k");
    }
}

bool TierScope::canWrite() const
{
    return m_tier != Korvane && m_role >= AccountStore::WriteRole;
}

bool TierScope::isAdmin() const
{
    return m_tier != Korvane && m_role >= AccountStore::AdminRole;
}

void TierScope::requireWrite() const
{
    if (m_tier == Korvane)
        throw ServiceError(ServiceError::Forbidden, QStringLiteral("Korvane云为只读的案例库，不能写入"));
    if (!canWrite())
        throw ServiceError(ServiceError::Forbidden, QStringLiteral("您在该企业只有查看权限，没有编辑权限"));
}

void TierScope::requireAdmin() const
{
    requireWrite();
    if (!isAdmin())
        throw ServiceError(ServiceError::Forbidden, QStringLiteral("只有企业管理员可以执行该操作"));
}
