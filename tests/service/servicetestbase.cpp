#include "servicetestbase.h"

#include <service/serviceseed.h>

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {
std::unique_ptr<QTemporaryDir> s_template;
}

void ServiceTestBase::prepareTemplate(CloudService::Seed seed)
{
    s_template = std::make_unique<QTemporaryDir>();
    {
        CloudService seeded(s_template->path(), seed);
        QVERIFY2(seeded.openError().isEmpty(), qPrintable(seeded.openError()));
    }
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
