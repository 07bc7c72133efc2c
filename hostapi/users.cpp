#include "users.h"

bool UserInfo::IsLogin() const
{
    QMutexLocker lock(&m_mutex);
    return !m_session.isEmpty();
}

QString UserInfo::UserID() const
{
    QMutexLocker lock(&m_mutex);
    return m_userId;
}

QString UserInfo::userName() const
{
    QMutexLocker lock(&m_mutex);
    return m_userName;
}

QString UserInfo::sessionToken() const
{
    QMutexLocker lock(&m_mutex);
    return m_session;
}

void UserInfo::setLogin(const QString &userId, const QString &userName, const QString &sessionToken)
{
    QMutexLocker lock(&m_mutex);
    m_userId = userId;
    m_userName = userName;
    m_session = sessionToken;
}

void UserInfo::setLogout()
{
    QMutexLocker lock(&m_mutex);
    m_userId.clear();
    m_userName.clear();
    m_session.clear();
}

Users *Users::Instance()
{
    static Users users;
    return &users;
}
