#include "serverregistry.h"
#include "cloudenvelope.h"
#include "apptype.h"
#include "hostconstants.h"
#include "servicesutil.h"
#include "staticpriloginobj.h"
#include "users.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
const QString kKindKv = QStringLiteral("kv");

// A host-only call on the module's envelope. The Korvane session travels
// beside it; the token names the Korvane account.
QJsonObject hostRequest(const QString &method, const QString &token, QJsonObject fields = QJsonObject())
{
    return CloudEnvelope::build(method, token, fields);
}

QJsonObject send(QJsonObject request)
{
    return CloudEnvelope::send(request);
}

// Empty when the reply is a success, else the text to show the user.
QString failureText(const QJsonObject &reply)
{
    if (reply.isEmpty())
        return QStringLiteral("无法连接云服务，请稍后重试");
    if (reply.value(QStringLiteral("code")).toInt(0) == 0)
        return QString();
    const QString msg = reply.value(QStringLiteral("msg")).toString();
    return msg.isEmpty() ? QStringLiteral("登录失败") : msg;
}

bool ridesOnKorvaneLogin(const LtdInfo &entry)
{
    return entry.kind() == kKindKv || entry.getToken().contains(KvToken);
}
}

ServerRegistry::ServerRegistry(QObject *parent)
    : QObject(parent)
{
    connect(ServicesUtil::instance(), &ServicesUtil::sessionRejected, this, &ServerRegistry::sessionRejected);
}

// The server no longer knows a session we hold: show it as logged out. An
// enterprise session ends alone; anything else was the Korvane login.
void ServerRegistry::sessionRejected(const QString &token)
{
    for (LtdInfo *entry : std::as_const(m_current)) {
        if (!token.isEmpty() && entry->getToken() == token && !ridesOnKorvaneLogin(*entry)) {
            if (entry->getServerLogin())
                logoutEnterprise(entry->getServerName(), true);
            return;
        }
    }
    if (Users::Instance()->Kvy()->IsLogin())
        logoutKorvane(true);
}

ServerRegistry *ServerRegistry::instance()
{
    static ServerRegistry *registry = new ServerRegistry;
    return registry;
}

QList<LtdInfo *> ServerRegistry::servers() const
{
    return m_current;
}

LtdInfo *ServerRegistry::entryFor(const QString &kind, const QString &name)
{
    for (const auto &entry : m_entries)
        if (entry->kind() == kind && entry->getServerName() == name)
            return entry.get();
    m_entries.push_back(std::make_unique<LtdInfo>());
    LtdInfo *entry = m_entries.back().get();
    entry->setServerName(name);
    entry->setKind(kind);
    return entry;
}

LtdInfo *ServerRegistry::entryNamed(const QString &name) const
{
    for (LtdInfo *entry : m_current)
        if (entry->getServerName() == name)
            return entry;
    for (const auto &entry : m_entries)
        if (entry->getServerName() == name)
            return entry.get();
    return nullptr;
}

bool ServerRegistry::refresh()
{
    return take(send(hostRequest(QStringLiteral("getserverlist"), KvToken)));
}

bool ServerRegistry::take(const QJsonObject &reply)
{
    if (!failureText(reply).isEmpty())
        return false;
    QList<LtdInfo *> list;
    for (const QJsonValue &value : reply.value(QStringLiteral("data")).toArray()) {
        const QJsonObject record = value.toObject();
        LtdInfo *entry = entryFor(record.value(QStringLiteral("kind")).toString(),
                                  record.value(QStringLiteral("name")).toString());
        entry->setType(record.value(QStringLiteral("type")).toInt());
        entry->setQyid(record.value(QStringLiteral("qyid")).toInt());
        entry->setToken(record.value(QStringLiteral("token")).toString());
        m_cloudLogin.insert(entry, record.value(QStringLiteral("login")).toBool());
        if (!list.contains(entry))
            list << entry;
    }
    m_current = list;
    applyLoginState();
    emit changed();
    // The list of a session the server does not know shows the Korvane
    // entries logged out.
    if (Users::Instance()->Kvy()->IsLogin() && !list.isEmpty() && !m_cloudLogin.value(list.first()))
        logoutKorvane(true);
    return true;
}

