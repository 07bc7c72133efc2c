#pragma once
#include "cloudservice.h"
#include "servicecontext.h"

#include <QHash>
#include <QJsonObject>
#include <QString>

#include <memory>
#include <vector>

class AccountStore;
class BillCatalog;
class BillChangeFeed;
class HandlerGroup;
class LoginThrottle;
class PasswordHasher;
class ServiceDb;

// The service behind CloudService: storage, accounts, the matcher and the
// method table.
class ServiceCore
{
public:
    ServiceCore(const QString &dataDir, CloudService::Seed seed, const QString &database = QString());
    ~ServiceCore();

    QJsonObject handle(const QJsonObject &request, const QString &session, const QString &client);
    QString openError() const { return m_openError; }
    QString firstRunNotice() const { return m_firstRunNotice; }

    static QString databaseFileName();

private:
    void open(CloudService::Seed seed);
    QString openDataDir();
    void openStore(CloudService::Seed seed);
    QJsonObject dispatch(const QJsonObject &request, const QString &session, const QString &client);

    QString m_dataDir;
    QString m_database;
    QString m_openError;
    QString m_firstRunNotice;
    std::unique_ptr<ServiceDb> m_db;
    std::unique_ptr<PasswordHasher> m_hasher;
    std::unique_ptr<LoginThrottle> m_throttle;
    std::unique_ptr<AccountStore> m_accounts;
    std::unique_ptr<BillCatalog> m_catalog;
    std::unique_ptr<BillChangeFeed> m_feed;
    ServiceContext m_context;
    std::vector<std::unique_ptr<HandlerGroup>> m_handlers;
    QHash<QString, MethodHandler> m_table;
};
