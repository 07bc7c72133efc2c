#include "billindex.h"
#include "billindexdata.h"

#include <algorithm>

BillIndex::BillIndex()
    : m_current(std::make_shared<BillIndexData>())
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

std::shared_ptr<const BillIndexData> BillIndex::current() const
{
    std::lock_guard<std::mutex> lock(m_currentMutex);
    return m_current;
}

void BillIndex::publish(std::shared_ptr<const BillIndexData> next)
{
    {
        std::lock_guard<std::mutex> lock(m_currentMutex);
        m_current.swap(next);
    }
    // `next` now holds the old state; it goes when its last query ends.
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
    if (pending.empty() && removals.empty())
        return;
    std::vector<BillIndexData::Staged> staged;
    staged.reserve(pending.size());
    for (const BillRecord &r : pending)
        staged.push_back(BillIndexData::stage(r));
    pending = std::vector<BillRecord>();

    const std::shared_ptr<const BillIndexData> old = current();
    // Arrays grown by a tenth or more carry much spare room; a compact copy
    // costs one more copy of the index (smaller builds copy it next time).
    bool grown = staged.size() * 10 >= size_t(old->size());
    auto next = std::make_shared<BillIndexData>(*old);
    next->apply(std::move(staged), removals);
    if (next->wantsCompaction()) {
        grown = true;
        auto fresh = std::make_shared<BillIndexData>();
        fresh->setBudget(next->budget());
        fresh->setWeights(next->weights());
        fresh->apply(next->liveDocs(), {});
        next = std::move(fresh);
    }
    if (next->normsStale())
        next->install(next->freshNorms());
    if (grown)
        next->shrink();
    publish(std::move(next));
}

QVector<BillMatch> BillIndex::query(const BillQuery &query, int *total) const
{
    return current()->query(query, total);
}

int BillIndex::size() const
{
    return current()->size();
}

int BillIndex::poolSize()
{
    return BillIndexData::kPool;
}

void BillIndex::setCandidateBudget(int postings)
{
    std::lock_guard<std::mutex> writer(m_writer);
    auto next = std::make_shared<BillIndexData>(*current());
    next->setBudget(size_t(std::max(1, postings)));
    publish(std::move(next));
}

void BillIndex::setRerankWeights(const RerankWeights &weights)
{
    std::lock_guard<std::mutex> writer(m_writer);
    auto next = std::make_shared<BillIndexData>(*current());
    next->setWeights(weights);
    publish(std::move(next));
}

QVector<BillFeatures> BillIndex::candidateFeatures(const BillQuery &query, int count) const
{
    return current()->candidateFeatures(query, count);
}
