#include "accountstore.h"
#include "passwordhash.h"
#include "passwordhasher.h"
#include "servicedb.h"
#include "serviceerror.h"

#include <QDateTime>
#include <QSqlQuery>

namespace {

QString now()
{
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
}

// Logins older than this are refused; the user logs in again.
QString sessionCutoff()
{
    return QDateTime::currentDateTimeUtc().addDays(-AccountStore::SessionDays).toString(Qt::ISODate);
}

QString idleCutoff()
{
    return QDateTime::currentDateTimeUtc()
        .addSecs(-60 * AccountStore::EnterpriseIdleMinutes)
        .toString(Qt::ISODate);
}

// An enterprise token is a keyed digest of its row's nonce under the raw
// session: the server can give it again (server list) only to that session.
QString enterpriseToken(const QString &parentSession, const QString &nonce, const QString &kind)
{
    const QString mac = PasswordHash::keyedDigest(parentSession.toUtf8(), nonce.toUtf8());
    return (kind == QLatin1String("cj") ? QStringLiteral("cj_") : QStringLiteral("ent_")) + mac;
}

}

AccountStore::AccountStore(ServiceDb &db, PasswordHasher &hasher)
    : m_db(db)
    , m_hasher(hasher)
{
}

int AccountStore::createUser(const QString &username, const QString &displayName, const QString &password)
{
    if (m_db.scalar(QStringLiteral("SELECT COUNT(*) FROM users WHERE username = ?"), {username}).toInt() > 0)
        throw ServiceError(ServiceError::Conflict, QStringLiteral("用户名已存在"));
    // The Argon2id text carries its own salt and cost: salt stays empty and
    // iterations 0.
    return m_db
        .insert(QStringLiteral("INSERT INTO users(username, display_name, salt, hash, iterations) VALUES(?, ?, ?, ?, 0)"),
                {username, displayName, QByteArray(""), m_hasher.hash(password)})
        .toInt();
}

int AccountStore::createEnterprise(int id, const QString &name)
{
    m_db.exec(QStringLiteral("INSERT INTO enterprises(id, name) VALUES(?, ?)"), {id, name});
    return id;
}

void AccountStore::setMember(int enterpriseId, int userId, Role role)
{
    if (role == NoRole) {
        m_db.exec(QStringLiteral("DELETE FROM members WHERE enterprise_id = ? AND user_id = ?"), {enterpriseId, userId});
        return;
    }
    m_db.exec(QStringLiteral("INSERT INTO members(enterprise_id, user_id, role) VALUES(?, ?, ?)"
                             " ON CONFLICT(enterprise_id, user_id) DO UPDATE SET role = excluded.role"),
              {enterpriseId, userId, roleName(role)});
}

int AccountStore::verify(const QString &username, const QString &password)
{
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT id, salt, hash, iterations FROM users WHERE username = ?"),
                            {username});
    const ServiceError wrong(ServiceError::NotLoggedIn, QStringLiteral("用户名或密码错误"));
    if (!q.next()) {
        m_hasher.verify(dummyHash(), password);
        throw wrong;
    }
    const int userId = q.value(0).toInt();
    const int iterations = q.value(3).toInt();
    const QByteArray stored = q.value(2).toByteArray();
    const bool legacy = iterations > 0;
    const bool right = legacy ? m_hasher.verifyLegacy(password, q.value(1).toByteArray(), iterations, stored)
                              : m_hasher.verify(stored, password);
    if (!right)
        throw wrong;
    if (legacy || m_hasher.needsRehash(stored))
        rehash(userId, password);
    return userId;
}

void AccountStore::rehash(int userId, const QString &password)
{
    // Best effort: a busy moment leaves the old hash for the next login.
    try {
        const QByteArray fresh = m_hasher.hash(password);
        m_db.write([&] {
            m_db.exec(QStringLiteral("UPDATE users SET salt = ?, hash = ?, iterations = 0 WHERE id = ?"),
                      {QByteArray(""), fresh, userId});
        });
    } catch (const ServiceError &e) {
        qWarning("velora service: password hash not upgraded: %s", qUtf8Printable(e.message()));
    }
}

QByteArray AccountStore::dummyHash()
{
    std::call_once(m_dummyOnce, [this] { m_dummy = m_hasher.hash(PasswordHash::randomToken(16)); });
    return m_dummy;
}

