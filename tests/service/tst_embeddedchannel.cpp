#include "servicetestcase.h"

#include <hostapi/cloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <service/embeddedchannel.h>

#include <QTimer>
#include <QtTest>

using namespace cloudjson;

// The in-process channel: replies arrive through the caller's event loop, on
// the caller's thread, and a call dropped early lands nowhere.
class TestEmbeddedChannel : public ServiceTestCase
{
    Q_OBJECT
    static QJsonObject serverListRequest() { return envelope("kv_token", method("getserverlist")); }

private slots:
    void replyArrivesThroughAsyncReplyLoopWhileLoopRuns()
    {
        auto channel = std::make_shared<EmbeddedChannel>(dataDir());
        ServicesUtil::setChannel(channel);
        QCOMPARE(channel->name(), QStringLiteral("embedded"));
        const QJsonObject login = envelope("kv_token", {{"method", "login"}, {"username", "demo"}, {"password", ServiceSeed::DemoPassword}});
        // A timer that fires only if the caller's event loop runs during the call.
        bool loopRan = false;
        QTimer::singleShot(0, [&] { loopRan = true; });
        const QJsonObject reply = exchange(login);
        QCOMPARE(code(reply), 0);
        QVERIFY(loopRan);
        const QJsonObject data = object(reply);
        Users::Instance()->Kvy()->setLogin(data.value("userid").toString(), data.value("username").toString(),
                                           data.value("session").toString());
        // The session travels beside the envelope: the server list now holds the enterprises.
        QCOMPARE(array(exchange(serverListRequest())).size(), 7);
    }

    void callFinishesOnCallerThread()
    {
        EmbeddedChannel channel(dataDir());
        std::unique_ptr<CloudCall> call(channel.start(serverListRequest(), QString()));
        QVERIFY(!call->isFinished());
        QThread *finishedOn = nullptr;
        connect(call.get(), &CloudCall::finished, this, [&] { finishedOn = QThread::currentThread(); });
        QTRY_VERIFY(call->isFinished());
        QCOMPARE(finishedOn, QThread::currentThread());
        QCOMPARE(code(parsed(call->reply())), 0);
    }

    void droppedCallIsSafe()
    {
        EmbeddedChannel channel(dataDir());
        for (int i = 0; i < 20; ++i)
            delete channel.start(serverListRequest(), QString());
        // The late results land nowhere; the service is still sound.
        std::unique_ptr<CloudCall> call(channel.start(serverListRequest(), QString()));
        QTRY_VERIFY(call->isFinished());
        QVERIFY(!call->reply().isEmpty());
    }

    void concurrentCallsAllAnswered()
    {
        EmbeddedChannel channel(dataDir());
        std::vector<std::unique_ptr<CloudCall>> calls;
        for (int i = 0; i < 16; ++i)
            calls.emplace_back(channel.start(serverListRequest(), session));
        for (auto &call : calls) {
            QTRY_VERIFY(call->isFinished());
            QCOMPARE(array(parsed(call->reply())).size(), 7);
        }
    }
};

QTEST_MAIN(TestEmbeddedChannel)
#include "tst_embeddedchannel.moc"
