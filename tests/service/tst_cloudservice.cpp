#include "servicetestcase.h"

#include <service/passwordhash.h>
#include <service/servicecore.h>
#include <service/servicedb.h>

#include <QDateTime>
#include <QDir>
#include <QtTest>

using namespace cloudjson;

// Envelopes, logins, sessions and the server list.
class TestCloudService : public ServiceTestCase
{
    Q_OBJECT
    QJsonArray serverList(const QString &session) { return array(send("kv_token", method("getserverlist"), session)); }

private slots:
    void refusals_data()
    {
        QTest::addColumn<QJsonObject>("request");
        QTest::addColumn<int>("expectedCode");
        QTest::addColumn<QString>("message");
        const auto login = [](const QJsonObject &fields) { return envelope("kv_token", method("login", fields)); };
        QTest::newRow("empty") << QJsonObject() << 1 << "请求内容为空";
        QTest::newRow("wrong cmd") << QJsonObject{{"cmd", "other"}, {"data", method("login")}} << 1 << "不支持的请求命令";
        QTest::newRow("data not object") << QJsonObject{{"cmd", "cloudSoft"}, {"data", "login"}} << 1 << "请求缺少data对象";
        QTest::newRow("no method") << QJsonObject{{"cmd", "cloudSoft"}, {"data", QJsonObject{}}} << 1 << "请求缺少method";
        QTest::newRow("method not text") << envelope(QString(), {{"method", 5}}) << 1 << "请求缺少method";
        QTest::newRow("unknown method") << envelope("kv_token_user", method("dropall")) << 6 << "不支持的方法：dropall";
        QTest::newRow("token not text") << QJsonObject{{"cmd", "cloudSoft"}, {"orgin_token", 7}, {"data", method("getBZQDKList")}}
                                        << 1 << "参数orgin_token格式错误";
        QTest::newRow("wrong password") << login({{"username", "demo"}, {"password", "nope"}}) << 2 << "用户名或密码错误";
        QTest::newRow("unknown user") << login({{"username", "nobody"}, {"password", "Velora@2024"}}) << 2 << "用户名或密码错误";
        QTest::newRow("no password") << login({{"username", "demo"}}) << 1 << "缺少参数password";
        QTest::newRow("name mistyped") << login({{"username", QJsonArray{1}}, {"password", "x"}}) << 1 << "参数username格式错误";
        QTest::newRow("name oversize") << login({{"username", QString(65, 'a')}, {"password", "x"}}) << 1
                                       << "参数username超出长度限制";
    }
    void refusals()
    {
        QFETCH(QJsonObject, request);
        const QJsonObject reply = service->handle(request, QString());
        QTEST(code(reply), "expectedCode");
        QTEST(msg(reply), "message");
        QVERIFY(reply.contains("data"));
    }

    void loginAndServerList()
    {
        QCOMPARE(serverList(QString()).size(), 3);
        QCOMPARE(serverList(QString()).at(0).toObject().value("login").toBool(), false);
        const QString session = login(ServiceSeed::DemoUser);
        QVERIFY(!session.isEmpty());
        const QJsonArray list = serverList(session);
        QCOMPARE(texts(list, "name"), (QStringList{"个人云", "Korvane云", "Korvane大数据", "华东建设集团有限公司",
                                                   "蜀川造价咨询有限公司", "华东建设集团有限公司材价库", "蜀川造价咨询有限公司材价库"}));
        QCOMPARE(texts(list, "kind"), (QStringList{"kv", "kv", "kv", "pri", "pri", "cj", "cj"}));
        QCOMPARE(list.at(0).toObject().value("token").toString(), QStringLiteral("kv_token_user"));
        QCOMPARE(list.at(3).toObject().value("qyid").toInt(), ServiceSeed::EastEnterprise);
        QCOMPARE(list.at(3).toObject().value("login").toBool(), false);

        const QString entToken = enterpriseLogin(session, ServiceSeed::DemoUser, ServiceSeed::EastEnterprise);
        QVERIFY(entToken.startsWith("ent_"));
        const QJsonArray after = serverList(session);
        QCOMPARE(after.at(3).toObject().value("token").toString(), entToken);
        QCOMPARE(after.at(3).toObject().value("login").toBool(), true);

        // The material price servers are open with the Korvane login, and their
        // tokens are stable and work with that login.
        const QJsonObject cj = after.at(5).toObject();
        const QString cjToken = cj.value("token").toString();
        QCOMPARE(cj.value("login").toBool(), true);
        QCOMPARE(cj.value("qyid").toInt(), ServiceSeed::EastEnterprise);
        QCOMPARE(cjToken, list.at(5).toObject().value("token").toString());
        const QJsonObject prices = method("getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 1001}});
        QCOMPARE(array(send(cjToken, prices, session)).size(), 2);
        // Logging out of the enterprise server leaves the price server open.
        send(entToken, method("enterpriselogout", {{"qyid", 1001}}), session);
        QCOMPARE(code(send(cjToken, prices, session)), 0);
    }

    void logoutsEndTheirLogins()
    {
        const QString session = login(ServiceSeed::DemoUser);
        const QString ent = enterpriseLogin(session, ServiceSeed::DemoUser, ServiceSeed::EastEnterprise);
        QCOMPARE(serverList(session).at(3).toObject().value("login").toBool(), true);
        QCOMPARE(code(send(ent, method("enterpriselogout", {{"qyid", 1001}}), session)), 0);
        const QJsonObject entry = serverList(session).at(3).toObject();
        QCOMPARE(entry.value("login").toBool(), false);
        QCOMPARE(entry.value("token").toString(), QStringLiteral("ent_1001"));
        QVERIFY(ent != QStringLiteral("ent_1001"));
        // Logging out of the cloud ends the session and its enterprise logins;
        // the enterprise token alone still authorises its own logout.
        const QString again = enterpriseLogin(session, ServiceSeed::DemoUser, ServiceSeed::EastEnterprise);
        QCOMPARE(code(send("kv_token", method("logout"), session)), 0);
        QCOMPARE(serverList(session).size(), 3);
        QCOMPARE(code(send(again, method("enterpriselogout", {{"qyid", 1001}}), QString())), 0);
        QCOMPARE(serverList(login(ServiceSeed::DemoUser)).at(3).toObject().value("login").toBool(), false);
    }

    void sessionsSurviveReopenAndExpire()
    {
        const QString session = login(ServiceSeed::DemoUser);
        reopen();
        QCOMPARE(serverList(session).size(), 7);
        close();
        {
            ServiceDb db(store());
            db.open();
            db.exec("UPDATE sessions SET created = ? WHERE token = ?",
                    {QDateTime::currentDateTimeUtc().addDays(-31).toString(Qt::ISODate), PasswordHash::tokenDigest(session)});
        }
        reopen();
        QCOMPARE(code(send("kv_token_user", method("getBZQDKList"), session)), 2);
        QCOMPARE(serverList(session).size(), 3);
    }

    void unopenableFolderAnswersWithError()
    {
        QTemporaryDir dir;
        QFile blocker(dir.filePath("file"));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        CloudService broken(dir.filePath("file/sub"), CloudService::Seed::None);
        QVERIFY(!broken.openError().isEmpty());
        const QJsonObject reply = broken.handle(envelope("kv_token", method("getserverlist")), QString());
        QCOMPARE(code(reply), 500);
        QVERIFY(msg(reply).startsWith(QStringLiteral("云服务数据无法打开")));
    }
};

QTEST_MAIN(TestCloudService)
#include "tst_cloudservice.moc"
