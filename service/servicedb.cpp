#include "servicedb.h"
#include "serviceerror.h"

#include <QAtomicInteger>
#include <QFile>
#include <QSqlError>

#include <mutex>

namespace {

QAtomicInteger<quint64> s_instanceCounter;

// Each entry raises the schema by one version; never edit a landed entry,
// append a new one.
const QStringList &migrations()
{
    static const QStringList steps{
        // 1: accounts, tiers, bill libraries, projects, bills, saving tasks, prices
        QStringLiteral(
            "CREATE TABLE users(id INTEGER PRIMARY KEY, username TEXT NOT NULL UNIQUE, display_name TEXT NOT NULL,"
            " salt BLOB NOT NULL, hash BLOB NOT NULL, iterations INTEGER NOT NULL);"
            "CREATE TABLE sessions(token TEXT PRIMARY KEY, user_id INTEGER NOT NULL, created TEXT NOT NULL);"
            "CREATE TABLE enterprises(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
            "CREATE TABLE members(enterprise_id INTEGER NOT NULL, user_id INTEGER NOT NULL,"
            " role TEXT NOT NULL CHECK(role IN ('read','write','admin')), PRIMARY KEY(enterprise_id, user_id));"
            "CREATE TABLE enterprise_sessions(token TEXT PRIMARY KEY, enterprise_id INTEGER NOT NULL,"
            " user_id INTEGER NOT NULL, parent_session TEXT NOT NULL DEFAULT '', created TEXT NOT NULL);"
            "CREATE TABLE libraries(id INTEGER PRIMARY KEY, tier INTEGER NOT NULL, owner INTEGER NOT NULL,"
            " name TEXT NOT NULL, created TEXT NOT NULL, UNIQUE(tier, owner, name));"
            "CREATE TABLE chapters(id TEXT PRIMARY KEY, library_id INTEGER NOT NULL, parent_id TEXT NOT NULL DEFAULT '',"
            " name TEXT NOT NULL, sort INTEGER NOT NULL DEFAULT 0);"
            "CREATE TABLE projects(id INTEGER PRIMARY KEY, tier INTEGER NOT NULL, owner INTEGER NOT NULL,"
            " xmmc TEXT NOT NULL, dxmc TEXT NOT NULL DEFAULT '', dwmc TEXT NOT NULL DEFAULT '',"
            " qdgf TEXT NOT NULL DEFAULT '', jjde TEXT NOT NULL DEFAULT '', jsfs TEXT NOT NULL DEFAULT '',"
            " zhdjfs TEXT NOT NULL DEFAULT '', hbgd TEXT NOT NULL DEFAULT '', dd TEXT NOT NULL DEFAULT '',"
            " jgjzsj TEXT NOT NULL DEFAULT '', jsxs TEXT NOT NULL DEFAULT '', zjsjlx TEXT NOT NULL DEFAULT '',"
            " uploader_id INTEGER NOT NULL DEFAULT 0, gc_type INTEGER NOT NULL DEFAULT 1, created TEXT NOT NULL);"
            "CREATE TABLE bills(id INTEGER PRIMARY KEY, tier INTEGER NOT NULL, owner INTEGER NOT NULL,"
            " source INTEGER NOT NULL, library_id INTEGER NOT NULL DEFAULT 0, chapter_id TEXT NOT NULL DEFAULT '',"
            " project_id INTEGER NOT NULL DEFAULT 0, task_id TEXT NOT NULL DEFAULT '',"
            " qdbh TEXT NOT NULL, xmmc TEXT NOT NULL, jldw TEXT NOT NULL DEFAULT '', xmtz TEXT NOT NULL DEFAULT '',"
            " gznr TEXT NOT NULL DEFAULT '', zhdj REAL NOT NULL DEFAULT 0, zjnr TEXT NOT NULL DEFAULT '',"
            " dxmc TEXT NOT NULL DEFAULT '', created TEXT NOT NULL);"
            "CREATE TABLE saving_tasks(id TEXT PRIMARY KEY, tier INTEGER NOT NULL, owner INTEGER NOT NULL,"
            " user_id INTEGER NOT NULL, library_id INTEGER NOT NULL, chapter_id TEXT NOT NULL, mark INTEGER NOT NULL,"
            " qdcount INTEGER NOT NULL, uploaded INTEGER NOT NULL DEFAULT 0, created TEXT NOT NULL);"
            "CREATE TABLE price_libraries(id TEXT PRIMARY KEY, tier INTEGER NOT NULL, owner INTEGER NOT NULL,"
            " name TEXT NOT NULL, created TEXT NOT NULL, UNIQUE(tier, owner, name));"
            "CREATE TABLE material_prices(id INTEGER PRIMARY KEY, library_id TEXT NOT NULL, clbm TEXT NOT NULL DEFAULT '',"
            " clmc TEXT NOT NULL, ggxh TEXT NOT NULL DEFAULT '', dw TEXT NOT NULL DEFAULT '', cd TEXT NOT NULL DEFAULT '',"
            " cj TEXT NOT NULL DEFAULT '', djhs REAL NOT NULL, djbhs REAL NOT NULL, jgjzsj TEXT NOT NULL DEFAULT '',"
            " gcdd TEXT NOT NULL DEFAULT '', xmmc TEXT NOT NULL DEFAULT '')"),
        // 2: lookups by owner and parent
        QStringLiteral(
            "CREATE INDEX idx_sessions_user ON sessions(user_id);"
            "CREATE INDEX idx_chapters_parent ON chapters(library_id, parent_id, sort);"
            "CREATE INDEX idx_bills_scope ON bills(tier, owner, source);"
            "CREATE INDEX idx_bills_project ON bills(project_id);"
            "CREATE INDEX idx_projects_scope ON projects(tier, owner);"
            "CREATE INDEX idx_prices_library ON material_prices(library_id)"),
        // 3: sessions of the material price servers, opened with the Korvane login
        QStringLiteral("ALTER TABLE enterprise_sessions ADD COLUMN kind TEXT NOT NULL DEFAULT 'pri'"),
        // 4: only digests of tokens are kept (earlier logins end), enterprise
        // tokens derived from their session, idle enterprise logins expire
        QStringLiteral("DELETE FROM enterprise_sessions;"
                       "DELETE FROM sessions;"
                       "ALTER TABLE enterprise_sessions ADD COLUMN nonce TEXT NOT NULL DEFAULT '';"
                       "ALTER TABLE enterprise_sessions ADD COLUMN last_used TEXT NOT NULL DEFAULT '';"
                       "CREATE INDEX idx_enterprise_sessions_parent ON enterprise_sessions(parent_session)"),
    };
    return steps;
}

// Every text column is NOT NULL; a null QString means "no text".
QVariant bindable(const QVariant &value)
{
    return value.type() == QVariant::String && value.toString().isNull() ? QVariant(QStringLiteral("")) : value;
}

ServiceError dbError(const QString &what, const QSqlError &error)
{
    qWarning("velora service db: %s: %s", qUtf8Printable(what), qUtf8Printable(error.text()));
    return ServiceError(ServiceError::Internal, QStringLiteral("服务器数据库错误，请稍后重试"));
}

}

