#include "servicecore.h"
#include "accounthandlers.h"
#include "accountstore.h"
#include "billcatalog.h"
#include "billchangefeed.h"
#include "libraryhandlers.h"
#include "loginthrottle.h"
#include "passwordhasher.h"
#include "materialhandlers.h"
#include "pricinghandlers.h"
#include "requestcontext.h"
#include "servicedb.h"
#include "serviceerror.h"
#include "serviceseed.h"

#include <QDir>
#include <QFile>

ServiceCore::ServiceCore(const QString &dataDir, CloudService::Seed seed, const QString &database)
    : m_dataDir(dataDir)
    , m_database(database)
{
    try {
        open(seed);
    } catch (const ServiceError &e) {
        m_openError = e.message();
    } catch (const std::exception &e) {
        m_openError = QString::fromUtf8(e.what());
    }
}

ServiceCore::~ServiceCore()
{
    // The feed writes into the catalog and reads through the database.
    m_feed.reset();
}

QString ServiceCore::databaseFileName()
{
    return QStringLiteral("velora-cloud.db");
}

void ServiceCore::open(CloudService::Seed seed)
{
    if (!m_database.isEmpty())
        m_db = std::make_unique<ServiceDb>(m_database);
    else
        m_db = std::make_unique<ServiceDb>(openDataDir());
    m_db->open();
    openStore(seed);
}

QString ServiceCore::openDataDir()
{
    const bool fresh = !m_dataDir.isEmpty() && !QDir(m_dataDir).exists();
    if (m_dataDir.isEmpty() || !QDir().mkpath(m_dataDir))
        throw ServiceError(ServiceError::Internal, QStringLiteral("无法创建云服务数据目录：%1").arg(m_dataDir));
    // A folder made here is the owner's alone, like the files in it.
    if (fresh)
        QFile::setPermissions(m_dataDir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QDir(m_dataDir).filePath(databaseFileName());
}

void ServiceCore::openStore(CloudService::Seed seed)
{
    m_hasher = std::make_unique<PasswordHasher>(PasswordHash::configured());
    m_throttle = std::make_unique<LoginThrottle>();
    m_accounts = std::make_unique<AccountStore>(*m_db, *m_hasher);
    m_context.db = m_db.get();
    m_context.accounts = m_accounts.get();
    m_context.throttle = m_throttle.get();
    m_context.dataDir = m_dataDir;

    ServiceSeed seeder(m_context);
    m_db->exclusively([&] {
        if (seed != CloudService::Seed::None && seeder.isEmpty())
            m_firstRunNotice = seeder.run(seed == CloudService::Seed::Full);
    });

    const bool shared = m_db->dialect().isPostgres();
    const qint64 lastSeen = shared ? BillChangeFeed::newestEntry(*m_db) : 0;
    m_catalog = std::make_unique<BillCatalog>(*m_db);
    m_catalog->load();
    m_context.catalog = m_catalog.get();
    if (shared)
        m_feed = std::make_unique<BillChangeFeed>(*m_db, *m_catalog, lastSeen);

    m_handlers.push_back(std::make_unique<AccountHandlers>(m_context));
    m_handlers.push_back(std::make_unique<LibraryHandlers>(m_context));
    m_handlers.push_back(std::make_unique<PricingHandlers>(m_context));
    m_handlers.push_back(std::make_unique<MaterialHandlers>(m_context));
    for (const auto &group : m_handlers)
        group->registerOn(m_table);
}

QJsonObject ServiceCore::handle(const QJsonObject &request, const QString &session, const QString &client)
{
    QJsonObject reply;
    try {
        reply = dispatch(request, session, client);
        reply.insert(QStringLiteral("code"), 0);
        if (!reply.contains(QStringLiteral("msg")))
            reply.insert(QStringLiteral("msg"), QStringLiteral("成功"));
        if (!reply.contains(QStringLiteral("data")))
            reply.insert(QStringLiteral("data"), QJsonValue());
        return reply;
    } catch (const ServiceError &e) {
        return QJsonObject{{QStringLiteral("code"), e.code()},
                           {QStringLiteral("msg"), e.message()},
                           {QStringLiteral("data"), QJsonValue()}};
    } catch (const std::exception &e) {
        qWarning("velora service: %s", e.what());
    } catch (...) {
        qWarning("velora service: unknown exception");
    }
    return QJsonObject{{QStringLiteral("code"), int(ServiceError::Internal)},
                       {QStringLiteral("msg"), QStringLiteral("服务器内部错误，请稍后重试")},
                       {QStringLiteral("data"), QJsonValue()}};
}

QJsonObject ServiceCore::dispatch(const QJsonObject &request, const QString &session, const QString &client)
{
    if (!m_openError.isEmpty())
        throw ServiceError(ServiceError::Internal, QStringLiteral("云服务数据无法打开：%1").arg(m_openError));
    const RequestContext context(request, session, client);
    const auto it = m_table.constFind(context.method());
    if (it == m_table.constEnd())
        throw ServiceError(ServiceError::UnknownMethod, QStringLiteral("不支持的方法：%1").arg(context.method()));
    return (*it)(context);
}
