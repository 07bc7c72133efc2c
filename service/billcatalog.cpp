#include "billcatalog.h"
#include "servicedb.h"
#include "tierscope.h"
#include "matching/rerankweights.h"

#include <hostapi/jsonnesting.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtDebug>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {
// Bills of the Korvane cloud's standard library are public to every tier.
const QString kPublicScope = QString();

// A large upload or delete leaves freed index and request memory in the
// allocator's free lists; hand it back to the system.
void releaseFreedMemory(int changed)
{
#ifdef __GLIBC__
    if (changed >= 100)
        malloc_trim(0);
#else
    Q_UNUSED(changed);
#endif
}
}

BillCatalog::BillCatalog(ServiceDb &db)
    : m_db(db)
{
    RerankWeights weights;
    QString error;
    if (weights.loadShipped(&error))
        m_index.setRerankWeights(weights);
    else
        qWarning().noquote() << error << "- bills are ranked by text alone";
}

QStringList BillCatalog::quotaNamesOf(const QString &zjnr)
{
    QStringList names;
    const QJsonArray lines = JsonNesting::parse(zjnr.toUtf8()).object().value(QStringLiteral("zjnr")).toArray();
    for (const QJsonValue &line : lines) {
        const QJsonObject o = line.toObject();
        if (o.value(QStringLiteral("TYPE")).toString() == QLatin1String("DE"))
            names << o.value(QStringLiteral("XMMC")).toString();
    }
    return names;
}

QString BillCatalog::scopeOf(const BillStore::Bill &bill)
{
    if (bill.tier == TierScope::Korvane && bill.source == BillStore::StandardSource && bill.projectId == 0
        && bill.zjnr.isEmpty())
        return kPublicScope;
    return TierScope::scopeKey(bill.tier, bill.owner);
}

BillRecord BillCatalog::recordOf(const BillStore::Bill &bill)
{
    BillRecord r;
    r.id = bill.id;
    r.source = bill.source;
    r.projectId = bill.projectId > 0 ? QString::number(bill.projectId) : QString();
    r.scope = scopeOf(bill);
    // Codes of stored bills carry a 3-digit sequence after the 9-digit standard code.
    r.code = bill.qdbh.left(9);
    r.name = bill.xmmc;
    r.unit = bill.jldw;
    r.features = bill.xmtz;
    r.workContent = bill.gznr;
    r.payload = bill.id;
    r.quotaNames = quotaNamesOf(bill.zjnr);
    return r;
}

void BillCatalog::load()
{
    BillStore store(m_db);
    for (const BillStore::Bill &bill : store.allBills())
        m_index.add(recordOf(bill));
    m_index.build();
    releaseFreedMemory(m_index.size());
}

void BillCatalog::added(const QVector<qint64> &ids)
{
    if (ids.isEmpty())
        return;
    BillStore store(m_db);
    for (qint64 id : ids) {
        const BillStore::Bill bill = store.bill(id);
        if (bill.id != 0)
            m_index.add(recordOf(bill));
    }
    m_index.build();
    releaseFreedMemory(ids.size());
}

void BillCatalog::removed(const QVector<qint64> &ids)
{
    if (ids.isEmpty())
        return;
    for (qint64 id : ids)
        m_index.remove(id);
    m_index.build();
    releaseFreedMemory(ids.size());
}

void BillCatalog::refresh(const QVector<qint64> &ids)
{
    BillStore store(m_db);
    for (qint64 id : ids) {
        const BillStore::Bill bill = store.bill(id);
        if (bill.id != 0)
            m_index.add(recordOf(bill));
        else
            m_index.remove(id);
    }
    m_index.build();
    releaseFreedMemory(ids.size());
}

QVector<qint64> BillCatalog::match(const Query &query, const QString &scope, int *total) const
{
    BillQuery q;
    q.code = query.code.left(9);
    q.name = query.name;
    q.unit = query.unit;
    q.features = query.features;
    q.workContent = query.workContent;
    q.sourceMask = query.sourceMask;
    q.projectIds = query.projectIds;
    q.scopes = QStringList{scope, kPublicScope};
    q.keyword = query.keyword.trimmed();
    q.offset = query.offset;
    q.limit = query.limit;
    QVector<qint64> ids;
    for (const BillMatch &m : m_index.query(q, total))
        ids.append(m.payload);
    return ids;
}
