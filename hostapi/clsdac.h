#pragma once
#include "clsdacresult.h"
#include "exdbm.h"

#include <QString>
#include <QVariantList>

#include <memory>
#include <vector>

namespace DBM {

// One connection to one SQLite file. Each object has a connection of its own
// under a unique name, so objects may be used on any thread (each on one).
class clsDAC
{
public:
    explicit clsDAC(const QString &path, bool readOnly = false);
    ~clsDAC();
    clsDAC(const clsDAC &) = delete;
    clsDAC &operator=(const clsDAC &) = delete;

    QString path() const { return m_path; }
    bool isOpen() const;

    // Runs one statement as written; throws exDBM with SQLite's message.
    clsDACResult execSql(const QString &sql, int *rowsAffected = nullptr);
    // Runs one statement with positional ('?') bound values.
    clsDACResult execPrepared(const QString &sql, const QVariantList &values, int *rowsAffected = nullptr);

    void addSQLiteAttachDatabase(const QString &alias, const QString &path);
    void detachSQLiteDatabase(const QString &alias);

    void beginTransaction();
    void commit();
    void rollback();

    void closeDB();

private:
    void open(bool readOnly);
    clsDACResult run(const QString &sql, const QVariantList *values, int *rowsAffected);

    QString m_path;
    QString m_connectionName;
    std::vector<std::weak_ptr<QSqlQuery>> m_queries;
};

}
