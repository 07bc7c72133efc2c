#include "hostfixture.h"

#include <hostapi/apppaths.h>
#include <hostapi/hostconfig.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QtConcurrent>
#include <QtTest>

#include <memory>

class TestServicesUtil : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

    static QJsonObject request()
    {
        return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                           {QStringLiteral("app_type"), 1},
                           {QStringLiteral("orgin_token"), QStringLiteral("kv_token_user")},
                           {QStringLiteral("data"), QJsonObject{{QStringLiteral("method"), QStringLiteral("getBZQDKList")}}}};
    }

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void passesRequestAndSessionUnchanged()
    {
        Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-1"));
        fx->channel().replyOk(QJsonArray{QJsonObject{{QStringLiteral("mc"), QStringLiteral("库")}}});
        QJsonObject req = request();
        const QByteArray bytes = ServicesUtil::AsyncReplyLoop(req);
        QCOMPARE(fx->channel().requests(), QList<QJsonObject>{request()});
        QCOMPARE(fx->channel().sessions(), QStringList{QStringLiteral("sess-1")});
        QCOMPARE(QJsonDocument::fromJson(bytes).object().value(QStringLiteral("data")).toArray().size(), 1);
    }

    void noReplyCases_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not json") << QByteArray("<html>502 Bad Gateway</html>");
        QTest::newRow("json array") << QByteArray("[1,2]");
    }

    void noReplyCases()
    {
        QFETCH(QByteArray, bytes);
        fx->channel().replyBytes(bytes);
        QJsonObject req = request();
        const QByteArray reply = ServicesUtil::AsyncReplyLoop(req);
        // The contract: what is not a JSON object counts as no reply.
        QVERIFY(QJsonDocument::fromJson(reply).object().isEmpty());
    }

    void noChannelIsNoReply()
    {
        ServicesUtil::setChannel(nullptr);
        QJsonObject req = request();
        QVERIFY(ServicesUtil::AsyncReplyLoop(req).isEmpty());
    }

    void configQueryIsAnsweredLocally()
    {
        HostConfig::setValue(QStringLiteral("SaveBzQd"), QStringLiteral("true"));
        QJsonObject req{{QStringLiteral("cmd"), QStringLiteral("getConfigValue")},
                        {QStringLiteral("data"), QStringLiteral("SaveBzQd")}};
        const QJsonObject reply = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(req)).object();
        QCOMPARE(reply.value(QStringLiteral("data")).toString(), QStringLiteral("true"));
        QVERIFY(fx->channel().requests().isEmpty());
    }

    void blockingCallKeepsEventLoopRunning()
    {
        bool timerFired = false;
        QTimer::singleShot(0, [&] { timerFired = true; });
        fx->channel().replyOk();
        QJsonObject req = request();
        ServicesUtil::AsyncReplyLoop(req);
        QVERIFY(timerFired);
    }

    void callFromWorkerThread()
    {
        fx->channel().replyOk(QStringLiteral("from worker"));
        QFuture<QByteArray> f = QtConcurrent::run([] {
            QJsonObject req = request();
            return ServicesUtil::AsyncReplyLoop(req);
        });
        f.waitForFinished();
        QCOMPARE(QJsonDocument::fromJson(f.result()).object().value(QStringLiteral("data")).toString(),
                 QStringLiteral("from worker"));
    }

    void asynchronousServiceObject()
    {
        ServicesUtil::publish();
        const qlonglong address = qApp->property("ServicesUtil").toLongLong();
        QObject *service = reinterpret_cast<QObject *>(address);
        QCOMPARE(service, static_cast<QObject *>(ServicesUtil::instance()));
        QSignalSpy spy(service, SIGNAL(doGotMsg(QJsonObject)));
        fx->channel().replyOk(QStringLiteral("async"));
        QVERIFY(QMetaObject::invokeMethod(service, "metaMsgSync", Q_ARG(QJsonObject, request())));
        QVERIFY(spy.wait(2000));
        QCOMPARE(spy.first().first().toJsonObject().value(QStringLiteral("data")).toString(), QStringLiteral("async"));
    }

    void settingsAreIsolatedPerTest()
    {
        QVERIFY(HostConfig::sysSetPath().startsWith(fx->appDir()));
        QVERIFY(HostConfig::sysSetPath().endsWith(QStringLiteral("Config/SysSet_.ini")));
        QCOMPARE(HostConfig::value(QStringLiteral("SaveBzQd")), QString());
        auto s = HostConfig::openSysSet();
        s->setValue(QStringLiteral("CloudApp/CurrServer_all"), QStringLiteral("个人云"));
        s->sync();
        QFile ini(HostConfig::sysSetPath());
        QVERIFY(ini.open(QIODevice::ReadOnly));
        QVERIFY(QString::fromUtf8(ini.readAll()).contains(QStringLiteral("[CloudApp]")));
    }
};

QTEST_MAIN(TestServicesUtil)
#include "tst_servicesutil.moc"
