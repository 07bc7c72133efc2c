#pragma once
#include <QHash>
#include <QJsonValue>
#include <QString>

#include <functional>
#include <limits>
#include <mutex>

class ServiceDb;

// Results of reads, kept by key while this process has written nothing to
// the database since they were read (ServiceDb::writeGeneration), for a second
// at most (another process on the same file writes unseen) and never past the
// moment the result itself lapses (a login idling out). Only for stores this
// process alone writes through; shared databases do not use it.
class ReadCache
{
public:
    static constexpr qint64 TrustMs = 1000;
    static constexpr qint64 Never = std::numeric_limits<qint64>::max();

    // Past `maxEntries`, the entries no longer current are dropped (all of
    // them, if none is).
    explicit ReadCache(int maxEntries = 10000);

    // The value under `key`: kept, or else made by `read` (which may lower
    // `lapsesMs` from Never) and kept. On a shared database always `read`.
    QJsonValue fetch(const QString &key, ServiceDb &db, const std::function<QJsonValue(qint64 *lapsesMs)> &read);

    // True with `value` filled when `key` was read at `generation`, under
    // TrustMs ago and before its lapse.
    bool find(const QString &key, quint64 generation, qint64 nowMs, QJsonValue *value) const;
    // `generation` as read before the database was: a write that went in
    // meanwhile leaves the entry unused.
    void store(const QString &key, const QJsonValue &value, quint64 generation, qint64 readMs, qint64 lapsesMs);

private:
    struct Entry {
        QJsonValue value;
        quint64 generation = 0;
        qint64 readMs = 0;
        qint64 lapsesMs = 0;
    };

    const int m_maxEntries;
    mutable std::mutex m_mutex;
    QHash<QString, Entry> m_entries;
};
