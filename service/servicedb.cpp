#include "servicedb.h"
#include "serviceerror.h"

#include <QAtomicInteger>
#include <QFile>
#include <QSqlDriver>
#include <QSqlError>
#include <QUuid>

#include <mutex>

namespace {

QAtomicInteger<quint64> s_instanceCounter;

ServiceError dbError(const QString &what, const QSqlError &error)
{
    qWarning("velora service db: %s: %s", qUtf8Printable(what), qUtf8Printable(error.text()));
    return ServiceError(ServiceError::Internal, QStringLiteral("服务器数据库错误，请稍后重试"));
}

}

ServiceDb::ServiceDb(const QString &location)
    : m_path(location)
    , m_dialect(location)
    , m_prefix(QStringLiteral("velora_service_%1_").arg(++s_instanceCounter))
    , m_instanceTag(QStringLiteral("velora-") + QUuid::createUuid().toString(QUuid::Id128).left(20))
{
}

ServiceDb::~ServiceDb()
{
    std::lock_guard<std::mutex> lock(m_connectionsMutex);
    // removeDatabase closes each connection; asking for the handle of another
    // thread's connection is not allowed, so none is taken here.
    for (const Entry &entry : qAsConst(m_connections)) {
        entry.statements->clear();
        QSqlDatabase::removeDatabase(entry.name);
    }
    m_connections.clear();
}

int ServiceDb::latestVersion()
{
    return ServiceDialect(QString()).migrations().size();
}

void ServiceDb::open()
{
    const QString error = m_dialect.locationError();
    if (!error.isEmpty())
        throw ServiceError(ServiceError::Internal, error);
    if (!m_dialect.isPostgres())
        restrictFileAccess();
    for (const QString &statement : m_dialect.openSetup())
        exec(statement);
    migrate();
}

void ServiceDb::restrictFileAccess()
{
    // SQLite gives the -wal and -shm files the mode of the database file, so
    // the file is made (or turned) owner-only before SQLite opens it.
    const QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    QFile file(m_path);
    if (!file.exists() && file.open(QIODevice::WriteOnly))
        file.close();
    for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        QFile part(m_path + suffix);
        if (part.exists() && !part.setPermissions(ownerOnly))
            qWarning("velora service db: cannot restrict %s", qUtf8Printable(part.fileName()));
    }
}

int ServiceDb::schemaVersion()
{
    return scalar(m_dialect.readVersion(), {}, 0).toInt();
}

void ServiceDb::migrate()
{
    // Several processes may open one PostgreSQL database at once: the first
    // migrates while the others wait for its lock, then find nothing to do.
    QMutexLocker lock(&m_writeMutex);
    const QVector<QStringList> steps = m_dialect.migrations();
    runTransaction([&] {
        if (!m_dialect.migrationLock().isEmpty())
            exec(m_dialect.migrationLock());
        for (const QString &statement : m_dialect.versionTable())
            execSchema(statement);
        for (int version = schemaVersion() + 1; version <= steps.size(); ++version) {
            for (const QString &statement : steps.at(version - 1))
                execSchema(statement);
            execSchema(m_dialect.writeVersion(version));
        }
    });
}

QSqlDatabase ServiceDb::connection()
{
    QThread *thread = QThread::currentThread();
    QString name;
    {
        std::lock_guard<std::mutex> lock(m_connectionsMutex);
        auto it = m_connections.find(thread);
        if (it != m_connections.end() && it->thread == thread) {
            // A lost connection is replaced once its transaction has ended.
            if (!it->broken || it->inTransaction)
                return QSqlDatabase::database(it->name, false);
            it->statements->clear();
            QSqlDatabase::removeDatabase(it->name);
            m_connections.erase(it);
        }
        dropDeadThreadConnections();
        name = m_prefix + QString::number(reinterpret_cast<quintptr>(thread), 16) + QLatin1Char('_')
            + QString::number(++s_instanceCounter);
        m_connections.insert(thread, Entry{QPointer<QThread>(thread), name, false, false, std::make_shared<StatementCache>()});
    }
    return openConnection(name);
}

