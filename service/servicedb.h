#pragma once
#include <QHash>
#include <QMutex>
#include <QPointer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QThread>
#include <QVariantList>

#include "servicedialect.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

class QSqlDriver;
class QSqlError;

// The service's database, a SQLite file or a PostgreSQL database (see
// ServiceDialect): one connection per calling thread (Qt SQL allows a
// connection on its own thread only), schema version raised by migrations.
// Writes are serialized (across processes too) and run in one transaction
// each, so a killed process leaves either all or nothing.
class ServiceDb
{
public:
    explicit ServiceDb(const QString &location);
    ~ServiceDb();
    ServiceDb(const ServiceDb &) = delete;
    ServiceDb &operator=(const ServiceDb &) = delete;

    // Opens the file and migrates it to the newest schema. Throws ServiceError.
    void open();
    // Of a SQLite file.
    static int latestVersion();
    int schemaVersion();

    // Runs one prepared statement on this thread's connection; throws
    // ServiceError (code Internal) on failure. The query is positioned before
    // its first row.
    QSqlQuery exec(const QString &sql, const QVariantList &values = {});
    // Runs an INSERT into a table with a generated "id" and returns that id.
    QVariant insert(const QString &sql, const QVariantList &values);
    // Single value of the first row, or `fallback` when there is no row.
    QVariant scalar(const QString &sql, const QVariantList &values = {}, const QVariant &fallback = QVariant());
    // Calls `row` for each result row. The statement is prepared once per
    // connection and kept (the reads every request makes would otherwise
    // spend most of their time in the SQL parser); it is reset afterwards.
    void eachRow(const QString &sql, const QVariantList &values, const std::function<void(const QSqlQuery &)> &row);

    // Runs `body` inside one write transaction (serialized with every other
    // writer of this object). Any exception rolls everything back and is
    // rethrown.
    void write(const std::function<void()> &body);
    // write() when no other writer holds the lock at this moment (this
    // thread's included); otherwise nothing. For bookkeeping that may lapse.
    bool tryWrite(const std::function<void()> &body);
    // Runs `body` while no other process runs an exclusively() body on the
    // same database (for the first-run seed).
    void exclusively(const std::function<void()> &body);

    // Raised as each write transaction of this object ends: results read at
    // one value are current while it holds.
    quint64 writeGeneration() const { return m_writeGeneration.load(); }

    const ServiceDialect &dialect() const { return m_dialect; }
    // This process's name on its PostgreSQL connections.
    QString instanceTag() const { return m_instanceTag; }
    // The driver of this thread's connection (to subscribe to notifications).
    QSqlDriver *driver();
    // Closes this thread's connection (before the thread ends).
    void releaseThreadConnection();

private:
    struct Statement {
        QSqlQuery query;
        bool busy = false;
    };
    using StatementCache = QHash<QString, std::shared_ptr<Statement>>;

    QSqlDatabase connection();
    std::shared_ptr<Statement> statement(const QString &sql);
    void runStatement(const QString &sql, const QVariantList &values, const std::function<void(QSqlQuery &)> &use);
    QSqlDatabase openConnection(const QString &name);
    void migrate();
    void execSchema(const QString &sql);
    static bool run(QSqlQuery &query, const QString &sql, const QVariantList &values);
    bool lostConnection(const QSqlError &error) const;
    // Marks this thread's connection for replacement; true when that may
    // happen now (no transaction is open on it).
    bool markBroken();
    void setInTransaction(bool inTransaction);
    void dropDeadThreadConnections();
    void runTransaction(const std::function<void()> &body);
    void restrictFileAccess();

    QString m_path;
    ServiceDialect m_dialect;
    QString m_prefix;
    QString m_instanceTag;
    // std::mutex (pthreads), which the thread sanitizer follows.
    std::mutex m_connectionsMutex;
    struct Entry {
        QPointer<QThread> thread;
        QString name;
        bool broken = false;
        bool inTransaction = false;
        // Prepared statements of this connection, used by its thread only;
        // cleared before the connection is removed.
        std::shared_ptr<StatementCache> statements = std::make_shared<StatementCache>();
    };
    QHash<QThread *, Entry> m_connections;
    QMutex m_writeMutex;
    std::atomic<quint64> m_writeGeneration{0};
};
