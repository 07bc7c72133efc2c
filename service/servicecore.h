#pragma once
#include "cloudservice.h"
#include "servicecontext.h"

#include <QHash>
#include <QJsonObject>
#include <QString>

#include <memory>

class AccountHandlers;
class AccountStore;
class BillCatalog;
class LibraryHandlers;
class MaterialHandlers;
class PricingHandlers;
class ServiceDb;

// The service behind CloudService: storage, accounts, the matcher and the
// method table.
class ServiceCore
{
public:
    ServiceCore(const QString &dataDir, CloudService::Seed seed);
    ~ServiceCore();

    QJsonObject handle(const QJsonObject &request, const QString &session);
    QString openError() const { return m_openError; }
    QString firstRunNotice() const { return m_firstRunNotice; }

    static QString databaseFileName();

private:
    void open(CloudService::Seed seed);
    QJsonObject dispatch(const QJsonObject &request, const QString &session);

    QString m_dataDir;
    QString m_openError;
    QString m_firstRunNotice;
    std::unique_ptr<ServiceDb> m_db;
    std::unique_ptr<AccountStore> m_accounts;
    std::unique_ptr<BillCatalog> m_catalog;
    ServiceContext m_context;
    std::unique_ptr<AccountHandlers> m_accountHandlers;
    std::unique_ptr<LibraryHandlers> m_libraryHandlers;
    std::unique_ptr<PricingHandlers> m_pricingHandlers;
    std::unique_ptr<MaterialHandlers> m_materialHandlers;
    QHash<QString, MethodHandler> m_table;
};
