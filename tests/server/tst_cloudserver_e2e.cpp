#include "cloudjson.h"
#include "hosttestcase.h"
#include "scratchdatabase.h"

#include <hostapi/httpcloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <server/cloudhttpserver.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace cloudjson;

namespace {

// One blocking request as the dialogs make it.
QJsonObject send(const QString &token, const QJsonObject &data)
{
    return exchange(envelope(token, data));
}

QStringList serverNames()
{
    return texts(array(send("kv_token", method("getserverlist"))), "name");
}

QJsonObject loginAs(const QString &user, int qyid = 0)
{
    QJsonObject fields{{"username", user}, {"password", ServiceSeed::DemoPassword}};
    if (qyid)
        fields.insert("qyid", qyid);
    return send("kv_token", method(qyid ? "enterpriselogin" : "login", fields));
}

} // namespace

// The real cloud service behind the HTTP server and the HTTP channel, and the
// velora-cloud program itself.
class TestCloudServerEndToEnd : public HostTestCase
{
    Q_OBJECT
    QTemporaryDir dataDir;
    std::unique_ptr<ScratchDatabase> database;
    std::unique_ptr<CloudService> service;
    std::unique_ptr<CloudHttpServer> server;
    QByteArray programOutput;

    void loginDemo()
    {
        const QJsonObject data = object(loginAs(ServiceSeed::DemoUser));
        QVERIFY(!data.value("session").toString().isEmpty());
        Users::Instance()->Kvy()->setLogin(data.value("userid").toString(), data.value("username").toString(),
                                           data.value("session").toString());
    }

    // Starts velora-cloud on a free loopback port, on the data folder or
    // (in the PostgreSQL variant) `db`; returns its base URL.
    QString startProgram(QProcess &program, const QString &folder, const ScratchDatabase &db)
    {
        const QStringList store = db.url().isEmpty() ? QStringList{"--data", folder} : QStringList{"--database", db.url()};
        program.start(VELORA_CLOUD_BIN, store + QStringList{"--listen", "127.0.0.1:0", "--threads", "2", "--seed", "minimal"});
        static const QRegularExpression serving(QStringLiteral("serving (http://127\\.0\\.0\\.1:\\d+)/cloud"));
        programOutput.clear();
        QElapsedTimer clock;
        clock.start();
        program.waitForStarted(10000);
        while (clock.elapsed() < 60000 && program.state() == QProcess::Running) {
            program.waitForReadyRead(500);
            programOutput += program.readAllStandardOutput();
            const QRegularExpressionMatch m = serving.match(QString::fromUtf8(programOutput));
            if (m.hasMatch())
                return m.captured(1);
        }
        return QString();
    }

private slots:
    void initTestCase()
    {
        if (!ScratchDatabase::skipReason().isEmpty())
            QSKIP(qPrintable(ScratchDatabase::skipReason()));
        database = std::make_unique<ScratchDatabase>();
        service = std::make_unique<CloudService>(dataDir.path(), CloudService::Seed::Minimal, database->url());
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
        CloudService *svc = service.get();
        server = std::make_unique<CloudHttpServer>([svc](const QJsonObject &r, const QString &s) { return svc->handle(r, s); });
        QString error;
        QVERIFY2(server->start("127.0.0.1:0", &error), qPrintable(error));
    }

    void cleanupTestCase()
    {
        server.reset();
        service.reset();
        database.reset();
    }

