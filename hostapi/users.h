#pragma once
#include <QMutex>
#include <QString>

// The user's login to the Korvane cloud. Personal and Korvane-cloud server
// entries ride on this login; enterprise servers have logins of their own.
class UserInfo
{
public:
    bool IsLogin() const;
    QString UserID() const;
    QString userName() const;
    // The name typed at the last successful login (the display name may
    // differ); offered again by the login form, also after a logout.
    QString loginName() const;
    // Session token issued by the cloud at login; sent by the channels beside
    // the request, never inside the request envelope.
    QString sessionToken() const;

    void setLogin(const QString &userId, const QString &userName, const QString &sessionToken,
                  const QString &loginName = QString());
    // `forgetName` also drops the login name (a fresh application folder).
    void setLogout(bool forgetName = false);

private:
    mutable QMutex m_mutex;
    QString m_userId;
    QString m_userName;
    QString m_session;
    QString m_loginName;
};

class Users
{
public:
    static Users *Instance();
    UserInfo *Kvy() { return &m_kvy; }

private:
    Users() = default;
    UserInfo m_kvy;
};