ServiceDb::ServiceDb(const QString &filePath)
    : m_path(filePath)
    , m_prefix(QStringLiteral("velora_service_%1_").arg(++s_instanceCounter))
{
}

ServiceDb::~ServiceDb()
{
    QMutexLocker lock(&m_connectionsMutex);
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
    return migrations().size();
}

void ServiceDb::open()
{
    restrictFileAccess();
    QSqlDatabase db = connection();
    exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    // All connections together (process-wide).
    exec(QStringLiteral("PRAGMA soft_heap_limit=33554432"));
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
    return scalar(QStringLiteral("PRAGMA user_version"), {}, 0).toInt();
}

void ServiceDb::migrate()
{
    QMutexLocker lock(&m_writeMutex);
    QSqlDatabase db = connection();
    const int current = schemaVersion();
    for (int version = current + 1; version <= latestVersion(); ++version) {
        if (!db.transaction())
            throw dbError(QStringLiteral("begin migration"), db.lastError());
        try {
            const QStringList statements = migrations().at(version - 1).split(QLatin1Char(';'), Qt::SkipEmptyParts);
            for (const QString &statement : statements)
                exec(statement);
            exec(QStringLiteral("PRAGMA user_version = %1").arg(version));
        } catch (...) {
            db.rollback();
            throw;
        }
        if (!db.commit())
            throw dbError(QStringLiteral("commit migration"), db.lastError());
    }
}