bool ServiceDb::lostConnection(const QSqlError &error) const
{
    // Connection exceptions (08), a server shutting down or killing the
    // backend (57P), or no SQLSTATE at all: the socket is gone.
    const QString code = error.nativeErrorCode();
    return m_dialect.isPostgres() && (code.isEmpty() || code.startsWith(QLatin1String("08")) || code.startsWith(QLatin1String("57P")));
}

bool ServiceDb::markBroken()
{
    std::lock_guard<std::mutex> lock(m_connectionsMutex);
    const auto it = m_connections.find(QThread::currentThread());
    if (it == m_connections.end())
        return true;
    it->broken = true;
    return !it->inTransaction;
}

void ServiceDb::setInTransaction(bool inTransaction)
{
    std::lock_guard<std::mutex> lock(m_connectionsMutex);
    const auto it = m_connections.find(QThread::currentThread());
    if (it != m_connections.end())
        it->inTransaction = inTransaction;
}

void ServiceDb::dropDeadThreadConnections()
{
    // A pool thread that expired leaves its connection behind; its QThread is
    // gone, so nothing can use the connection any more.
    for (auto it = m_connections.begin(); it != m_connections.end();) {
        if (it->thread.isNull()) {
            it->statements->clear();
            QSqlDatabase::removeDatabase(it->name);
            it = m_connections.erase(it);
        } else {
            ++it;
        }
    }
}

QSqlDatabase ServiceDb::openConnection(const QString &name)
{
    QSqlDatabase db = m_dialect.connect(name, m_instanceTag);
    if (!db.isOpen()) {
        const QSqlError error = db.lastError();
        db = QSqlDatabase();
        // Forgotten, so that the next call on this thread tries again.
        releaseThreadConnection();
        throw dbError(QStringLiteral("open ") + m_dialect.displayName(), error);
    }
    QSqlQuery setup(db);
    for (const QString &statement : m_dialect.connectionSetup())
        setup.exec(statement);
    return db;
}

void ServiceDb::releaseThreadConnection()
{
    std::lock_guard<std::mutex> lock(m_connectionsMutex);
    const auto it = m_connections.find(QThread::currentThread());
    if (it == m_connections.end())
        return;
    const QString name = it->name;
    it->statements->clear();
    m_connections.erase(it);
    QSqlDatabase::removeDatabase(name);
}

QSqlDriver *ServiceDb::driver()
{
    return connection().driver();
}

QVariant ServiceDb::insert(const QString &sql, const QVariantList &values)
{
    QSqlQuery query = exec(sql + QStringLiteral(" RETURNING id"), values);
    const QVariant id = query.next() ? query.value(0) : QVariant();
    query.finish();
    return id;
}

void ServiceDb::exclusively(const std::function<void()> &body)
{
    const QString take = m_dialect.seedLock(false);
    if (take.isEmpty()) {
        body();
        return;
    }
    exec(take);
    try {
        body();
    } catch (...) {
        exec(m_dialect.seedLock(true));
        throw;
    }
    exec(m_dialect.seedLock(true));
}

QSqlQuery ServiceDb::exec(const QString &sql, const QVariantList &values)
{
    QSqlError error;
    // A statement outside a transaction that found its connection lost (the
    // database restarted) runs once more on a new one.
    for (int attempt = 0; attempt < 2; ++attempt) {
        QSqlQuery query(connection());
        if (run(query, sql, values))
            return query;
        error = query.lastError();
        if (!lostConnection(error) || !markBroken())
            break;
    }
    throw dbError(sql, error);
}

bool ServiceDb::run(QSqlQuery &query, const QString &sql, const QVariantList &values)
{
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        return false;
    // Every text column is NOT NULL; a null QString means "no text".
    for (const QVariant &value : values)
        query.addBindValue(value.type() == QVariant::String && value.toString().isNull()
                               ? QVariant(QStringLiteral(""))
                               : value);
    return query.exec();
}

void ServiceDb::execSchema(const QString &sql)
{
    // PostgreSQL prepares only plain queries, not schema statements.
    QSqlQuery query(connection());
    if (!query.exec(sql))
        throw dbError(sql, query.lastError());
}

QVariant ServiceDb::scalar(const QString &sql, const QVariantList &values, const QVariant &fallback)
{
    QVariant result = fallback;
    runStatement(sql, values, [&](QSqlQuery &query) {
        if (query.next())
            result = query.value(0);
    });
    return result;
}

