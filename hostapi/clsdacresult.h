#pragma once
#include <QSqlQuery>
#include <QSqlRecord>
#include <QString>
#include <QVariant>

#include <memory>

namespace DBM {

// Rows of one executed statement. Valid while its clsDAC is open.
class clsDACResult
{
public:
    clsDACResult() = default;
    explicit clsDACResult(std::shared_ptr<QSqlQuery> query);

    bool next();
    QVariant value(const QString &column) const;
    QVariant value(int index) const;
    int columnCount() const;
    QString columnName(int index) const;
    int numRowsAffected() const;
    QVariant lastInsertId() const;

private:
    std::shared_ptr<QSqlQuery> m_query;
    // The columns, read once: QSqlQuery::record() copies the whole row.
    mutable QSqlRecord m_columns;
    mutable bool m_haveColumns = false;
};

}
