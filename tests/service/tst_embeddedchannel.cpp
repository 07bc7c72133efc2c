#include "hostfixture.h"
#include "servicetestbase.h"

#include <hostapi/cloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QJsonDocument>
#include <QTimer>
#include <QtTest>

class TestEmbeddedChannel : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<ServiceTestBase> svc;

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
        ServiceTestBase *base = svc.get();
        Q_UNUSED(base);
        ServicesUtil::setChannel(nullptr);
        Users::Instance()->Kvy()->setLogout();
        svc.reset();
        fx.reset();
    }

    void replyArrivesThroughAsyncReplyLoopWhileLoopRuns()
    {
        auto channel = std::make_shared<EmbeddedChannel>(svc->dataDir());
        ServicesUtil::setChannel(channel);
        QCOMPARE(channel->name(), QStringLiteral("embedded"));

        QJsonObject login = ServiceTestBase::request(
            QStringLiteral("kv_token"),
            QJsonObject{{"method", "login"}, {"username", "demo"}, {"password", ServiceSeed::DemoPassword}});
        // A timer that fires only if the caller's event loop runs during the call.
        bool loopRan = false;
        QTimer::singleShot(0, [&] { loopRan = true; });
        const QJsonObject reply = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(login)).object();
        QCOMPARE(reply.value(QStringLiteral("code")).toInt(), 0);
        QVERIFY(loopRan);
        const QJsonObject data = reply.value(QStringLiteral("data")).toObject();
        Users::Instance()->Kvy()->setLogin(data.value("userid").toString(), data.value("username").toString(),
                                           data.value("session").toString());

        // The session travels beside the envelope: the server list now holds the enterprises.
        QJsonObject list = ServiceTestBase::request(QStringLiteral("kv_token"), QJsonObject{{"method", "getserverlist"}});
        const QJsonObject listReply = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(list)).object();
        QCOMPARE(listReply.value(QStringLiteral("data")).toArray().size(), 7);
    }

    void asynchronousRequestWithoutToken()
    {
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(svc->dataDir()));
        Users::Instance()->Kvy()->setLogin(QStringLiteral("1"), QStringLiteral("演示用户"), ServiceTestBase::session("demo"));
        QJsonObject reply;
        QObject receiver;
        connect(ServicesUtil::instance(), &ServicesUtil::doGotMsg, &receiver, [&](const QJsonObject &r) { reply = r; });
        // The pricing browser's request carries no "orgin_token": the personal cloud of the login.
        const QJsonObject request{{"cmd", "cloudSoft"}, {"app_type", 1},
                                  {"data", QJsonObject{{"method", "personchapterinfoforuploadqd"}}}};
        QVERIFY(QMetaObject::invokeMethod(ServicesUtil::instance(), "metaMsgSync", Q_ARG(QJsonObject, request)));
        QTRY_VERIFY(!reply.isEmpty());
        QCOMPARE(reply.value("code").toInt(), 0);
        QCOMPARE(reply.value("data").toArray().at(0).toObject().value("mc").toString(), QStringLiteral("我的清单库"));
    }

    void callFinishesOnCallerThread()
    {
        EmbeddedChannel channel(svc->dataDir());
        std::unique_ptr<CloudCall> call(channel.start(
            ServiceTestBase::request(QStringLiteral("kv_token"), QJsonObject{{"method", "getserverlist"}}), QString()));
        QVERIFY(!call->isFinished());
        QThread *finishedOn = nullptr;
        connect(call.get(), &CloudCall::finished, this, [&] { finishedOn = QThread::currentThread(); });
        QTRY_VERIFY(call->isFinished());
        QCOMPARE(finishedOn, QThread::currentThread());
        QCOMPARE(QJsonDocument::fromJson(call->reply()).object().value(QStringLiteral("code")).toInt(), 0);
    }

    void droppedCallIsSafe()
    {
        EmbeddedChannel channel(svc->dataDir());
        for (int i = 0; i < 20; ++i)
            delete channel.start(ServiceTestBase::request(QStringLiteral("kv_token"), QJsonObject{{"method", "getserverlist"}}),
                                 QString());
        // The late results land nowhere; the service is still sound.
        std::unique_ptr<CloudCall> call(channel.start(
            ServiceTestBase::request(QStringLiteral("kv_token"), QJsonObject{{"method", "getserverlist"}}), QString()));
        QTRY_VERIFY(call->isFinished());
        QVERIFY(!call->reply().isEmpty());
    }

    void concurrentCallsAllAnswered()
    {
        EmbeddedChannel channel(svc->dataDir());
        const QString session = svc->login(ServiceSeed::DemoUser);
        std::vector<std::unique_ptr<CloudCall>> calls;
        for (int i = 0; i < 16; ++i)
            calls.emplace_back(channel.start(
                ServiceTestBase::request(QStringLiteral("kv_token"), QJsonObject{{"method", "getserverlist"}}), session));
        for (auto &call : calls) {
            QTRY_VERIFY(call->isFinished());
            QCOMPARE(QJsonDocument::fromJson(call->reply()).object().value("data").toArray().size(), 7);
        }
    }
};

QTEST_MAIN(TestEmbeddedChannel)
#include "tst_embeddedchannel.moc"