QSqlDatabase ServiceDb::connection()
{
    QThread *thread = QThread::currentThread();
    QString name;
    {
        QMutexLocker lock(&m_connectionsMutex);
        auto it = m_connections.constFind(thread);
        if (it != m_connections.constEnd() && it->thread == thread)
            return QSqlDatabase::database(it->name, false);
        dropDeadThreadConnections();
        name = m_prefix + QString::number(reinterpret_cast<quintptr>(thread), 16) + QLatin1Char('_')
            + QString::number(++s_instanceCounter);
        m_connections.insert(thread, Entry{QPointer<QThread>(thread), name, std::make_shared<StatementCache>()});
    }
    return openConnection(name);
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
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    db.setDatabaseName(m_path);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=10000"));
    if (!db.open())
        throw dbError(QStringLiteral("open ") + m_path, db.lastError());
    QSqlQuery pragma(db);
    pragma.exec(QStringLiteral("PRAGMA foreign_keys=ON"));
    // Every request thread has a connection of its own; SQLite's default
    // 2 MB page cache each would add up to far more than the data needs.
    pragma.exec(QStringLiteral("PRAGMA cache_size=-512"));
    return db;
}

QSqlQuery ServiceDb::exec(const QString &sql, const QVariantList &values)
{
    QSqlQuery query(connection());
    query.setForwardOnly(true);
    if (!query.prepare(sql))
        throw dbError(sql, query.lastError());
    for (const QVariant &value : values)
        query.addBindValue(bindable(value));
    if (!query.exec())
        throw dbError(sql, query.lastError());
    return query;
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
        QMutexLocker lock(&m_connectionsMutex);
        cache = m_connections.value(QThread::currentThread()).statements;
    }
    std::shared_ptr<Statement> &cached = (*cache)[sql];
    // A statement still being read further up this thread's stack (a
    // recursive walk) is left alone: this use gets one of its own.
    if (cached && !cached->busy)
        return cached;
    auto fresh = std::make_shared<Statement>(Statement{QSqlQuery(db), false});
    fresh->query.setForwardOnly(true);
    if (!fresh->query.prepare(sql))
        throw dbError(sql, fresh->query.lastError());
    if (!cached)
        cached = fresh;
    return fresh;
}

void ServiceDb::runStatement(const QString &sql, const QVariantList &values, const std::function<void(QSqlQuery &)> &use)
{
    const std::shared_ptr<Statement> statement = this->statement(sql);
    QSqlQuery &query = statement->query;
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, bindable(values.at(i)));
    if (!query.exec())
        throw dbError(sql, query.lastError());
    statement->busy = true;
    struct Release {
        Statement &s;
        ~Release()
        {
            // Resetting ends the statement's read of the file.
            s.query.finish();
            s.busy = false;
        }
    } release{*statement};
    use(query);
}

void ServiceDb::write(const std::function<void()> &body)
{
    QMutexLocker lock(&m_writeMutex);
    runTransaction(body);
}

bool ServiceDb::tryWrite(const std::function<void()> &body)
{
    std::unique_lock<QMutex> lock(m_writeMutex, std::try_to_lock);
    if (!lock.owns_lock())
        return false;
    runTransaction(body);
    return true;
}

void ServiceDb::runTransaction(const std::function<void()> &body)
{
    QSqlDatabase db = connection();
    if (!db.transaction())
        throw dbError(QStringLiteral("begin"), db.lastError());
    try {
        body();
    } catch (...) {
        db.rollback();
        throw;
    }
    if (!db.commit()) {
        const QSqlError error = db.lastError();
        db.rollback();
        throw dbError(QStringLiteral("commit"), error);
    }
}
