#include "passwordhasher.h"
#include "serviceerror.h"

#include <QThread>

class PasswordHasher::Slot
{
public:
    explicit Slot(PasswordHasher &owner)
        : m_owner(owner)
    {
        if (++m_owner.m_waiting > m_owner.m_capacity) {
            --m_owner.m_waiting;
            throw ServiceError(ServiceError::Busy, QStringLiteral("服务器繁忙，请稍后再试"));
        }
        m_owner.m_slots.acquire();
    }
    ~Slot()
    {
        m_owner.m_slots.release();
        --m_owner.m_waiting;
    }
    Slot(const Slot &) = delete;
    Slot &operator=(const Slot &) = delete;

private:
    PasswordHasher &m_owner;
};

PasswordHasher::PasswordHasher(const PasswordHash::Cost &cost, int workers, int queueLimit)
    : m_cost(cost)
    , m_slots(qMax(1, workers))
    , m_capacity(qMax(1, workers) + qMax(0, queueLimit))
{
}

int PasswordHasher::defaultSlots()
{
    // One core always stays with the other requests.
    return qMax(1, QThread::idealThreadCount() / 2);
}

QByteArray PasswordHasher::hash(const QString &password)
{
    Slot slot(*this);
    const QByteArray result = PasswordHash::hash(password, m_cost);
    if (result.isEmpty())
        throw ServiceError(ServiceError::Busy, QStringLiteral("服务器繁忙，请稍后再试"));
    return result;
}

bool PasswordHasher::verify(const QByteArray &stored, const QString &password)
{
    Slot slot(*this);
    return PasswordHash::verify(stored, password);
}

bool PasswordHasher::verifyLegacy(const QString &password, const QByteArray &salt, int iterations,
                                  const QByteArray &key)
{
    Slot slot(*this);
    return PasswordHash::verifyLegacy(password, salt, iterations, key);
}

bool PasswordHasher::needsRehash(const QByteArray &stored) const
{
    return PasswordHash::needsRehash(stored, m_cost);
}
