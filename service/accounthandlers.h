#pragma once
#include <QJsonArray>

#include "accountstore.h"
#include "handlergroup.h"
#include "readcache.h"

// Host-only calls about logins and the server list: "getserverlist",
// "login", "logout", "enterpriselogin", "enterpriselogout".
class AccountHandlers : public HandlerGroup
{
public:
    using HandlerGroup::HandlerGroup;
    void registerOn(QHash<QString, MethodHandler> &table) override;

private:
    QJsonObject serverList(const RequestContext &request);
    QJsonArray enterpriseEntries(const AccountStore::Session &session, qint64 *lapsesMs);
    QJsonObject login(const RequestContext &request);
    QJsonObject logout(const RequestContext &request);
    QJsonObject enterpriseLogin(const RequestContext &request);
    QJsonObject enterpriseLogout(const RequestContext &request);
    QString materialServerToken(const AccountStore::Session &session, int enterpriseId);
    // AccountStore::verify behind the failed-login throttle.
    int checkPassword(const RequestContext &request, const QString &username, const QString &password);

    // Server lists by session digest.
    ReadCache m_serverLists{1000};
};
