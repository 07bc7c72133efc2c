#include "loginthrottle.h"
#include "serviceerror.h"

#include <QElapsedTimer>

namespace {

qint64 delayFor(int failures, const LoginThrottle::Policy &policy)
{
    const int over = failures - policy.freeFailures;
    if (over <= 0)
        return 0;
    qint64 delay = policy.firstDelayMs;
    for (int i = 1; i < over && delay < policy.maxDelayMs; ++i)
        delay *= 2;
    return qMin(delay, policy.maxDelayMs);
}

}

LoginThrottle::LoginThrottle(Clock clock)
    : m_clock(std::move(clock))
{
    if (!m_clock) {
        auto timer = std::make_shared<QElapsedTimer>();
        timer->start();
        m_clock = [timer] { return timer->elapsed(); };
    }
}

qint64 LoginThrottle::now() const
{
    return m_clock();
}

void LoginThrottle::begin(const QString &account, const QString &address)
{
    QMutexLocker lock(&m_mutex);
    const qint64 at = now();
    const qint64 wait = qMax(remaining(m_accounts, account, at),
                             address.isEmpty() ? 0 : remaining(m_addresses, address, at));
    if (wait > 0)
        throw ServiceError(ServiceError::TooManyAttempts,
                           QStringLiteral("登录失败次数过多，请%1秒后再试").arg((wait + 999) / 1000));
    fail(m_accounts, account, AccountPolicy, at);
    if (!address.isEmpty())
        fail(m_addresses, address, AddressPolicy, at);
}

void LoginThrottle::succeeded(const QString &account, const QString &address)
{
    QMutexLocker lock(&m_mutex);
    m_accounts.remove(account);
    if (!address.isEmpty())
        undo(m_addresses, address, AddressPolicy);
}

void LoginThrottle::cancelled(const QString &account, const QString &address)
{
    QMutexLocker lock(&m_mutex);
    undo(m_accounts, account, AccountPolicy);
    if (!address.isEmpty())
        undo(m_addresses, address, AddressPolicy);
}

qint64 LoginThrottle::remaining(Table &table, const QString &key, qint64 at)
{
    auto it = table.find(key);
    if (it == table.end())
        return 0;
    if (at - it->last > ForgetAfterMs && at >= it->lockedUntil) {
        table.erase(it);
        return 0;
    }
    return qMax<qint64>(0, it->lockedUntil - at);
}

void LoginThrottle::fail(Table &table, const QString &key, const Policy &policy, qint64 at)
{
    if (table.size() >= MaxKeys)
        prune(table, at);
    // Every key locked: a new one is not tracked rather than a lock dropped.
    if (table.size() >= MaxKeys && !table.contains(key))
        return;
    Entry &entry = table[key];
    ++entry.failures;
    entry.last = at;
    const qint64 delay = delayFor(entry.failures, policy);
    if (delay > 0)
        entry.lockedUntil = at + delay;
}

void LoginThrottle::undo(Table &table, const QString &key, const Policy &policy)
{
    auto it = table.find(key);
    if (it == table.end())
        return;
    if (--it->failures <= 0)
        table.erase(it);
    else if (delayFor(it->failures, policy) == 0)
        it->lockedUntil = 0;
}

void LoginThrottle::prune(Table &table, qint64 at)
{
    for (auto it = table.begin(); it != table.end();) {
        if (at >= it->lockedUntil)
            it = table.erase(it);
        else
            ++it;
    }
}
