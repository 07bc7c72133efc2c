#include "hostfixture.h"
#include "servicetestbase.h"

#include <service/servicecore.h>
#include <service/servicedb.h>
#include <service/serviceseed.h>

#include <QDateTime>
#include <QDir>

#include <QJsonDocument>
#include <QtTest>

class TestCloudService : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<ServiceTestBase> svc;

    static QJsonObject method(const QString &name, QJsonObject fields = QJsonObject())
    {
        fields.insert(QStringLiteral("method"), name);
        return fields;
    }
    static int code(const QJsonObject &reply) { return reply.value(QStringLiteral("code")).toInt(-1); }
    static QString msg(const QJsonObject &reply) { return reply.value(QStringLiteral("msg")).toString(); }

private slots:
    void initTestCase() { ServiceTestBase::prepareTemplate(); }
    void cleanupTestCase() { ServiceTestBase::dropTemplate(); }
    void init()
    {
        fx = std::make_unique<HostFixture>();
        svc = std::make_unique<ServiceTestBase>();
    }
    void cleanup()
    {
        svc.reset();
        fx.reset();
    }

    void malformedEnvelopes_data()
    {
        QTest::addColumn<QJsonObject>("request");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << QJsonObject() << QStringLiteral("请求内容为空");
        QTest::newRow("wrong cmd") << QJsonObject{{"cmd", "other"}, {"data", QJsonObject{{"method", "login"}}}}
                                   << QStringLiteral("不支持的请求命令");
        QTest::newRow("data not object") << QJsonObject{{"cmd", "cloudSoft"}, {"data", "login"}}
                                         << QStringLiteral("请求缺少data对象");
        QTest::newRow("no method") << QJsonObject{{"cmd", "cloudSoft"}, {"data", QJsonObject{}}}
                                   << QStringLiteral("请求缺少method");
        QTest::newRow("method not text") << QJsonObject{{"cmd", "cloudSoft"}, {"data", QJsonObject{{"method", 5}}}}
                                         << QStringLiteral("请求缺少method");
        QTest::newRow("unknown method")
            << QJsonObject{{"cmd", "cloudSoft"}, {"orgin_token", "kv_token_user"}, {"data", QJsonObject{{"method", "dropall"}}}}
            << QStringLiteral("不支持的方法：dropall");
        QTest::newRow("token not text")
            << QJsonObject{{"cmd", "cloudSoft"}, {"orgin_token", 7}, {"data", QJsonObject{{"method", "getBZQDKList"}}}}
            << QStringLiteral("参数orgin_token格式错误");
    }

    void malformedEnvelopes()
    {
        QFETCH(QJsonObject, request);
        QFETCH(QString, message);
        const QJsonObject reply = svc->service().handle(request, QString());
        QVERIFY(code(reply) != 0);
        QCOMPARE(msg(reply), message);
        QVERIFY(reply.contains(QStringLiteral("data")));
    }

    void loginAndServerList()
    {
        const QString session = svc->login(ServiceSeed::DemoUser);
        QVERIFY(!session.isEmpty());
        const QJsonObject reply = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), session);
        QCOMPARE(code(reply), 0);
        const QJsonArray list = reply.value(QStringLiteral("data")).toArray();
        QStringList names, kinds;
        for (const QJsonValue &v : list) {
            names << v.toObject().value(QStringLiteral("name")).toString();
            kinds << v.toObject().value(QStringLiteral("kind")).toString();
        }
        QCOMPARE(names, (QStringList{"个人云", "Korvane云", "Korvane大数据", "华东建设集团有限公司", "蜀川造价咨询有限公司",
                                     "华东建设集团有限公司材价库", "蜀川造价咨询有限公司材价库"}));
        QCOMPARE(kinds, (QStringList{"kv", "kv", "kv", "pri", "pri", "cj", "cj"}));
        QCOMPARE(list.at(0).toObject().value(QStringLiteral("token")).toString(), QStringLiteral("kv_token_user"));
        QCOMPARE(list.at(3).toObject().value(QStringLiteral("qyid")).toInt(), ServiceSeed::EastEnterprise);
        QCOMPARE(list.at(3).toObject().value(QStringLiteral("login")).toBool(), false);

        const QString entToken = svc->enterpriseLogin(session, ServiceSeed::DemoUser, ServiceSeed::EastEnterprise);
        QVERIFY(entToken.startsWith(QStringLiteral("ent_")));
        const QJsonArray after =
            svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), session)
                .value(QStringLiteral("data")).toArray();
        QCOMPARE(after.at(3).toObject().value(QStringLiteral("token")).toString(), entToken);
        QCOMPARE(after.at(3).toObject().value(QStringLiteral("login")).toBool(), true);

        // The material price servers are open with the Korvane login, and their
        // tokens are stable and work on their own.
        const QJsonObject cj = after.at(5).toObject();
        QCOMPARE(cj.value(QStringLiteral("login")).toBool(), true);
        QCOMPARE(cj.value(QStringLiteral("qyid")).toInt(), ServiceSeed::EastEnterprise);
        QCOMPARE(cj.value(QStringLiteral("token")).toString(), list.at(5).toObject().value(QStringLiteral("token")).toString());
        const QJsonObject prices = svc->call(cj.value(QStringLiteral("token")).toString(),
                                             method(QStringLiteral("getenterprisepricelist"), {{"klb", "cj"}, {"qiyeID", 1001}}),
                                             QString());
        QCOMPARE(prices.value(QStringLiteral("data")).toArray().size(), 2);
        // Logging out of the enterprise server leaves the price server open.
        svc->call(entToken, method(QStringLiteral("enterpriselogout"), {{"qyid", 1001}}), session);
        QCOMPARE(code(svc->call(cj.value(QStringLiteral("token")).toString(),
                                method(QStringLiteral("getenterprisepricelist"), {{"qiyeID", 1001}}), QString())),
                 0);
    }

    void serverListWithoutLogin()
    {
        const QJsonArray list = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), QString())
                                    .value(QStringLiteral("data")).toArray();
        QCOMPARE(list.size(), 3);
        QCOMPARE(list.at(0).toObject().value(QStringLiteral("login")).toBool(), false);
    }

    void loginFailures_data()
    {
        QTest::addColumn<QJsonObject>("fields");
        QTest::addColumn<QString>("message");
        QTest::newRow("wrong password") << QJsonObject{{"username", "demo"}, {"password", "nope"}}
                                        << QStringLiteral("用户名或密码错误");
        QTest::newRow("unknown user") << QJsonObject{{"username", "nobody"}, {"password", "Velora@2024"}}
                                      << QStringLiteral("用户名或密码错误");
        QTest::newRow("no password") << QJsonObject{{"username", "demo"}} << QStringLiteral("缺少参数password");
        QTest::newRow("name mistyped") << QJsonObject{{"username", QJsonArray{1}}, {"password", "x"}}
                                       << QStringLiteral("参数username格式错误");
        QTest::newRow("name oversize") << QJsonObject{{"username", QString(65, QLatin1Char('a'))}, {"password", "x"}}
                                       << QStringLiteral("参数username超出长度限制");
    }

    void loginFailures()
    {
        QFETCH(QJsonObject, fields);
        QFETCH(QString, message);
        const QJsonObject reply = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("login"), fields), QString());
        QCOMPARE(code(reply), fields.contains("password") && fields.value("username").isString() && message.startsWith("用户") ? 2 : 1);
        QCOMPARE(msg(reply), message);
    }

    void enterpriseLoginNeedsMembership()
    {
        const QString session = svc->login(QStringLiteral("wangwu"));
        const QJsonObject reply = svc->call(QStringLiteral("kv_token"),
                                            method(QStringLiteral("enterpriselogin"),
                                                   {{"qyid", ServiceSeed::EastEnterprise},
                                                    {"username", "wangwu"},
                                                    {"password", ServiceSeed::DemoPassword}}),
                                            session);
        QCOMPARE(code(reply), 3);
        QCOMPARE(msg(reply), QStringLiteral("该账号不是此企业的成员"));
        const QJsonObject missing = svc->call(QStringLiteral("kv_token"),
                                              method(QStringLiteral("enterpriselogin"),
                                                     {{"qyid", 4242}, {"username", "demo"}, {"password", "x"}}),
                                              session);
        QCOMPARE(msg(missing), QStringLiteral("企业服务器不存在"));
    }

    void logoutEndsSessionAndItsEnterpriseLogins()
    {
        const QString session = svc->login(ServiceSeed::DemoUser);
        const QString ent = svc->enterpriseLogin(session, ServiceSeed::DemoUser, ServiceSeed::EastEnterprise);
        QCOMPARE(code(svc->call(QStringLiteral("kv_token"), method(QStringLiteral("logout")), session)), 0);
        const QJsonObject list = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), session);
        QCOMPARE(list.value(QStringLiteral("data")).toArray().size(), 3);
        QCOMPARE(code(svc->call(ent, method(QStringLiteral("enterpriselogout"), {{"qyid", 1001}}), QString())), 0);
        const QString again = svc->login(ServiceSeed::DemoUser);
        const QJsonArray entries = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), again)
                                       .value(QStringLiteral("data")).toArray();
        QCOMPARE(entries.at(3).toObject().value(QStringLiteral("login")).toBool(), false);
    }

    void enterpriseLogoutEndsEnterpriseToken()
    {
        const QString session = svc->login(ServiceSeed::DemoUser);
        const QString ent = svc->enterpriseLogin(session, ServiceSeed::DemoUser, ServiceSeed::EastEnterprise);
        QCOMPARE(code(svc->call(ent, method(QStringLiteral("enterpriselogout"), {{"qyid", 1001}}), session)), 0);
        const QJsonArray entries = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), session)
                                       .value(QStringLiteral("data")).toArray();
        QCOMPARE(entries.at(3).toObject().value(QStringLiteral("login")).toBool(), false);
        QCOMPARE(entries.at(3).toObject().value(QStringLiteral("token")).toString(), QStringLiteral("ent_1001"));
        QVERIFY(ent != QStringLiteral("ent_1001"));
    }

    void sessionsSurviveReopen()
    {
        const QString session = svc->login(ServiceSeed::DemoUser);
        svc->reopen();
        const QJsonArray list = svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), session)
                                    .value(QStringLiteral("data")).toArray();
        QCOMPARE(list.size(), 7);
    }

    void oldSessionsExpire()
    {
        const QString session = svc->login(ServiceSeed::DemoUser);
        svc->close();
        {
            ServiceDb db(QDir(svc->dataDir()).filePath(ServiceCore::databaseFileName()));
            db.open();
            db.exec(QStringLiteral("UPDATE sessions SET created = ? WHERE token = ?"),
                    {QDateTime::currentDateTimeUtc().addDays(-31).toString(Qt::ISODate), session});
        }
        svc->reopen();
        const QJsonObject r = svc->call(QStringLiteral("kv_token_user"), method(QStringLiteral("getBZQDKList")), session);
        QCOMPARE(code(r), 2);
        QCOMPARE(svc->call(QStringLiteral("kv_token"), method(QStringLiteral("getserverlist")), session)
                     .value(QStringLiteral("data")).toArray().size(), 3);
    }

    void unopenableFolderAnswersWithError()
    {
        QTemporaryDir dir;
        QFile blocker(dir.filePath(QStringLiteral("file")));
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        CloudService broken(dir.filePath(QStringLiteral("file/sub")), CloudService::Seed::None);
        QVERIFY(!broken.openError().isEmpty());
        const QJsonObject reply = broken.handle(ServiceTestBase::request(QStringLiteral("kv_token"), method("getserverlist")),
                                                QString());
        QCOMPARE(code(reply), 500);
        QVERIFY(msg(reply).startsWith(QStringLiteral("云服务数据无法打开")));
    }
};

QTEST_MAIN(TestCloudService)
#include "tst_cloudservice.moc"