AccountStore::Session AccountStore::openSession(int userId)
{
    purgeExpired();
    Session s;
    s.token = PasswordHash::randomToken();
    m_db.exec(QStringLiteral("INSERT INTO sessions(token, user_id, created) VALUES(?, ?, ?)"),
              {PasswordHash::tokenDigest(s.token), userId, now()});
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT username, display_name FROM users WHERE id = ?"), {userId});
    if (q.next()) {
        s.userId = userId;
        s.username = q.value(0).toString();
        s.displayName = q.value(1).toString();
    }
    return s;
}

void AccountStore::closeSession(const QString &token)
{
    const QString digest = PasswordHash::tokenDigest(token);
    m_db.exec(QStringLiteral("DELETE FROM enterprise_sessions WHERE parent_session = ?"), {digest});
    m_db.exec(QStringLiteral("DELETE FROM sessions WHERE token = ?"), {digest});
    m_sessions.drop(digest);
}

void AccountStore::forgetSession(const QString &token)
{
    m_sessions.drop(PasswordHash::tokenDigest(token));
}

AccountStore::Session AccountStore::session(const QString &token)
{
    Session s;
    if (token.isEmpty())
        return s;
    const QString digest = PasswordHash::tokenDigest(token);
    const qint64 nowMs = QDateTime::currentMSecsSinceEpoch();
    SessionCache::Entry cached;
    // A shared database may have seen a logout through another instance:
    // only a store of this process alone trusts its recent reads.
    const bool cacheable = !m_db.dialect().isPostgres();
    if (cacheable && m_sessions.find(digest, nowMs / 1000, nowMs, &cached))
        return Session{cached.userId, cached.username, cached.displayName, token, digest};
    const quint64 generation = m_sessions.generation();
    m_db.eachRow(QStringLiteral("SELECT u.id, u.username, u.display_name, s.created FROM sessions s"
                                " JOIN users u ON u.id = s.user_id WHERE s.token = ? AND s.created > ?"),
                 {digest, sessionCutoff()}, [&](const QSqlQuery &q) {
                     s.userId = q.value(0).toInt();
                     s.username = q.value(1).toString();
                     s.displayName = q.value(2).toString();
                     s.token = token;
                     s.digest = digest;
                     cached.createdSecs = QDateTime::fromString(q.value(3).toString(), Qt::ISODate).toSecsSinceEpoch();
                 });
    if (cacheable && s.userId != 0)
        m_sessions.store(digest, SessionCache::Entry{s.userId, s.username, s.displayName, cached.createdSecs, nowMs},
                         generation);
    return s;
}

QString AccountStore::openEnterpriseSession(int enterpriseId, int userId, const QString &parentSession,
                                           const QString &kind)
{
    if (parentSession.isEmpty())
        throw ServiceError(ServiceError::NotLoggedIn, QStringLiteral("未登录Korvane云或登录已失效，请重新登录"));
    const QString nonce = PasswordHash::randomToken(16);
    const QString token = enterpriseToken(parentSession, nonce, kind);
    m_db.exec(QStringLiteral("INSERT INTO enterprise_sessions(token, enterprise_id, user_id, parent_session, created,"
                             " kind, nonce, last_used) VALUES(?, ?, ?, ?, ?, ?, ?, ?)"),
              {PasswordHash::tokenDigest(token), enterpriseId, userId, PasswordHash::tokenDigest(parentSession), now(),
               kind, nonce, now()});
    return token;
}

void AccountStore::closeEnterpriseSessions(int enterpriseId, const QString &parentSession, const QString &token)
{
    const QString parent = parentSession.isEmpty() ? QString() : PasswordHash::tokenDigest(parentSession);
    m_db.exec(QStringLiteral("DELETE FROM enterprise_sessions WHERE enterprise_id = ? AND (token = ?"
                             " OR (parent_session <> '' AND parent_session = ? AND kind = 'pri'))"),
              {enterpriseId, PasswordHash::tokenDigest(token), parent});
}

AccountStore::EnterpriseSession AccountStore::enterpriseSession(const QString &token, const QString &parentSession)
{
    EnterpriseSession s;
    if (token.isEmpty() || parentSession.isEmpty())
        return s;
    const QString digest = PasswordHash::tokenDigest(token);
    QString lastUsed;
    m_db.eachRow(QStringLiteral("SELECT e.user_id, e.enterprise_id, e.last_used FROM enterprise_sessions e"
                                " JOIN sessions s ON s.token = e.parent_session"
                                " WHERE e.token = ? AND e.parent_session = ? AND s.created > ? AND e.last_used > ?"),
                 {digest, PasswordHash::tokenDigest(parentSession), sessionCutoff(), idleCutoff()},
                 [&](const QSqlQuery &q) {
                     s.userId = q.value(0).toInt();
                     s.enterpriseId = q.value(1).toInt();
                     lastUsed = q.value(2).toString();
                 });
    if (s.userId != 0)
        touchEnterpriseSession(digest, lastUsed);
    return s;
}

