#pragma once
#include <QHash>
#include <QList>
#include <QPair>
#include <QByteArray>
#include <QString>

#include "sessioncache.h"

#include <mutex>

class PasswordHasher;
class ServiceDb;

// Users, their sessions, enterprises and memberships. Methods that write
// expect to run inside ServiceDb::write; the caller decides the transaction.
class AccountStore
{
public:
    enum Role { NoRole = 0, ReadRole = 1, WriteRole = 2, AdminRole = 3 };

    struct Session {
        int userId = 0;
        QString username;
        QString displayName;
        QString token;
        // What is stored for the token (session() fills it).
        QString digest;
    };
    struct EnterpriseSession {
        int userId = 0;
        int enterpriseId = 0;
    };
    struct Membership {
        int enterpriseId = 0;
        QString name;
        Role role = NoRole;
    };

    static constexpr int SessionDays = 30;
    // An enterprise login unused this long ends.
    static constexpr int EnterpriseIdleMinutes = 120;

    AccountStore(ServiceDb &db, PasswordHasher &hasher);

    int createUser(const QString &username, const QString &displayName, const QString &password);
    int createEnterprise(int id, const QString &name);
    void setMember(int enterpriseId, int userId, Role role);

    // Checks the password; throws ServiceError with a message for the user.
    // A hash of an older kind or cost is replaced in its own write.
    int verify(const QString &username, const QString &password);
    Session openSession(int userId);
    void closeSession(const QString &token);
    // Forgets the cached copy of a session once its close has committed.
    void forgetSession(const QString &token);
    // userId 0 when the token is unknown.
    Session session(const QString &token);

    // `kind` "pri" for an enterprise server login, "cj" for the material price
    // server that the Korvane login opens by itself. The token is bound to
    // `parentSession` (not empty): it is accepted only with that session and
    // ends with it. Only digests of both are stored; the token is derived
    // from the session, so a copy of the file holds nothing usable.
    QString openEnterpriseSession(int enterpriseId, int userId, const QString &parentSession,
                                  const QString &kind = QStringLiteral("pri"));
    void closeEnterpriseSessions(int enterpriseId, const QString &parentSession, const QString &token);
    // userId 0 unless `token` is live and was opened by `parentSession`.
    EnterpriseSession enterpriseSession(const QString &token, const QString &parentSession);
    // `userId`'s enterprise session of this Korvane session for `enterpriseId`, if any.
    QString enterpriseTokenOf(const QString &parentSession, int userId, int enterpriseId,
                              const QString &kind = QStringLiteral("pri"));
    // All of enterpriseTokenOf for this session at once, by kind and enterprise id;
    // `lapsesMs`, if given, is lowered to the moment the first of them idles out.
    QHash<QPair<QString, int>, QString> enterpriseTokensOf(const QString &parentSession, int userId,
                                                           qint64 *lapsesMs = nullptr);
    // Drops expired logins; run inside a write.
    void purgeExpired();

    Role role(int enterpriseId, int userId);
    QList<Membership> memberships(int userId);
    QString enterpriseName(int enterpriseId);

    static QString roleName(Role role);
    static Role roleFromName(const QString &name);

private:
    void rehash(int userId, const QString &password);
    // Checked against for unknown names, so they take a real check's time.
    QByteArray dummyHash();
    void touchEnterpriseSession(const QString &digest, const QString &lastUsed);

    ServiceDb &m_db;
    PasswordHasher &m_hasher;
    std::once_flag m_dummyOnce;
    QByteArray m_dummy;
    SessionCache m_sessions{qint64(SessionDays) * 86400};
};
