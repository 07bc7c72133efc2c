#include "serverregistry.h"
#include "apptype.h"
#include "hostconstants.h"
#include "servicesutil.h"
#include "staticpriloginobj.h"
#include "users.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
const QString kKindKv = QStringLiteral("kv");
const QString kKindPri = QStringLiteral("pri");

// A host-only call on the module's envelope. The Korvane session travels
// beside it; the token names the Korvane account.
QJsonObject hostRequest(const QString &method, const QString &token, QJsonObject fields = QJsonObject())
{
    fields.insert(QStringLiteral("method"), method);
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), AppType()},
                       {QStringLiteral("orgin_token"), token},
                       {QStringLiteral("data"), fields}};
}

QJsonObject send(QJsonObject request)
{
    return QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(request)).object();
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

LtdInfo *ServerRegistry::entryNamed(const QString &name) const
{
    for (const auto &entry : m_entries)
        if (entry->getServerName() == name)
            return entry.get();
    return nullptr;
}

bool ServerRegistry::refresh()
{
    const QJsonObject reply = send(hostRequest(QStringLiteral("getserverlist"), KvToken));
    if (!failureText(reply).isEmpty())
        return false;
    QList<LtdInfo *> current;
    for (const QJsonValue &value : reply.value(QStringLiteral("data")).toArray()) {
        const QJsonObject record = value.toObject();
        const QString name = record.value(QStringLiteral("name")).toString();
        LtdInfo *entry = entryNamed(name);
        if (!entry) {
            m_entries.push_back(std::make_unique<LtdInfo>());
            entry = m_entries.back().get();
            entry->setServerName(name);
        }
        entry->setType(record.value(QStringLiteral("type")).toInt());
        entry->setQyid(record.value(QStringLiteral("qyid")).toInt());
        entry->setKind(record.value(QStringLiteral("kind")).toString());
        entry->setToken(record.value(QStringLiteral("token")).toString());
        m_cloudLogin.insert(name, record.value(QStringLiteral("login")).toBool());
        if (!current.contains(entry))
            current << entry;
    }
    m_current = current;
    applyLoginState();
    emit changed();
    return true;
}

void ServerRegistry::applyLoginState()
{
    const bool korvane = Users::Instance()->Kvy()->IsLogin();
    for (LtdInfo *entry : qAsConst(m_current)) {
        if (ridesOnKorvaneLogin(*entry)) {
            entry->setServerLogin(korvane);
            continue;
        }
        const QString session = m_enterpriseSessions.value(entry->getServerName());
        if (!session.isEmpty())
            entry->setToken(session);
        // Enterprise servers need their own login; other kinds (the material
        // price servers) may be open to the account, as the cloud says.
        const bool open = entry->kind() != kKindPri && m_cloudLogin.value(entry->getServerName());
        entry->setServerLogin(!session.isEmpty() || open);
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
                                       data.value(QStringLiteral("username")).toString(), session);
    applyLoginState();
    emit changed();
    emit staticPriLoginObj::GetInstance()->kvyLogin();
    return QString();
}

QString ServerRegistry::loginEnterprise(int hostIndex, const QString &user, const QString &password)
{
    if (hostIndex < 0 || hostIndex >= m_current.size())
        return QStringLiteral("服务器不存在");
    LtdInfo *entry = m_current.at(hostIndex);
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
    m_enterpriseSessions.insert(entry->getServerName(), token);
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
    if (!entry || !m_enterpriseSessions.contains(serverName))
        return;
    if (!forced)
        send(hostRequest(QStringLiteral("enterpriselogout"), entry->getToken(),
                         QJsonObject{{QStringLiteral("qyid"), entry->getQyid()}}));
    m_enterpriseSessions.remove(serverName);
    entry->setServerLogin(false);
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
