#include "cloudjson.h"
#include "hosttestcase.h"

#include <hostapi/hostconfig.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>

#include <QSignalSpy>
#include <QtConcurrent>
#include <QtTest>

using namespace cloudjson;

class TestServicesUtil : public HostTestCase
{
    Q_OBJECT
    static QJsonObject request() { return envelope("kv_token_user", method("getBZQDKList")); }

    static QByteArray send()
    {
        QJsonObject req = request();
        return ServicesUtil::AsyncReplyLoop(req);
    }

private slots:
    void passesRequestAndSessionUnchanged()
    {
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(QJsonArray{QJsonObject{{"mc", "库"}}});
        const QByteArray bytes = send();
        QCOMPARE(fx->channel().requests(), QList<QJsonObject>{request()});
        QCOMPARE(fx->channel().sessions(), QStringList{"sess-1"});
        QCOMPARE(array(parsed(bytes)).size(), 1);
    }

    void noReplyCases_data()
    {
        QTest::addColumn<bool>("channel");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << true << QByteArray();
        QTest::newRow("not json") << true << QByteArray("<html>502 Bad Gateway</html>");
        QTest::newRow("json array") << true << QByteArray("[1,2]");
        QTest::newRow("no channel") << false << QByteArray();
    }
    void noReplyCases()
    {
        QFETCH(bool, channel);
        QFETCH(QByteArray, bytes);
        fx->channel().replyBytes(bytes);
        if (!channel)
            ServicesUtil::setChannel(nullptr);
        // The contract: what is not a JSON object counts as no reply.
        QVERIFY(parsed(send()).isEmpty());
    }

    // Configuration lives in the application folder; a query for it is
    // answered there, without the cloud.
    void configurationIsLocal()
    {
        QVERIFY(HostConfig::sysSetPath().startsWith(fx->appDir()));
        QVERIFY(HostConfig::sysSetPath().endsWith("Config/SysSet_.ini"));
        QCOMPARE(HostConfig::value("SaveBzQd"), QString());
        HostConfig::setValue("SaveBzQd", "true");
        QCOMPARE(exchange({{"cmd", "getConfigValue"}, {"data", "SaveBzQd"}}).value("data").toString(), QStringLiteral("true"));
        QVERIFY(fx->channel().requests().isEmpty());
        HostConfig::openSysSet()->setValue("CloudApp/CurrServer_all", "个人云");
        QFile ini(HostConfig::sysSetPath());
        QVERIFY(ini.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(ini.readAll()).contains("[CloudApp]"));
    }

    void blockingCallKeepsEventLoopRunning()
    {
        bool timerFired = false;
        QTimer::singleShot(0, [&] { timerFired = true; });
        fx->channel().replyOk();
        send();
        QVERIFY(timerFired);
    }

    void callFromWorkerThread()
    {
        fx->channel().replyOk("from worker");
        QFuture<QByteArray> f = QtConcurrent::run(send);
        f.waitForFinished();
        QCOMPARE(parsed(f.result()).value("data").toString(), QStringLiteral("from worker"));
    }

    void asynchronousServiceObject()
    {
        ServicesUtil::publish();
        auto *service = reinterpret_cast<QObject *>(qApp->property("ServicesUtil").toLongLong());
        QCOMPARE(service, static_cast<QObject *>(ServicesUtil::instance()));
        QSignalSpy spy(service, SIGNAL(doGotMsg(QJsonObject)));
        fx->channel().replyOk("async");
        QVERIFY(QMetaObject::invokeMethod(service, "metaMsgSync", Q_ARG(QJsonObject, request())));
        QVERIFY(spy.wait(2000));
        QCOMPARE(spy.first().first().toJsonObject().value("data").toString(), QStringLiteral("async"));
    }
};

QTEST_MAIN(TestServicesUtil)
#include "tst_servicesutil.moc"
