#include "accounthandlers.h"
#include "accountstore.h"
#include "loginthrottle.h"
#include "requestcontext.h"
#include "servicedb.h"
#include "serviceerror.h"

#include <QJsonArray>

namespace {

QJsonObject entry(const QString &name, const QString &token, int type, int qyid, const QString &kind, bool login)
{
    return QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("token"), token},
                       {QStringLiteral("type"), type}, {QStringLiteral("qyid"), qyid},
                       {QStringLiteral("kind"), kind}, {QStringLiteral("login"), login}};
}

// The three Korvane entries, built once: they differ only by "login".
QJsonArray korvaneEntries(bool loggedIn)
{
    const auto build = [](bool login) {
        return QJsonArray{
            entry(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, QStringLiteral("kv"), login),
            entry(QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 0, 0, QStringLiteral("kv"), login),
            entry(QStringLiteral("Korvane大数据"), QStringLiteral("kv_token_bigdata"), 0, 0, QStringLiteral("kv"), login)};
    };
    static const QJsonArray in = build(true);
    static const QJsonArray out = build(false);
    return loggedIn ? in : out;
}

}

void AccountHandlers::registerOn(QHash<QString, MethodHandler> &table)
{
    add(table, "getserverlist", &AccountHandlers::serverList);
    add(table, "login", &AccountHandlers::login);
    add(table, "logout", &AccountHandlers::logout);
    add(table, "enterpriselogin", &AccountHandlers::enterpriseLogin);
    add(table, "enterpriselogout", &AccountHandlers::enterpriseLogout);
}

QJsonObject AccountHandlers::serverList(const RequestContext &request)
{
    const AccountStore::Session session = m_context.accounts->session(request.session());
    if (session.userId == 0)
        return ok(korvaneEntries(false));
    // Memberships and enterprise logins change by writes alone, or as a
    // login idles out.
    return ok(m_serverLists.fetch(session.digest, *m_context.db, [&](qint64 *lapsesMs) {
        QJsonArray list = korvaneEntries(true);
        for (const QJsonValue &entry : enterpriseEntries(session, lapsesMs))
            list.append(entry);
        return list;
    }));
}

QJsonArray AccountHandlers::enterpriseEntries(const AccountStore::Session &session, qint64 *lapsesMs)
{
    QJsonArray list;
    const QList<AccountStore::Membership> memberships = m_context.accounts->memberships(session.userId);
    const auto tokens = m_context.accounts->enterpriseTokensOf(session.token, session.userId, lapsesMs);
    // Enterprise servers (type 1: libraries checked one by one) need a login
    // of their own; until then their token is a placeholder.
    for (const AccountStore::Membership &m : memberships) {
        const QString token = tokens.value(qMakePair(QStringLiteral("pri"), m.enterpriseId));
        list.append(entry(m.name, token.isEmpty() ? QStringLiteral("ent_%1").arg(m.enterpriseId) : token, 1,
                          m.enterpriseId, QStringLiteral("pri"), !token.isEmpty()));
    }
    // The enterprises' material price servers are open to the Korvane login.
    for (const AccountStore::Membership &m : memberships) {
        QString token = tokens.value(qMakePair(QStringLiteral("cj"), m.enterpriseId));
        if (token.isEmpty())
            token = materialServerToken(session, m.enterpriseId);
        list.append(entry(m.name + QStringLiteral("材价库"), token, 2, m.enterpriseId, QStringLiteral("cj"), true));
    }
    return list;
}

QString AccountHandlers::materialServerToken(const AccountStore::Session &session, int enterpriseId)
{
    const QString kind = QStringLiteral("cj");
    QString token = m_context.accounts->enterpriseTokenOf(session.token, session.userId, enterpriseId, kind);
    if (token.isEmpty())
        m_context.db->write([&] {
            token = m_context.accounts->enterpriseTokenOf(session.token, session.userId, enterpriseId, kind);
            if (token.isEmpty())
                token = m_context.accounts->openEnterpriseSession(enterpriseId, session.userId, session.token, kind);
        });
    return token;
}

QJsonObject AccountHandlers::login(const RequestContext &request)
{
    const QString username = request.text(QStringLiteral("username"), true, 64);
    const QString password = request.text(QStringLiteral("password"), true, 128);
    const int userId = checkPassword(request, username, password);
    AccountStore::Session session;
    m_context.db->write([&] { session = m_context.accounts->openSession(userId); });
    return ok(QJsonObject{{QStringLiteral("userid"), QString::number(session.userId)},
                          {QStringLiteral("username"), session.displayName},
                          {QStringLiteral("session"), session.token}});
}

int AccountHandlers::checkPassword(const RequestContext &request, const QString &username, const QString &password)
{
    LoginThrottle &throttle = *m_context.throttle;
    throttle.begin(username, request.client());
    try {
        const int userId = m_context.accounts->verify(username, password);
        throttle.succeeded(username, request.client());
        return userId;
    } catch (const ServiceError &e) {
        if (e.code() != ServiceError::NotLoggedIn)
            throttle.cancelled(username, request.client());
        throw;
    } catch (...) {
        throttle.cancelled(username, request.client());
        throw;
    }
}

QJsonObject AccountHandlers::logout(const RequestContext &request)
{
    if (request.session().isEmpty())
        throw ServiceError(ServiceError::NotLoggedIn, QStringLiteral("当前没有登录"));
    m_context.db->write([&] { m_context.accounts->closeSession(request.session()); });
    // Again after the commit: a request may have read the row meanwhile.
    m_context.accounts->forgetSession(request.session());
    return ok();
}

QJsonObject AccountHandlers::enterpriseLogin(const RequestContext &request)
{
    const int qyid = request.integer(QStringLiteral("qyid"), true);
    const QString username = request.text(QStringLiteral("username"), true, 64);
    const QString password = request.text(QStringLiteral("password"), true, 128);
    if (m_context.accounts->enterpriseName(qyid).isEmpty())
        throw ServiceError(ServiceError::NotFound, QStringLiteral("企业服务器不存在"));
    // The enterprise login lives inside the Korvane login that opened it.
    const AccountStore::Session parent = m_context.accounts->session(request.session());
    if (parent.userId == 0)
        throw ServiceError(ServiceError::NotLoggedIn, QStringLiteral("未登录Korvane云或登录已失效，请重新登录"));
    const int userId = checkPassword(request, username, password);
    if (m_context.accounts->role(qyid, userId) == AccountStore::NoRole)
        throw ServiceError(ServiceError::Forbidden, QStringLiteral("该账号不是此企业的成员"));
    QString token;
    m_context.db->write([&] {
        m_context.accounts->purgeExpired();
        token = m_context.accounts->openEnterpriseSession(qyid, userId, parent.token);
    });
    return ok(QJsonObject{{QStringLiteral("token"), token}});
}

QJsonObject AccountHandlers::enterpriseLogout(const RequestContext &request)
{
    const int qyid = request.integer(QStringLiteral("qyid"), true);
    const QString token = request.hasOriginToken() ? request.originToken() : QString();
    m_context.db->write([&] { m_context.accounts->closeEnterpriseSessions(qyid, request.session(), token); });
    return ok();
}
