#pragma once
#include <QHash>
#include <QString>

#include <mutex>

// Korvane sessions recently read from the database, keyed by token digest, so
// that a request does not read its session row again. A logout drops its
// entry (after its commit); an entry is trusted for a second only; the
// session's life is checked against its creation time on every hit. Stores
// shared by several instances do not use it.
class SessionCache
{
public:
    struct Entry {
        int userId = 0;
        QString username;
        QString displayName;
        qint64 createdSecs = 0;
        qint64 readMs = 0;
    };

    static constexpr qint64 TrustMs = 1000;
    static constexpr int MaxEntries = 10000;

    explicit SessionCache(qint64 lifeSecs);

    // True with `entry` filled when `digest` was read under TrustMs ago and
    // its session is younger than its life.
    bool find(const QString &digest, qint64 nowSecs, qint64 nowMs, Entry *entry) const;
    // Read before the database, handed to store(): an entry read while a
    // session was dropped is not kept.
    quint64 generation() const;
    void store(const QString &digest, const Entry &entry, quint64 generation);
    void drop(const QString &digest);

private:
    const qint64 m_lifeSecs;
    mutable std::mutex m_mutex;
    QHash<QString, Entry> m_entries;
    quint64 m_generation = 0;
};
