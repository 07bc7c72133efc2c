#include "clsdac.h"

#include <QAtomicInteger>
#include <QFileInfo>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QThread>

#include <algorithm>

namespace DBM {

namespace {
QAtomicInteger<quint64> s_counter;

QString errorText(const QSqlError &error)
{
    const QString db = error.databaseText();
    return db.isEmpty() ? error.text() : db;
}
}

clsDAC::clsDAC(const QString &path, bool readOnly)
    : m_path(path)
{
    m_connectionName = QStringLiteral("velora-dac-%1").arg(s_counter.fetchAndAddRelaxed(1));
    open(readOnly);
}

clsDAC::~clsDAC()
{
    closeDB();
}

void clsDAC::open(bool readOnly)
{
    if (!readOnly)
        QDir().mkpath(QFileInfo(m_path).absolutePath());
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    db.setDatabaseName(m_path);
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000");
    if (readOnly)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    db.setConnectOptions(options);
    if (!db.open()) {
        const QString message = errorText(db.lastError());
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connectionName);
        m_connectionName.clear();
        throw exDBM(message.isEmpty() ? QStringLiteral("unable to open database file: ") + m_path : message);
    }
}

bool clsDAC::isOpen() const
{
    return !m_connectionName.isEmpty() && QSqlDatabase::database(m_connectionName, false).isOpen();
}

clsDACResult clsDAC::run(const QString &sql, const QVariantList *values, int *rowsAffected)
{
    if (m_connectionName.isEmpty())
        throw exDBM(QStringLiteral("database is closed: ") + m_path);
    auto query = std::make_shared<QSqlQuery>(QSqlDatabase::database(m_connectionName, false));
    // Results are read once, in order: without this every row read stays
    // cached in the query until it goes.
    query->setForwardOnly(true);
    bool ok = false;
    if (values) {
        ok = query->prepare(sql);
        if (ok) {
            for (const QVariant &v : *values)
                query->addBindValue(v);
            ok = query->exec();
        }
    } else {
        ok = query->exec(sql);
    }
    if (!ok)
        throw exDBM(errorText(query->lastError()));
    if (rowsAffected)
        *rowsAffected = query->numRowsAffected();
    m_queries.erase(std::remove_if(m_queries.begin(), m_queries.end(),
                                   [](const std::weak_ptr<QSqlQuery> &w) { return w.expired(); }),
                    m_queries.end());
    m_queries.push_back(query);
    return clsDACResult(query);
}

clsDACResult clsDAC::execSql(const QString &sql, int *rowsAffected)
{
    return run(sql, nullptr, rowsAffected);
}

clsDACResult clsDAC::execPrepared(const QString &sql, const QVariantList &values, int *rowsAffected)
{
    return run(sql, &values, rowsAffected);
}

void clsDAC::addSQLiteAttachDatabase(const QString &alias, const QString &path)
{
    execPrepared(QStringLiteral("ATTACH DATABASE ? AS \"%1\"").arg(QString(alias).replace(QLatin1Char('"'), QStringLiteral("\"\""))),
                 {path});
}

void clsDAC::detachSQLiteDatabase(const QString &alias)
{
    // Open statements on the attached schema would keep it locked.
    for (auto &weak : m_queries) {
        if (auto q = weak.lock())
            q->finish();
    }
    execSql(QStringLiteral("DETACH DATABASE \"%1\"").arg(QString(alias).replace(QLatin1Char('"'), QStringLiteral("\"\""))));
}

void clsDAC::beginTransaction()
{
    execSql(QStringLiteral("BEGIN IMMEDIATE"));
}

void clsDAC::commit()
{
    execSql(QStringLiteral("COMMIT"));
}

void clsDAC::rollback()
{
    execSql(QStringLiteral("ROLLBACK"));
}

void clsDAC::closeDB()
{
    if (m_connectionName.isEmpty())
        return;
    for (auto &weak : m_queries) {
        if (auto q = weak.lock()) {
            q->finish();
            *q = QSqlQuery();
        }
    }
    m_queries.clear();
    {
        QSqlDatabase db = QSqlDatabase::database(m_connectionName, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
    m_connectionName.clear();
}

}
