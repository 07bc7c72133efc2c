#pragma once
#include <QHash>
#include <QMutex>
#include <QString>

#include <functional>

// Failed logins counted per account and per client address. Past a few free
// failures each further one locks the key for a delay that doubles (capped);
// a locked key is refused before any password is hashed. An attempt counts
// as failed from its start, so a burst of concurrent guesses is throttled
// as if it came one by one.
class LoginThrottle
{
public:
    using Clock = std::function<qint64()>; // milliseconds, monotonic

    struct Policy {
        int freeFailures;
        qint64 firstDelayMs;
        qint64 maxDelayMs;
    };
    static constexpr Policy AccountPolicy{5, 1000, 15 * 60 * 1000};
    // Addresses are shared by whole offices behind one router.
    static constexpr Policy AddressPolicy{20, 1000, 15 * 60 * 1000};
    // Failures of a key quiet this long are forgotten.
    static constexpr qint64 ForgetAfterMs = 60 * 60 * 1000;
    static constexpr int MaxKeys = 20000;

    explicit LoginThrottle(Clock clock = Clock());

    // Throws ServiceError (TooManyAttempts, "登录失败次数过多，请N秒后再试")
    // while the account or the address (empty: not counted) is locked.
    void begin(const QString &account, const QString &address);
    void succeeded(const QString &account, const QString &address);
    // The attempt ended without a verdict on the password.
    void cancelled(const QString &account, const QString &address);

private:
    struct Entry {
        int failures = 0;
        qint64 lockedUntil = 0;
        qint64 last = 0;
    };
    using Table = QHash<QString, Entry>;

    qint64 now() const;
    qint64 remaining(Table &table, const QString &key, qint64 at);
    void fail(Table &table, const QString &key, const Policy &policy, qint64 at);
    void undo(Table &table, const QString &key, const Policy &policy);
    void prune(Table &table, qint64 at);

    Clock m_clock;
    QMutex m_mutex;
    Table m_accounts;
    Table m_addresses;
};
