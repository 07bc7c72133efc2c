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

QString UserInfo::loginName() const
{
    QMutexLocker lock(&m_mutex);
    return m_loginName;
}

void UserInfo::setLogin(const QString &userId, const QString &userName, const QString &sessionToken,
                        const QString &loginName)
{
    QMutexLocker lock(&m_mutex);
    m_userId = userId;
    m_userName = userName;
    m_session = sessionToken;
    if (!loginName.isEmpty())
        m_loginName = loginName;
}

void UserInfo::setLogout(bool forgetName)
{
    QMutexLocker lock(&m_mutex);
    m_userId.clear();
    m_userName.clear();
    m_session.clear();
    if (forgetName)
        m_loginName.clear();
}

Users *Users::Instance()
{
    static Users users;
    return &users;
}
