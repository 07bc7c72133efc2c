#include "hostfixture.h"

#include <hostapi/httpcloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <server/cloudhttpserver.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtConcurrent>
#include <QtTest>

#include <csignal>
#include <memory>

namespace {

QJsonObject envelope(const QString &token, const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), 1},
                       {QStringLiteral("orgin_token"), token},
                       {QStringLiteral("data"), data}};
}

// One blocking request as the dialogs make it.
QJsonObject send(const QString &token, const QJsonObject &data)
{
    QJsonObject request = envelope(token, data);
    return QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(request)).object();
}

QStringList names(const QJsonObject &reply)
{
    QStringList out;
    for (const QJsonValue &v : reply.value(QStringLiteral("data")).toArray())
        out << v.toObject().value(QStringLiteral("name")).toString();
    return out;
}

int code(const QJsonObject &reply)
{
    return reply.value(QStringLiteral("code")).toInt(-1);
}

} // namespace

class TestCloudServerEndToEnd : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    QTemporaryDir dataDir;
    std::unique_ptr<CloudService> service;
    std::unique_ptr<CloudHttpServer> server;

    void loginDemo()
    {
        const QJsonObject reply = send(QStringLiteral("kv_token"),
                                       {{"method", "login"}, {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}});
        QCOMPARE(code(reply), 0);
        const QJsonObject data = reply.value(QStringLiteral("data")).toObject();
        QVERIFY(!data.value(QStringLiteral("session")).toString().isEmpty());
        Users::Instance()->Kvy()->setLogin(data.value(QStringLiteral("userid")).toString(),
                                           data.value(QStringLiteral("username")).toString(),
                                           data.value(QStringLiteral("session")).toString());
    }

    // Starts velora-cloud on a free loopback port; returns its base URL.
    QString startProgram(QProcess &program, const QString &folder, const QString &seed)
    {
        program.setProgram(QStringLiteral(VELORA_CLOUD_BIN));
        program.setArguments({QStringLiteral("--data"), folder, QStringLiteral("--listen"), QStringLiteral("127.0.0.1:0"),
                              QStringLiteral("--threads"), QStringLiteral("2"), QStringLiteral("--seed"), seed});
        program.start();
        if (!program.waitForStarted(10000))
            return QString();
        static const QRegularExpression serving(QStringLiteral("serving (http://127\\.0\\.0\\.1:\\d+)/cloud"));
        QByteArray out;
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 60000 && program.state() == QProcess::Running) {
            program.waitForReadyRead(500);
            out += program.readAllStandardOutput();
            const QRegularExpressionMatch m = serving.match(QString::fromUtf8(out));
            if (m.hasMatch()) {
                programOutput = out;
                return m.captured(1);
            }
        }
        programOutput = out;
        return QString();
    }
    QByteArray programOutput;

