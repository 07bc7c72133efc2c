#include "servicetestbase.h"

#include <service/serviceseed.h>

#include <QDir>
#include <QFile>
#include <QHash>
#include <QtTest>

namespace {
std::unique_ptr<QTemporaryDir> s_template;
QHash<QString, QString> s_sessions;
QHash<QString, QString> s_enterpriseTokens;

QString key(const QString &user, int qyid)
{
    return user + QLatin1Char('/') + QString::number(qyid);
}
}

void ServiceTestBase::prepareTemplate(CloudService::Seed seed)
{
    s_template = std::make_unique<QTemporaryDir>();
    s_sessions.clear();
    s_enterpriseTokens.clear();
    ServiceTestBase base(s_template->path(), seed);
    QVERIFY2(base.service().openError().isEmpty(), qPrintable(base.service().openError()));
    const struct {
        const char *user;
        int qyid;
    } memberships[] = {{"demo", 1001}, {"demo", 1002}, {"zhangsan", 1001}, {"lisi", 1002}, {"wangwu", 0}};
    for (const auto &m : memberships) {
        const QString user = QString::fromLatin1(m.user);
        if (!s_sessions.contains(user))
            s_sessions.insert(user, base.login(user));
        if (m.qyid)
            s_enterpriseTokens.insert(key(user, m.qyid), base.enterpriseLogin(s_sessions.value(user), user, m.qyid));
    }
}

QString ServiceTestBase::session(const QString &user)
{
    return s_sessions.value(user);
}

QString ServiceTestBase::enterpriseToken(const QString &user, int qyid)
{
    return s_enterpriseTokens.value(key(user, qyid));
}

ServiceTestBase::ServiceTestBase(const QString &dir, CloudService::Seed seed)
    : m_service(std::make_unique<CloudService>(dir, seed))
{
}

void ServiceTestBase::dropTemplate()
{
    s_template.reset();
}

ServiceTestBase::ServiceTestBase()
{
    const QDir from(s_template->path());
    for (const QString &name : from.entryList(QDir::Files))
        QFile::copy(from.filePath(name), QDir(m_dir.path()).filePath(name));
    m_service = std::make_unique<CloudService>(m_dir.path(), CloudService::Seed::None);
}

ServiceTestBase::~ServiceTestBase() = default;

void ServiceTestBase::reopen()
{
    m_service.reset();
    m_service = std::make_unique<CloudService>(m_dir.path(), CloudService::Seed::None);
}

QJsonObject ServiceTestBase::request(const QString &token, const QJsonObject &data)
{
    QJsonObject r{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                  {QStringLiteral("app_type"), 1},
                  {QStringLiteral("data"), data}};
    if (!token.isNull())
        r.insert(QStringLiteral("orgin_token"), token);
    return r;
}

QJsonObject ServiceTestBase::call(const QString &token, const QJsonObject &data, const QString &session)
{
    return m_service->handle(request(token, data), session);
}

QString ServiceTestBase::login(const QString &user)
{
    const QJsonObject reply = call(QStringLiteral("kv_token"),
                                   QJsonObject{{QStringLiteral("method"), QStringLiteral("login")},
                                               {QStringLiteral("username"), user},
                                               {QStringLiteral("password"), ServiceSeed::DemoPassword}},
                                   QString());
    if (reply.value(QStringLiteral("code")).toInt() != 0)
        qWarning("login %s failed: %s", qPrintable(user), qPrintable(reply.value(QStringLiteral("msg")).toString()));
    return reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("session")).toString();
}

QString ServiceTestBase::enterpriseLogin(const QString &session, const QString &user, int qyid)
{
    const QJsonObject reply = call(QStringLiteral("kv_token"),
                                   QJsonObject{{QStringLiteral("method"), QStringLiteral("enterpriselogin")},
                                               {QStringLiteral("qyid"), qyid},
                                               {QStringLiteral("username"), user},
                                               {QStringLiteral("password"), ServiceSeed::DemoPassword}},
                                   session);
    return reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("token")).toString();
}

QStringList reply::texts(const QJsonArray &array, const QString &key)
{
    QStringList list;
    for (const QJsonValue &v : array)
        list.append(v.toObject().value(key).toVariant().toString());
    return list;
}