void ServiceDb::eachRow(const QString &sql, const QVariantList &values, const std::function<void(const QSqlQuery &)> &row)
{
    runStatement(sql, values, [&](QSqlQuery &query) {
        while (query.next())
            row(query);
    });
}

std::shared_ptr<ServiceDb::Statement> ServiceDb::statement(const QString &sql)
{
    const QSqlDatabase db = connection();
    std::shared_ptr<StatementCache> cache;
    {
        std::lock_guard<std::mutex> lock(m_connectionsMutex);
        cache = m_connections.value(QThread::currentThread()).statements;
    }
    std::shared_ptr<Statement> &cached = (*cache)[sql];
    // A statement still being read further up this thread's stack (a
    // recursive walk) is left alone: this use gets one of its own.
    if (cached && !cached->busy)
        return cached;
    auto fresh = std::make_shared<Statement>(Statement{QSqlQuery(db), false});
    fresh->query.setForwardOnly(true);
    if (!fresh->query.prepare(sql)) {
        const QSqlError error = fresh->query.lastError();
        if (!cached)
            cache->remove(sql);
        throw dbError(sql, error);
    }
    if (!cached)
        cached = fresh;
    return fresh;
}

void ServiceDb::runStatement(const QString &sql, const QVariantList &values, const std::function<void(QSqlQuery &)> &use)
{
    std::shared_ptr<Statement> kept;
    // As in exec(): once more on a new connection when this one was lost.
    for (int attempt = 0; attempt < 2 && !kept; ++attempt) {
        const std::shared_ptr<Statement> candidate = statement(sql);
        QSqlQuery &query = candidate->query;
        for (int i = 0; i < values.size(); ++i)
            query.bindValue(i, values.at(i).type() == QVariant::String && values.at(i).toString().isNull()
                                   ? QVariant(QStringLiteral(""))
                                   : values.at(i));
        if (query.exec()) {
            kept = candidate;
            break;
        }
        const QSqlError error = query.lastError();
        query.finish();
        if (attempt > 0 || !lostConnection(error) || !markBroken())
            throw dbError(sql, error);
    }
    Statement &statement = *kept;
    statement.busy = true;
    struct Release {
        Statement &s;
        ~Release()
        {
            // Resetting ends the statement's read of the database.
            s.query.finish();
            s.busy = false;
        }
    } release{statement};
    use(statement.query);
}

void ServiceDb::write(const std::function<void()> &body)
{
    QMutexLocker lock(&m_writeMutex);
    runTransaction([&] {
        // Serializes with the writers of every other process on the same
        // database, as SQLite's file lock does: a check and the write that
        // depends on it cannot interleave with another process's.
        const QString lockStatement = m_dialect.writeLock(false);
        if (!lockStatement.isEmpty())
            exec(lockStatement);
        body();
    });
}

bool ServiceDb::tryWrite(const std::function<void()> &body)
{
    std::unique_lock<QMutex> lock(m_writeMutex, std::try_to_lock);
    if (!lock.owns_lock())
        return false;
    bool ran = false;
    runTransaction([&] {
        const QString lockStatement = m_dialect.writeLock(true);
        if (!lockStatement.isEmpty() && !scalar(lockStatement).toBool())
            return;
        body();
        ran = true;
    });
    return ran;
}

void ServiceDb::runTransaction(const std::function<void()> &body)
{
    QSqlDatabase db = connection();
    if (!db.transaction()) {
        const QSqlError error = db.lastError();
        db = QSqlDatabase();
        if (!lostConnection(error) || !markBroken())
            throw dbError(QStringLiteral("begin"), error);
        db = connection();
        if (!db.transaction())
            throw dbError(QStringLiteral("begin"), db.lastError());
    }
    setInTransaction(true);
    try {
        body();
    } catch (...) {
        db.rollback();
        setInTransaction(false);
        ++m_writeGeneration;
        throw;
    }
    const bool committed = db.commit();
    const QSqlError error = db.lastError();
    if (!committed)
        db.rollback();
    setInTransaction(false);
    ++m_writeGeneration;
    if (!committed)
        throw dbError(QStringLiteral("commit"), error);
}