void ServerRegistry::applyLoginState()
{
    const bool korvane = Users::Instance()->Kvy()->IsLogin();
    for (const auto &owned : m_entries) {
        LtdInfo *entry = owned.get();
        if (ridesOnKorvaneLogin(*entry)) {
            entry->setServerLogin(korvane);
            continue;
        }
        // An enterprise login made here wins; otherwise the cloud may know a
        // session of this account (its token then comes with the list).
        const QString session = m_enterpriseSessions.value(entry->getQyid());
        if (!session.isEmpty())
            entry->setToken(session);
        entry->setServerLogin(!session.isEmpty() || m_cloudLogin.value(entry));
    }
}

QString ServerRegistry::loginKorvane(const QString &user, const QString &password)
{
    const QJsonObject reply = send(hostRequest(
        QStringLiteral("login"), KvToken,
        QJsonObject{{QStringLiteral("username"), user}, {QStringLiteral("password"), password}}));
    const QString failure = failureText(reply);
    if (!failure.isEmpty())
        return failure;
    const QJsonObject data = reply.value(QStringLiteral("data")).toObject();
    const QString session = data.value(QStringLiteral("session")).toString();
    if (session.isEmpty())
        return QStringLiteral("登录失败");
    Users::Instance()->Kvy()->setLogin(data.value(QStringLiteral("userid")).toVariant().toString(),
                                       data.value(QStringLiteral("username")).toString(), session, user);
    applyLoginState();
    emit changed();
    emit staticPriLoginObj::GetInstance()->kvyLogin();
    return QString();
}

QString ServerRegistry::loginEnterprise(int hostIndex, const QString &user, const QString &password)
{
    const QList<LtdInfo *> full = servers();
    if (hostIndex < 0 || hostIndex >= full.size())
        return QStringLiteral("服务器不存在");
    LtdInfo *entry = full.at(hostIndex);
    const QJsonObject reply = send(hostRequest(QStringLiteral("enterpriselogin"), entry->getToken(),
                                               QJsonObject{{QStringLiteral("qyid"), entry->getQyid()},
                                                           {QStringLiteral("username"), user},
                                                           {QStringLiteral("password"), password}}));
    const QString failure = failureText(reply);
    if (!failure.isEmpty())
        return failure;
    const QString token = reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("token")).toString();
    if (token.isEmpty())
        return QStringLiteral("登录失败");
    m_enterpriseSessions.insert(entry->getQyid(), token);
    applyLoginState();
    emit changed();
    emit staticPriLoginObj::GetInstance()->priLogin(entry->getServerName());
    return QString();
}

void ServerRegistry::logoutKorvane(bool forced)
{
    if (!forced)
        send(hostRequest(QStringLiteral("logout"), KvToken));
    Users::Instance()->Kvy()->setLogout();
    // Enterprise sessions belong to the Korvane account.
    m_enterpriseSessions.clear();
    m_cloudLogin.clear();
    applyLoginState();
    emit changed();
    if (forced)
        emit staticPriLoginObj::GetInstance()->kvyForceExit();
    else
        emit staticPriLoginObj::GetInstance()->kvyExit();
}

void ServerRegistry::logoutEnterprise(const QString &serverName, bool forced)
{
    LtdInfo *entry = entryNamed(serverName);
    if (!entry || !entry->getServerLogin() || ridesOnKorvaneLogin(*entry))
        return;
    if (!forced)
        send(hostRequest(QStringLiteral("enterpriselogout"), entry->getToken(),
                         QJsonObject{{QStringLiteral("qyid"), entry->getQyid()}}));
    const int qyid = entry->getQyid();
    m_enterpriseSessions.remove(qyid);
    for (const auto &owned : m_entries)
        if (owned->getQyid() == qyid && !ridesOnKorvaneLogin(*owned))
            m_cloudLogin.insert(owned.get(), false);
    applyLoginState();
    emit changed();
    if (forced)
        emit staticPriLoginObj::GetInstance()->priForceExit(serverName);
    else
        emit staticPriLoginObj::GetInstance()->priExit(serverName);
}

void ServerRegistry::reset()
{
    m_current.clear();
    m_entries.clear();
    m_enterpriseSessions.clear();
    m_cloudLogin.clear();
    emit changed();
}
