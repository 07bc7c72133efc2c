#pragma once
#include "billstore.h"
#include "matching/billindex.h"

#include <QString>
#include <QStringList>
#include <QVector>

class ServiceDb;

// The stored bills as the matcher sees them: loads every bill into the index
// at open, follows inserts and removals, and answers ranked queries limited to
// what one tier may see (its own bills plus the public standard library).
class BillCatalog
{
public:
    struct Query {
        QString code, name, unit, features, workContent, keyword;
        int sourceMask = 3;
        QStringList projectIds;
        int offset = 0;
        int limit = 10;
    };

    explicit BillCatalog(ServiceDb &db);

    void load();
    // After the transaction that wrote them has committed.
    void added(const QVector<qint64> &ids);
    void removed(const QVector<qint64> &ids);
    // Re-reads the bills `ids` (written by another process): present ones
    // replace their entry, missing ones leave the index.
    void refresh(const QVector<qint64> &ids);

    // Ranked bill ids visible from the scope key `scope` ("p:<user>",
    // "e:<enterprise>", "k"); `total` is the ranked depth for paging.
    QVector<qint64> match(const Query &query, const QString &scope, int *total = nullptr) const;

    static QString scopeOf(const BillStore::Bill &bill);
    // The quota names of a stored price composition ("DE" lines).
    static QStringList quotaNamesOf(const QString &zjnr);

private:
    static BillRecord recordOf(const BillStore::Bill &bill);
    ServiceDb &m_db;
    BillIndex m_index;
};
