#pragma once
#include "cloudjson.h"
#include "hosttestcase.h"
#include "servicetestbase.h"

#include <service/serviceseed.h>

#include <QHash>
#include <QtTest>

// Base of the tests that call the cloud service directly: the seeded template
// once per program, a fresh copy `svc` per test function, and demo's session
// with the tokens of the enterprises demo administers (east) and reads (west).
class ServiceTestCase : public HostTestCase
{
    Q_OBJECT
protected:
    std::unique_ptr<ServiceTestBase> svc;
    QString session;
    QString east;
    QString west;

    // A tier's token as `user` holds it: "personal", "korvane", "bigdata",
    // "forged", or the user's login to the enterprise "east" or "west".
    static QString tokenOf(const QString &tier, const QString &user = ServiceSeed::DemoUser)
    {
        static const QHash<QString, QString> fixed{{"personal", "kv_token_user"}, {"korvane", "kv_token"},
                                                   {"bigdata", "kv_token_bigdata"}, {"forged", "ent_forged"}};
        if (fixed.contains(tier))
            return fixed.value(tier);
        return ServiceTestBase::enterpriseToken(user, tier == "east" ? ServiceSeed::EastEnterprise : ServiceSeed::WestEnterprise);
    }

    QJsonObject call(const QString &token, const QString &method, QJsonObject fields = QJsonObject())
    {
        fields.insert("method", method);
        return svc->call(token, fields, session);
    }

    // A table of calls and their answers: who calls ("user@tier", or just the
    // tier for demo; see tokenOf), the method, its fields as JSON text, and the
    // code and message expected. checkReply() runs the current row.
    static void replyColumns()
    {
        QTest::addColumn<QString>("who");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<int>("expectedCode");
        QTest::addColumn<QString>("message");
    }
    static void replyRow(const char *row, const QString &who, const QString &name, const QByteArray &fields, int expectedCode,
                         const QString &message = QStringLiteral("成功"))
    {
        QTest::newRow(row) << who << name << QString::fromUtf8(fields) << expectedCode << message;
    }
    QJsonObject callAs(const QString &who, const QString &name, const QJsonObject &fields)
    {
        const QString user = who.contains('@') ? who.section('@', 0, 0) : QString(ServiceSeed::DemoUser);
        return svc->call(tokenOf(who.section('@', -1), user), cloudjson::method(name, fields), ServiceTestBase::session(user));
    }
    void checkReply()
    {
        QFETCH(QString, who);
        QFETCH(QString, name);
        QFETCH(QString, fields);
        QFETCH(int, expectedCode);
        QFETCH(QString, message);
        const QJsonObject reply = callAs(who, name, QJsonDocument::fromJson(fields.toUtf8()).object());
        QCOMPARE(cloudjson::code(reply), expectedCode);
        QCOMPARE(cloudjson::msg(reply), message);
    }

protected slots:
    void initTestCase() { ServiceTestBase::prepareTemplate(); }
    void cleanupTestCase() { ServiceTestBase::dropTemplate(); }
    void init()
    {
        HostTestCase::init();
        svc = std::make_unique<ServiceTestBase>();
        session = ServiceTestBase::session(ServiceSeed::DemoUser);
        east = tokenOf("east");
        west = tokenOf("west");
    }
    void cleanup()
    {
        HostTestCase::cleanup();
        svc.reset();
    }
};
