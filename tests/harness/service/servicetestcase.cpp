#include "servicetestcase.h"

#include <service/servicecore.h>

#include <QDir>
#include <QFile>
#include <QHash>

using namespace cloudjson;

namespace {
std::unique_ptr<QTemporaryDir> s_template;
std::unique_ptr<ScratchDatabase> s_templateDb;
QHash<QString, QString> s_tokens; // "user" → session, "user/qyid" → enterprise token

QJsonObject sendTo(CloudService &service, const QString &token, const QJsonObject &data, const QString &session)
{
    return service.handle(envelope(token, data), session);
}

QJsonObject loginTo(CloudService &service, const QString &user, const QString &session = QString(), int qyid = 0)
{
    QJsonObject fields{{"username", user}, {"password", ServiceSeed::DemoPassword}};
    if (qyid)
        fields.insert("qyid", qyid);
    const QJsonObject reply = sendTo(service, "kv_token", method(qyid ? "enterpriselogin" : "login", fields), session);
    if (code(reply) != 0)
        qWarning("login of %s failed: %s", qPrintable(user), qPrintable(msg(reply)));
    return object(reply);
}
}

void ServiceTestCase::initTestCase()
{
    if (!ScratchDatabase::skipReason().isEmpty())
        QSKIP(qPrintable(ScratchDatabase::skipReason()));
    s_template = std::make_unique<QTemporaryDir>();
    s_templateDb = std::make_unique<ScratchDatabase>();
    s_tokens.clear();
    CloudService seeded(s_template->path(), CloudService::Seed::Minimal, s_templateDb->url());
    QVERIFY2(seeded.openError().isEmpty(), qPrintable(seeded.openError()));
    const QList<QPair<QString, int>> memberships{{"demo", 1001}, {"demo", 1002}, {"zhangsan", 1001}, {"lisi", 1002}, {"wangwu", 0}};
    for (const auto &m : memberships) {
        if (!s_tokens.contains(m.first))
            s_tokens.insert(m.first, loginTo(seeded, m.first).value("session").toString());
        if (m.second)
            s_tokens.insert(m.first + '/' + QString::number(m.second),
                            loginTo(seeded, m.first, s_tokens.value(m.first), m.second).value("token").toString());
    }
}

void ServiceTestCase::cleanupTestCase()
{
    s_template.reset();
    s_templateDb.reset();
}

void ServiceTestCase::init()
{
    HostTestCase::init();
    m_dir = std::make_unique<QTemporaryDir>();
    const QDir from(s_template->path());
    for (const QString &name : from.entryList(QDir::Files))
        QFile::copy(from.filePath(name), QDir(m_dir->path()).filePath(name));
    m_database = std::make_unique<ScratchDatabase>(s_templateDb->name());
    reopen();
    session = sessionOf(ServiceSeed::DemoUser);
    east = tokenOf("east");
    west = tokenOf("west");
}

void ServiceTestCase::cleanup()
{
    HostTestCase::cleanup();
    service.reset();
    m_database.reset();
    m_dir.reset();
}

QString ServiceTestCase::store() const
{
    return onPostgres() ? m_database->url() : QDir(m_dir->path()).filePath(ServiceCore::databaseFileName());
}

QString ServiceTestCase::sessionOf(const QString &user)
{
    return s_tokens.value(user);
}

QString ServiceTestCase::tokenOf(const QString &tier, const QString &user)
{
    static const QHash<QString, QString> fixed{{"personal", "kv_token_user"}, {"korvane", "kv_token"},
                                               {"bigdata", "kv_token_bigdata"}, {"forged", "ent_forged"}};
    if (fixed.contains(tier))
        return fixed.value(tier);
    return s_tokens.value(user + (tier == "east" ? "/1001" : "/1002"));
}

void ServiceTestCase::reopen()
{
    service.reset();
    service = std::make_unique<CloudService>(m_dir->path(), CloudService::Seed::None, m_database->url());
}

QJsonObject ServiceTestCase::send(const QString &token, const QJsonObject &data, const QString &session)
{
    return sendTo(*service, token, data, session);
}

QJsonObject ServiceTestCase::call(const QString &token, const QString &name, const QJsonObject &fields)
{
    return send(token, method(name, fields), session);
}

QJsonObject ServiceTestCase::callAs(const QString &who, const QString &name, const QJsonObject &fields)
{
    const QString user = who.contains('@') ? who.section('@', 0, 0) : QString(ServiceSeed::DemoUser);
    return send(tokenOf(who.section('@', -1), user), method(name, fields), sessionOf(user));
}

QString ServiceTestCase::login(const QString &user)
{
    return loginTo(*service, user).value("session").toString();
}

QString ServiceTestCase::enterpriseLogin(const QString &session, const QString &user, int qyid)
{
    return loginTo(*service, user, session, qyid).value("token").toString();
}

void ServiceTestCase::replyColumns()
{
    QTest::addColumn<QString>("who");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<int>("expectedCode");
    QTest::addColumn<QString>("message");
}

void ServiceTestCase::replyRow(const char *row, const QString &who, const QString &name, const QByteArray &fields, int expectedCode,
                               const QString &message)
{
    QTest::newRow(row) << who << name << QString::fromUtf8(fields) << expectedCode << message;
}

void ServiceTestCase::checkReply()
{
    QFETCH(QString, who);
    QFETCH(QString, name);
    QFETCH(QString, fields);
    const QJsonObject reply = callAs(who, name, QJsonDocument::fromJson(fields.toUtf8()).object());
    QTEST(code(reply), "expectedCode");
    QTEST(msg(reply), "message");
}
