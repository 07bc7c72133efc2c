#include "readcache.h"
#include "servicedb.h"

#include <QDateTime>

ReadCache::ReadCache(int maxEntries)
    : m_maxEntries(maxEntries)
{
}

QJsonValue ReadCache::fetch(const QString &key, ServiceDb &db, const std::function<QJsonValue(qint64 *)> &read)
{
    qint64 lapsesMs = Never;
    if (db.dialect().isPostgres())
        return read(&lapsesMs);
    const quint64 generation = db.writeGeneration();
    const qint64 nowMs = QDateTime::currentMSecsSinceEpoch();
    QJsonValue value;
    if (find(key, generation, nowMs, &value))
        return value;
    value = read(&lapsesMs);
    store(key, value, generation, nowMs, lapsesMs);
    return value;
}

bool ReadCache::find(const QString &key, quint64 generation, qint64 nowMs, QJsonValue *value) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto it = m_entries.constFind(key);
    if (it == m_entries.constEnd() || it->generation != generation || nowMs < it->readMs
        || nowMs - it->readMs >= TrustMs || nowMs >= it->lapsesMs)
        return false;
    *value = it->value;
    return true;
}

void ReadCache::store(const QString &key, const QJsonValue &value, quint64 generation, qint64 readMs, qint64 lapsesMs)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_entries.size() >= m_maxEntries) {
        for (auto it = m_entries.begin(); it != m_entries.end();) {
            if (it->generation != generation || readMs - it->readMs >= TrustMs)
                it = m_entries.erase(it);
            else
                ++it;
        }
        if (m_entries.size() >= m_maxEntries)
            m_entries.clear();
    }
    m_entries.insert(key, Entry{value, generation, readMs, lapsesMs});
}