void AccountStore::touchEnterpriseSession(const QString &digest, const QString &lastUsed)
{
    // A minute's precision is plenty for the idle time-out, and spares a
    // write per request.
    const QString minuteAgo = QDateTime::currentDateTimeUtc().addSecs(-60).toString(Qt::ISODate);
    if (lastUsed > minuteAgo)
        return;
    m_db.tryWrite([&] {
        m_db.exec(QStringLiteral("UPDATE enterprise_sessions SET last_used = ? WHERE token = ?"), {now(), digest});
    });
}

QString AccountStore::enterpriseTokenOf(const QString &parentSession, int userId, int enterpriseId, const QString &kind)
{
    if (parentSession.isEmpty())
        return QString();
    const QString nonce =
        m_db.scalar(QStringLiteral("SELECT nonce FROM enterprise_sessions WHERE parent_session = ? AND user_id = ?"
                                   " AND enterprise_id = ? AND kind = ? AND last_used > ?"
                                   " ORDER BY created DESC, rowid DESC LIMIT 1"),
                    {PasswordHash::tokenDigest(parentSession), userId, enterpriseId, kind, idleCutoff()})
            .toString();
    return nonce.isEmpty() ? QString() : enterpriseToken(parentSession, nonce, kind);
}

QHash<QPair<QString, int>, QString> AccountStore::enterpriseTokensOf(const QString &parentSession, int userId,
                                                                     qint64 *lapsesMs)
{
    QHash<QPair<QString, int>, QString> tokens;
    if (parentSession.isEmpty())
        return tokens;
    m_db.eachRow(QStringLiteral("SELECT kind, enterprise_id, nonce, last_used FROM enterprise_sessions"
                                " WHERE parent_session = ? AND user_id = ? AND last_used > ?"
                                " ORDER BY created DESC, rowid DESC"),
                 {PasswordHash::tokenDigest(parentSession), userId, idleCutoff()}, [&](const QSqlQuery &q) {
                     const QString kind = q.value(0).toString();
                     const QPair<QString, int> key(kind, q.value(1).toInt());
                     if (tokens.contains(key))
                         return;
                     tokens.insert(key, enterpriseToken(parentSession, q.value(2).toString(), kind));
                     if (lapsesMs)
                         *lapsesMs = qMin(*lapsesMs, QDateTime::fromString(q.value(3).toString(), Qt::ISODate)
                                                         .addSecs(60 * EnterpriseIdleMinutes)
                                                         .toMSecsSinceEpoch());
                 });
    return tokens;
}

void AccountStore::purgeExpired()
{
    m_db.exec(QStringLiteral("DELETE FROM sessions WHERE created <= ?"), {sessionCutoff()});
    m_db.exec(QStringLiteral("DELETE FROM enterprise_sessions WHERE last_used <= ?"
                             " OR parent_session NOT IN (SELECT token FROM sessions)"),
              {idleCutoff()});
}

AccountStore::Role AccountStore::role(int enterpriseId, int userId)
{
    return roleFromName(
        m_db.scalar(QStringLiteral("SELECT role FROM members WHERE enterprise_id = ? AND user_id = ?"),
                    {enterpriseId, userId})
            .toString());
}

QList<AccountStore::Membership> AccountStore::memberships(int userId)
{
    QList<Membership> list;
    m_db.eachRow(QStringLiteral("SELECT e.id, e.name, m.role FROM members m JOIN enterprises e"
                                " ON e.id = m.enterprise_id WHERE m.user_id = ? ORDER BY e.id"),
                 {userId}, [&](const QSqlQuery &q) {
                     list.append(Membership{q.value(0).toInt(), q.value(1).toString(), roleFromName(q.value(2).toString())});
                 });
    return list;
}

QString AccountStore::enterpriseName(int enterpriseId)
{
    return m_db.scalar(QStringLiteral("SELECT name FROM enterprises WHERE id = ?"), {enterpriseId}).toString();
}

QString AccountStore::roleName(Role role)
{
    switch (role) {
    case ReadRole:
        return QStringLiteral("read");
    case WriteRole:
        return QStringLiteral("write");
    case AdminRole:
        return QStringLiteral("admin");
    case NoRole:
        break;
    }
    return QString();
}

AccountStore::Role AccountStore::roleFromName(const QString &name)
{
    if (name == QLatin1String("read"))
        return ReadRole;
    if (name == QLatin1String("write"))
        return WriteRole;
    if (name == QLatin1String("admin"))
        return AdminRole;
    return NoRole;
}
