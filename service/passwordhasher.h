#pragma once
#include "passwordhash.h"

#include <QByteArray>
#include <QSemaphore>
#include <QString>

#include <atomic>

// Runs password hashing on at most a few request threads at once, so that a
// burst of logins leaves cores (and memory: each Argon2id run takes its
// memory cost) to every other request. Callers beyond the queue limit are
// refused at once with "服务器繁忙，请稍后再试" instead of holding their
// connection's thread.
class PasswordHasher
{
public:
    explicit PasswordHasher(const PasswordHash::Cost &cost, int workers = defaultSlots(), int queueLimit = 8);

    static int defaultSlots();
    PasswordHash::Cost cost() const { return m_cost; }

    QByteArray hash(const QString &password);
    bool verify(const QByteArray &stored, const QString &password);
    bool verifyLegacy(const QString &password, const QByteArray &salt, int iterations, const QByteArray &key);
    bool needsRehash(const QByteArray &stored) const;

private:
    class Slot;

    PasswordHash::Cost m_cost;
    QSemaphore m_slots;
    int m_capacity;
    std::atomic<int> m_waiting{0};
};
