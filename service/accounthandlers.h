#pragma once
#include "accountstore.h"
#include "servicecontext.h"

#include <QHash>

// Host-only calls about logins and the server list: "getserverlist",
// "login", "logout", "enterpriselogin", "enterpriselogout".
class AccountHandlers
{
public:
    explicit AccountHandlers(const ServiceContext &context);
    void registerOn(QHash<QString, MethodHandler> &table);

private:
    QJsonObject serverList(const RequestContext &request);
    QJsonObject login(const RequestContext &request);
    QJsonObject logout(const RequestContext &request);
    QJsonObject enterpriseLogin(const RequestContext &request);
    QJsonObject enterpriseLogout(const RequestContext &request);
    QString materialServerToken(const AccountStore::Session &session, int enterpriseId);

    ServiceContext m_context;
};