    void init()
    {
        HostTestCase::init();
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(server->baseUrl())));
    }

    void sessionAndTokensCarryTheTiers()
    {
        QCOMPARE(serverNames(), (QStringList{"个人云", "Korvane云", "Korvane大数据"}));
        loginDemo();
        QCOMPARE(serverNames(), (QStringList{"个人云", "Korvane云", "Korvane大数据", "华东建设集团有限公司", "蜀川造价咨询有限公司",
                                             "华东建设集团有限公司材价库", "蜀川造价咨询有限公司材价库"}));
        const QString east = object(loginAs(ServiceSeed::DemoUser, ServiceSeed::EastEnterprise)).value("token").toString();
        const QString west = object(loginAs(ServiceSeed::DemoUser, ServiceSeed::WestEnterprise)).value("token").toString();
        QVERIFY(east.startsWith("ent_") && west.startsWith("ent_"));
        const QJsonObject entry = array(send("kv_token", method("getserverlist"))).at(3).toObject();
        QCOMPARE(entry.value("token").toString(), east);
        QCOMPARE(entry.value("login").toBool(), true);

        QCOMPARE(texts(array(send(east, method("getBZQDKList", {{"reqeuestype", 1}, {"qyid", 1001}}))), "mc"),
                 (QStringList{"华东集团房建清单库", "华东集团安装清单库"}));
        const QJsonObject reader = send(west, method("listeditpermissionjudgmentforenterprise", {{"qiyeID", 1002}, {"usetype", 2}}));
        QCOMPARE(code(reader), 3);
        QCOMPARE(msg(reader), QStringLiteral("您在该企业只有查看权限，没有编辑权限"));

        // Without the session header the personal cloud is closed; the
        // enterprise token alone authorises its own logout.
        Users::Instance()->Kvy()->setLogout();
        const QJsonObject anonymous = send("kv_token_user", method("getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}}));
        QCOMPARE(code(anonymous), 2);
        QCOMPARE(msg(anonymous), QStringLiteral("未登录Korvane云或登录已失效，请重新登录"));
        QCOMPARE(code(send(east, method("enterpriselogout", {{"qyid", 1001}}))), 0);
    }

    void defaultBodyLimitIsEightMegabytes()
    {
        // Under it the service answers (and refuses the name); over it the
        // server refuses the body: no reply at all.
        const auto loginNamed = [](int size) { return send("kv_token", method("login", {{"username", QString(size, 'a')}, {"password", "x"}})); };
        QCOMPARE(msg(loginNamed(1024 * 1024)), QStringLiteral("参数username超出长度限制"));
        QVERIFY(loginNamed(9 * 1024 * 1024).isEmpty());
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
        ScratchDatabase db;
        QProcess program;
        const QString base = startProgram(program, folder.filePath("cloud"), db);
        QVERIFY2(!base.isEmpty(), programOutput.constData());
        QVERIFY(QString::fromUtf8(programOutput).contains(QStringLiteral("演示账号：demo")));

        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(base)));
        QCOMPARE(code(loginAs("demo")), 0);
        QNetworkAccessManager nam;
        std::unique_ptr<QNetworkReply> health(nam.get(QNetworkRequest(QUrl(base + "/health"))));
        QTRY_VERIFY_WITH_TIMEOUT(health->isFinished(), 10000);
        QCOMPARE(parsed(health->readAll()), (QJsonObject{{"status", "ok"}}));

        ::kill(pid_t(program.processId()), signal);
        QVERIFY(program.waitForFinished(20000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 0);
        const QString out = QString::fromUtf8(programOutput + program.readAllStandardOutput());
        QVERIFY2(out.contains("stopped after 1 requests"), qPrintable(out));

        // The data folder keeps the demo accounts; a restart does not seed again.
        QProcess again;
        QVERIFY(!startProgram(again, folder.filePath("cloud"), db).isEmpty());
        QVERIFY(!QString::fromUtf8(programOutput).contains(QStringLiteral("演示账号")));
        again.terminate();
        QVERIFY(again.waitForFinished(20000));
        QCOMPARE(again.exitCode(), 0);
    }

    void twoProgramsShareOneDatabase()
    {
        if (!ScratchDatabase::wanted())
            QSKIP("velora-cloud processes share a store on PostgreSQL only");
        QTemporaryDir folder;
        ScratchDatabase db;
        QProcess a, b;
        const QString baseA = startProgram(a, folder.path(), db);
        const QString baseB = startProgram(b, folder.path(), db);
        QVERIFY2(!baseA.isEmpty() && !baseB.isEmpty(), programOutput.constData());
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(baseA)));
        loginDemo();
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(baseB)));
        QCOMPARE(serverNames().size(), 7);
        for (QProcess *program : {&a, &b}) {
            program->terminate();
            QVERIFY(program->waitForFinished(20000));
            QCOMPARE(program->exitCode(), 0);
        }
    }

    void programRefusesBadArguments_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("error");
        QTest::newRow("no data") << QStringList() << 2 << "velora-cloud: --data DIR or --database URL is required\n";
        QTest::newRow("bad listen") << QStringList{"--data", "d", "--listen", "localhost"} << 2
                                    << "velora-cloud: --listen wants ADDR:PORT, got \"localhost\"\n";
        QTest::newRow("busy address") << QStringList{"--data", "%folder", "--seed", "none", "--listen", "127.0.0.1:%busy"} << 1
                                      << "cannot listen on 127.0.0.1:%busy";
    }
    void programRefusesBadArguments()
    {
        QFETCH(QStringList, args);
        QFETCH(int, exitCode);
        QFETCH(QString, error);
        QTemporaryDir folder;
        const QString busy = QString::number(server->port());
        args.replaceInStrings("%folder", folder.path()).replaceInStrings("%busy", busy);
        error.replace("%busy", busy);
        QProcess program;
        program.start(VELORA_CLOUD_BIN, args);
        QVERIFY(program.waitForFinished(30000));
        QCOMPARE(program.exitCode(), exitCode);
        const QString err = QString::fromUtf8(program.readAllStandardError());
        QVERIFY2(err.contains(error), qPrintable(err));
        if (exitCode == 2)
            QVERIFY(err.startsWith(error) && err.contains("usage: velora-cloud"));
    }
};

QTEST_MAIN(TestCloudServerEndToEnd)
#include "tst_cloudserver_e2e.moc"
