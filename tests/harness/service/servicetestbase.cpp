#include "servicetestbase.h"
#include "cloudjson.h"

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

void ServiceTestBase::dropTemplate()
{
    s_template.reset();
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

QJsonObject ServiceTestBase::call(const QString &token, const QJsonObject &data, const QString &session)
{
    return m_service->handle(cloudjson::envelope(token, data), session);
}

QString ServiceTestBase::login(const QString &user)
{
    const QJsonObject reply = call(QStringLiteral("kv_token"),
                                   {{"method", "login"}, {"username", user}, {"password", ServiceSeed::DemoPassword}},
                                   QString());
    if (cloudjson::code(reply) != 0)
        qWarning("login %s failed: %s", qPrintable(user), qPrintable(cloudjson::msg(reply)));
    return cloudjson::object(reply).value("session").toString();
}

QString ServiceTestBase::enterpriseLogin(const QString &session, const QString &user, int qyid)
{
    const QJsonObject reply = call(QStringLiteral("kv_token"),
                                   {{"method", "enterpriselogin"}, {"qyid", qyid}, {"username", user},
                                    {"password", ServiceSeed::DemoPassword}},
                                   session);
    return cloudjson::object(reply).value("token").toString();
}
