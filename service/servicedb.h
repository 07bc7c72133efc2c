#pragma once
#include <QHash>
#include <QMutex>
#include <QPointer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QThread>
#include <QVariantList>

#include <functional>
#include <memory>

// The service's SQLite file: one connection per calling thread (Qt SQL allows
// a connection on its own thread only), WAL journal, schema version kept in
// PRAGMA user_version and raised by migrations. Writes are serialized and run
// in one transaction each, so a killed process leaves either all or nothing.
class ServiceDb
{
public:
    explicit ServiceDb(const QString &filePath);
    ~ServiceDb();
    ServiceDb(const ServiceDb &) = delete;
    ServiceDb &operator=(const ServiceDb &) = delete;

    // Opens the file and migrates it to the newest schema. Throws ServiceError.
    void open();
    static int latestVersion();
    int schemaVersion();

    // Runs one prepared statement on this thread's connection; throws
    // ServiceError (code Internal) on failure. The query is positioned before
    // its first row.
    QSqlQuery exec(const QString &sql, const QVariantList &values = {});
    // Single value of the first row, or `fallback` when there is no row.
    QVariant scalar(const QString &sql, const QVariantList &values = {}, const QVariant &fallback = QVariant());
    // Calls `row` for each result row. The statement is prepared once per
    // connection and kept (the reads every request makes would otherwise
    // spend most of their time in SQLite's parser); it is reset afterwards.
    void eachRow(const QString &sql, const QVariantList &values, const std::function<void(const QSqlQuery &)> &row);

    // Runs `body` inside one write transaction (serialized with every other
    // writer of this object). Any exception rolls everything back and is
    // rethrown.
    void write(const std::function<void()> &body);
    // write() when no other writer holds the lock at this moment (this
    // thread's included); otherwise nothing. For bookkeeping that may lapse.
    bool tryWrite(const std::function<void()> &body);

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
    void dropDeadThreadConnections();
    void runTransaction(const std::function<void()> &body);
    void restrictFileAccess();

    QString m_path;
    QString m_prefix;
    QMutex m_connectionsMutex;
    struct Entry {
        QPointer<QThread> thread;
        QString name;
        // Prepared statements of this connection, used by its thread only.
        std::shared_ptr<StatementCache> statements;
    };
    QHash<QThread *, Entry> m_connections;
    QMutex m_writeMutex;
};
