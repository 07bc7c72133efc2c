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
    QWriteLocker lock(&m_lock);
    m_data->add(record);
}

void BillIndex::remove(qint64 id)
{
    QWriteLocker lock(&m_lock);
    m_data->remove(id);
}

void BillIndex::build()
{
    QWriteLocker lock(&m_lock);
    m_data->build();
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
    QWriteLocker lock(&m_lock);
    m_data->setBudget(size_t(std::max(1, postings)));
}

void BillIndex::setRerankWeights(const RerankWeights &weights)
{
    QWriteLocker lock(&m_lock);
    m_data->setWeights(weights);
}

QVector<BillFeatures> BillIndex::candidateFeatures(const BillQuery &query, int count) const
{
    QReadLocker lock(&m_lock);
    return m_data->candidateFeatures(query, count);
}
