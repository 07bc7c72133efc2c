#include "billindex.h"
#include "billindexdata.h"

#include <algorithm>

BillIndex::BillIndex()
    : m_data(new BillIndexData)
{
}

BillIndex::~BillIndex() = default;

void BillIndex::add(const BillRecord &record)
{
    std::lock_guard<std::mutex> lock(m_pendingMutex);
    m_pending.push_back(record);
}

void BillIndex::remove(qint64 id)
{
    std::lock_guard<std::mutex> lock(m_pendingMutex);
    m_removals.push_back(id);
}

void BillIndex::build()
{
    std::lock_guard<std::mutex> writer(m_writer);
    std::vector<BillRecord> pending;
    std::vector<qint64> removals;
    {
        std::lock_guard<std::mutex> lock(m_pendingMutex);
        pending.swap(m_pending);
        removals.swap(m_removals);
    }
    std::vector<BillIndexData::Staged> staged;
    staged.reserve(pending.size());
    for (const BillRecord &r : pending)
        staged.push_back(BillIndexData::stage(r));
    pending = std::vector<BillRecord>();
    {
        QWriteLocker lock(&m_lock);
        m_data->apply(std::move(staged), removals);
    }
    // m_data changes only here, under m_writer, so reading it unlocked
    // beside the queries is safe.
    if (m_data->wantsCompaction()) {
        compact();
    } else if (m_data->normsStale()) {
        BillIndexData::Norms norms = m_data->freshNorms();
        QWriteLocker lock(&m_lock);
        m_data->install(std::move(norms));
    }
}

void BillIndex::compact()
{
    auto fresh = std::make_unique<BillIndexData>();
    fresh->setBudget(m_data->budget());
    fresh->apply(m_data->liveDocs(), {});
    fresh->install(fresh->freshNorms());
    {
        QWriteLocker lock(&m_lock);
        m_data.swap(fresh);
    }
    // The old index is freed here, outside the lock.
}

QVector<BillMatch> BillIndex::query(const BillQuery &query, int *total) const
{
    QReadLocker lock(&m_lock);
    return m_data->query(query, total);
}

int BillIndex::size() const
{
    QReadLocker lock(&m_lock);
    return m_data->size();
}

int BillIndex::poolSize()
{
    return BillIndexData::kPool;
}

void BillIndex::setCandidateBudget(int postings)
{
    std::lock_guard<std::mutex> writer(m_writer);
    QWriteLocker lock(&m_lock);
    m_data->setBudget(size_t(std::max(1, postings)));
}
