#include "clsdacresult.h"

#include <QSqlRecord>

namespace DBM {

clsDACResult::clsDACResult(std::shared_ptr<QSqlQuery> query)
    : m_query(std::move(query))
{
}

bool clsDACResult::next()
{
    return m_query && m_query->isActive() && m_query->isSelect() && m_query->next();
}

QVariant clsDACResult::value(const QString &column) const
{
    if (!m_query || !m_query->isValid())
        return {};
    if (!m_haveColumns) {
        m_columns = m_query->record();
        m_haveColumns = true;
    }
    const int index = m_columns.indexOf(column);
    return index < 0 ? QVariant() : m_query->value(index);
}

QVariant clsDACResult::value(int index) const
{
    if (!m_query || !m_query->isValid())
        return {};
    return m_query->value(index);
}

int clsDACResult::columnCount() const
{
    return m_query ? m_query->record().count() : 0;
}

QString clsDACResult::columnName(int index) const
{
    return m_query ? m_query->record().fieldName(index) : QString();
}

int clsDACResult::numRowsAffected() const
{
    return m_query ? m_query->numRowsAffected() : -1;
}

QVariant clsDACResult::lastInsertId() const
{
    return m_query ? m_query->lastInsertId() : QVariant();
}

}