private slots:
    void initTestCase()
    {
        service = std::make_unique<CloudService>(dataDir.path(), CloudService::Seed::Minimal);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
        CloudService *svc = service.get();
        server = std::make_unique<CloudHttpServer>(
            [svc](const QJsonObject &request, const QString &session) { return svc->handle(request, session); });
        QString error;
        QVERIFY2(server->start(QStringLiteral("127.0.0.1:0"), &error), qPrintable(error));
    }

    void cleanupTestCase()
    {
        server.reset();
        service.reset();
    }

    void init()
    {
        fx = std::make_unique<HostFixture>();
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(server->baseUrl())));
    }

    void cleanup()
    {
        ServicesUtil::setChannel(nullptr);
        fx.reset();
    }

    void serverListBeforeAndAfterLogin()
    {
        const QJsonObject anonymous = send(QStringLiteral("kv_token"), {{"method", "getserverlist"}});
        QCOMPARE(names(anonymous), (QStringList{"个人云", "Korvane云", "Korvane大数据"}));
        loginDemo();
        const QJsonObject mine = send(QStringLiteral("kv_token"), {{"method", "getserverlist"}});
        QCOMPARE(names(mine), (QStringList{"个人云", "Korvane云", "Korvane大数据", "华东建设集团有限公司", "蜀川造价咨询有限公司",
                                           "华东建设集团有限公司材价库", "蜀川造价咨询有限公司材价库"}));
        QCOMPARE(mine.value("data").toArray().at(3).toObject().value("login").toBool(), false);
    }

    void enterpriseLoginGivesTheEntryItsToken()
    {
        loginDemo();
        const QJsonObject reply = send(QStringLiteral("kv_token"),
                                       {{"method", "enterpriselogin"}, {"qyid", ServiceSeed::EastEnterprise},
                                        {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}});
        QCOMPARE(code(reply), 0);
        const QString token = reply.value("data").toObject().value("token").toString();
        QVERIFY(token.startsWith(QStringLiteral("ent_")));
        const QJsonArray list = send(QStringLiteral("kv_token"), {{"method", "getserverlist"}}).value("data").toArray();
        QCOMPARE(list.at(3).toObject().value("token").toString(), token);
        QCOMPARE(list.at(3).toObject().value("login").toBool(), true);
        // The enterprise token alone authorises its own logout.
        Users::Instance()->Kvy()->setLogout();
        QCOMPARE(code(send(token, {{"method", "enterpriselogout"}, {"qyid", ServiceSeed::EastEnterprise}})), 0);
    }

    QString enterpriseToken(int qyid)
    {
        const QJsonObject reply = send(QStringLiteral("kv_token"),
                                       {{"method", "enterpriselogin"}, {"qyid", qyid},
                                        {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}});
        return reply.value("data").toObject().value("token").toString();
    }

    static QStringList texts(const QJsonObject &reply, const QString &key)
    {
        QStringList out;
        for (const QJsonValue &v : reply.value(QStringLiteral("data")).toArray())
            out << v.toObject().value(key).toString();
        return out;
    }

    void tieredCallsKeepTheirTiers()
    {
        loginDemo();
        const QString east = enterpriseToken(ServiceSeed::EastEnterprise);
        const QString west = enterpriseToken(ServiceSeed::WestEnterprise);
        QVERIFY(east.startsWith(QStringLiteral("ent_")) && west.startsWith(QStringLiteral("ent_")));

        const QJsonObject mine = send(QStringLiteral("kv_token_user"), {{"method", "getBZQDKList"}, {"reqeuestype", 0}, {"qyid", 0}});
        QCOMPARE(texts(mine, "mc"), (QStringList{"我的清单库", "我的安装清单库"}));
        QCOMPARE(texts(send(east, {{"method", "getBZQDKList"}, {"reqeuestype", 1}, {"qyid", ServiceSeed::EastEnterprise}}), "mc"),
                 (QStringList{"华东集团房建清单库", "华东集团安装清单库"}));

        const QString library = mine.value("data").toArray().at(0).toObject().value("id").toString();
        const QJsonObject tree = send(QStringLiteral("kv_token_user"),
                                      {{"method", "getchaptertreeforperson"}, {"bzqdkid", library}, {"zjid", ""}});
        QCOMPARE(texts(tree, "zjmc"), (QStringList{"建筑工程", "装饰工程"}));
        QCOMPARE(texts(tree, "state"), (QStringList{"closed", "closed"}));

        const QJsonObject reader = send(west, {{"method", "listeditpermissionjudgmentforenterprise"},
                                               {"qiyeID", ServiceSeed::WestEnterprise}, {"usetype", 2}});
        QCOMPARE(code(reader), 3);
        QCOMPARE(reader.value("msg").toString(), QStringLiteral("您在该企业只有查看权限，没有编辑权限"));
        QCOMPARE(code(send(east, {{"method", "listeditpermissionjudgmentforenterprise"},
                                  {"qiyeID", ServiceSeed::EastEnterprise}, {"usetype", 2}})), 0);

        // Without the session header the personal cloud is closed.
        Users::Instance()->Kvy()->setLogout();
        const QJsonObject anonymous = send(QStringLiteral("kv_token_user"), {{"method", "getBZQDKList"}, {"reqeuestype", 0}, {"qyid", 0}});
        QCOMPARE(code(anonymous), 2);
        QCOMPARE(anonymous.value("msg").toString(), QStringLiteral("未登录Korvane云或登录已失效，请重新登录"));
    }

    void serviceFailuresArriveAsReadableReplies_data()
    {
        QTest::addColumn<QJsonObject>("data");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("msg");
        QTest::newRow("wrong password") << QJsonObject{{"method", "login"}, {"username", "demo"}, {"password", "x"}}
                                        << 2 << QStringLiteral("用户名或密码错误");
        QTest::newRow("unknown method") << QJsonObject{{"method", "dropall"}} << 6 << QStringLiteral("不支持的方法：dropall");
        QTest::newRow("logout without login") << QJsonObject{{"method", "logout"}} << 2 << QStringLiteral("当前没有登录");
    }

    void serviceFailuresArriveAsReadableReplies()
    {
        QFETCH(QJsonObject, data);
        QFETCH(int, code);
        QFETCH(QString, msg);
        const QJsonObject reply = send(QStringLiteral("kv_token"), data);
        QCOMPARE(reply.value("code").toInt(), code);
        QCOMPARE(reply.value("msg").toString(), msg);
    }

    void malformedJsonIsABadRequest()
    {
        QNetworkAccessManager nam;
        QNetworkRequest req(HttpCloudChannel::endpointFor(QUrl(server->baseUrl())));
        req.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
        std::unique_ptr<QNetworkReply> reply(nam.post(req, QByteArrayLiteral("{\"cmd\":\"cloudSoft\",")));
        QTRY_VERIFY_WITH_TIMEOUT(reply->isFinished(), 10000);
        QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(), 200);
        const QJsonObject answer = QJsonDocument::fromJson(reply->readAll()).object();
        QCOMPARE(answer, (QJsonObject{{"code", 1}, {"msg", QStringLiteral("请求内容不是有效的JSON对象")}}));
    }

    void oversizeRequestIsNoReply()
    {
        // Over the default 8 MiB limit: refused by the server, no reply here.
        const QJsonObject reply = send(QStringLiteral("kv_token"),
                                       {{"method", "login"}, {"username", QString(9 * 1024 * 1024, QLatin1Char('a'))}, {"password", "x"}});
        QVERIFY(reply.isEmpty());
        // Just under it the service answers (and refuses the name).
        const QJsonObject under = send(QStringLiteral("kv_token"),
                                       {{"method", "login"}, {"username", QString(1024 * 1024, QLatin1Char('a'))}, {"password", "x"}});
        QCOMPARE(under.value("msg").toString(), QStringLiteral("参数username超出长度限制"));
    }

    void workerThreadsShareTheLogin()
    {
        loginDemo();
        QList<QFuture<QStringList>> workers;
        for (int i = 0; i < 6; ++i)
            workers << QtConcurrent::run([] { return names(send(QStringLiteral("kv_token"), {{"method", "getserverlist"}})); });
        for (QFuture<QStringList> &w : workers) {
            QTRY_VERIFY_WITH_TIMEOUT(w.isFinished(), 20000);
            QCOMPARE(w.result().size(), 7);
        }
    }

    void programServesAndStopsCleanly_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << int(SIGTERM);
        QTest::newRow("SIGINT") << int(SIGINT);
    }

    void programServesAndStopsCleanly()
    {
        QFETCH(int, signal);
        QTemporaryDir folder;
        QProcess program;
        const QString base = startProgram(program, folder.filePath(QStringLiteral("cloud")), QStringLiteral("minimal"));
        QVERIFY2(!base.isEmpty(), programOutput.constData());
        QVERIFY(QString::fromUtf8(programOutput).contains(QStringLiteral("演示账号：demo")));

        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(base)));
        QCOMPARE(code(send(QStringLiteral("kv_token"),
                           {{"method", "login"}, {"username", "demo"}, {"password", ServiceSeed::DemoPassword}})), 0);
        QNetworkAccessManager nam;
        std::unique_ptr<QNetworkReply> health(nam.get(QNetworkRequest(QUrl(base + QStringLiteral("/health")))));
        QTRY_VERIFY_WITH_TIMEOUT(health->isFinished(), 10000);
        QCOMPARE(QJsonDocument::fromJson(health->readAll()).object(), (QJsonObject{{"status", "ok"}}));

        ::kill(pid_t(program.processId()), signal);
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        const QString out = QString::fromUtf8(programOutput + program.readAllStandardOutput());
        QVERIFY2(out.contains(QStringLiteral("stopped after 1 requests")), qPrintable(out));

        // The data folder keeps the demo accounts; a restart does not seed again.
        QProcess again;
        QVERIFY(!startProgram(again, folder.filePath(QStringLiteral("cloud")), QStringLiteral("minimal")).isEmpty());
        QVERIFY(!QString::fromUtf8(programOutput).contains(QStringLiteral("演示账号")));
        again.terminate();
        QVERIFY(again.waitForFinished(20000));
        QCOMPARE(again.exitCode(), 0);
    }

    void programRefusesBadArguments_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("error");
        QTest::newRow("no data") << QStringList() << "velora-cloud: --data DIR is required";
        QTest::newRow("bad listen") << QStringList{"--data", "d", "--listen", "localhost"}
                                    << "velora-cloud: --listen wants ADDR:PORT, got \"localhost\"";
    }

    void programRefusesBadArguments()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, error);
        QProcess program;
        program.start(QStringLiteral(VELORA_CLOUD_BIN), args);
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitCode(), 2);
        const QString err = QString::fromUtf8(program.readAllStandardError());
        QVERIFY2(err.startsWith(error + QLatin1Char('\n')), qPrintable(err));
        QVERIFY(err.contains(QStringLiteral("usage: velora-cloud")));
    }

    void programReportsBusyAddress()
    {
        QTemporaryDir folder;
        QProcess program;
        program.start(QStringLiteral(VELORA_CLOUD_BIN),
                      {QStringLiteral("--data"), folder.path(), QStringLiteral("--seed"), QStringLiteral("none"),
                       QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(server->port())});
        QVERIFY(program.waitForFinished(30000));
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(QString::fromUtf8(program.readAllStandardError()).contains(QStringLiteral("cannot listen on 127.0.0.1:")));
    }
};

QTEST_MAIN(TestCloudServerEndToEnd)
#include "tst_cloudserver_e2e.moc"
