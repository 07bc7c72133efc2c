#include "sessioncache.h"

SessionCache::SessionCache(qint64 lifeSecs)
    : m_lifeSecs(lifeSecs)
{
}

bool SessionCache::find(const QString &digest, qint64 nowSecs, qint64 nowMs, Entry *entry) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto it = m_entries.constFind(digest);
    if (it == m_entries.constEnd() || nowMs - it->readMs >= TrustMs || nowMs < it->readMs
        || it->createdSecs <= nowSecs - m_lifeSecs)
        return false;
    *entry = *it;
    return true;
}

quint64 SessionCache::generation() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_generation;
}

void SessionCache::store(const QString &digest, const Entry &entry, quint64 generation)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (generation != m_generation)
        return;
    if (m_entries.size() >= MaxEntries)
        m_entries.clear();
    m_entries.insert(digest, entry);
}

void SessionCache::drop(const QString &digest)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    ++m_generation;
    m_entries.remove(digest);
}
