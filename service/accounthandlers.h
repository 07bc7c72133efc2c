#pragma once
#include "accountstore.h"
#include "handlergroup.h"

// Host-only calls about logins and the server list: "getserverlist",
// "login", "logout", "enterpriselogin", "enterpriselogout".
class AccountHandlers : public HandlerGroup
{
public:
    using HandlerGroup::HandlerGroup;
    void registerOn(QHash<QString, MethodHandler> &table) override;

private:
    QJsonObject serverList(const RequestContext &request);
    QJsonObject login(const RequestContext &request);
    QJsonObject logout(const RequestContext &request);
    QJsonObject enterpriseLogin(const RequestContext &request);
    QJsonObject enterpriseLogout(const RequestContext &request);
    QString materialServerToken(const AccountStore::Session &session, int enterpriseId);
    // AccountStore::verify behind the failed-login throttle.
    int checkPassword(const RequestContext &request, const QString &username, const QString &password);
};
