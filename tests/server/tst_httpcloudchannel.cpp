#include "cloudjson.h"
#include "hosttestcase.h"
#include "recordinghandler.h"

#include <hostapi/httpcloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QtConcurrent>
#include <QtTest>

using namespace cloudjson;

namespace {

QJsonObject request(const QString &name, const QJsonObject &fields = QJsonObject())
{
    return envelope("kv_token_user", method(name, fields));
}

// "http://127.0.0.1:<port of server>".
QUrl localUrl(quint16 port)
{
    QUrl base(QStringLiteral("http://127.0.0.1"));
    base.setPort(port);
    return base;
}

// A port on which nothing listens.
quint16 closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    const quint16 port = probe.serverPort();
    probe.close();
    return port;
}

// Runs `call` to its end in a local loop (on whatever thread this is).
QByteArray await(CloudCall *call)
{
    QEventLoop loop;
    QObject::connect(call, &CloudCall::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    if (!call->isFinished())
        loop.exec();
    return call->reply();
}

} // namespace

class TestHttpCloudChannel : public HostTestCase
{
    Q_OBJECT
    RecordingHandler handler;
    std::unique_ptr<CloudHttpServer> server;

    QUrl baseUrl() const { return QUrl(server->baseUrl()); }

private slots:
    // One server for the whole case: civetweb takes up to two seconds to stop.
    void initTestCase()
    {
        server = handler.serve(4, 64 * 1024);
        QVERIFY(server->port() > 0);
    }
    void cleanupTestCase() { server.reset(); }
    void init()
    {
        HostTestCase::init();
        handler.reset();
    }

    void endpoint_data()
    {
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("endpoint");
        QTest::newRow("bare") << "http://127.0.0.1:8686" << "http://127.0.0.1:8686/cloud";
        QTest::newRow("slash") << "http://127.0.0.1:8686/" << "http://127.0.0.1:8686/cloud";
        QTest::newRow("prefix") << "http://10.0.0.2:80/velora/" << "http://10.0.0.2:80/velora/cloud";
    }
    void endpoint()
    {
        QFETCH(QString, base);
        QTEST(HttpCloudChannel(QUrl(base)).endpoint().toString(), "endpoint");
        QCOMPARE(HttpCloudChannel(QUrl(base)).timeoutMs(), 30000);
    }

    void postsEnvelopeAndSessionHeader_data()
    {
        QTest::addColumn<QString>("session");
        QTest::newRow("logged in") << "sess-甲-1";
        QTest::newRow("no session: empty header") << QString();
    }
    void postsEnvelopeAndSessionHeader()
    {
        QFETCH(QString, session);
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(baseUrl()));
        if (!session.isEmpty())
            Users::Instance()->Kvy()->setLogin("u1", "张三", session);
        const QJsonObject sent = request("getchaptertreeforperson", {{"zjid", "章节"}});
        const QJsonObject reply = exchange(sent);
        QCOMPARE(code(reply), 0);
        QCOMPARE(object(reply).value("zjid").toString(), QStringLiteral("章节"));
        QCOMPARE(handler.requests(), QList<QJsonObject>{sent});
        QCOMPARE(handler.sessions(), QStringList{session});
    }

    // Every failure is no reply, and none waits longer than it must: a silent
    // server only as long as the time-out.
    void failuresAreNoReply_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("timeoutMs");
        QTest::addColumn<int>("leastMs");
        QTest::addColumn<int>("mostMs");
        QTest::newRow("connection refused") << "refused" << 10000 << 0 << 9000;
        QTest::newRow("http 404") << "404" << 10000 << 0 << 9000;
        QTest::newRow("http 413 oversize body") << "413" << 10000 << 0 << 9000;
        QTest::newRow("silent server") << "silent" << 300 << 290 << 5000;
    }
    void failuresAreNoReply()
    {
        QFETCH(QString, kind);
        QFETCH(int, timeoutMs);
        QFETCH(int, leastMs);
        QFETCH(int, mostMs);
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        QUrl base = baseUrl();
        QJsonObject sent = request("getserverlist");
        if (kind == "refused")
            base.setPort(closedPort());
        else if (kind == "404")
            base.setPath("/elsewhere");
        else if (kind == "413")
            sent.insert("data", QJsonObject{{"pad", QString(70 * 1024, 'x')}});
        else
            base = localUrl(silent.serverPort());
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(base, timeoutMs));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ServicesUtil::AsyncReplyLoop(sent), QByteArray());
        QVERIFY2(clock.elapsed() >= leastMs && clock.elapsed() < mostMs, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(handler.handled(), 0);
        QCOMPARE(silent.hasPendingConnections(), kind == "silent"); // the request did go out
    }

    void lateReplyFinishesOnce()
    {
        handler.delayMs = 600;
        HttpCloudChannel channel(baseUrl(), 150);
        std::unique_ptr<CloudCall> call(channel.start(request("slow"), QString()));
        QSignalSpy finished(call.get(), &CloudCall::finished);
        QVERIFY(finished.wait(5000));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.first().first().toByteArray(), QByteArray());
        // The server's answer arrives later and must not finish the call again.
        QTest::qWait(900);
        QCOMPARE(finished.count(), 1);
        QVERIFY(call->isFinished());
        QCOMPARE(call->reply(), QByteArray());
    }

    // A call given up while the server is silent closes its connection.
    void abandonedCallClosesItsConnection_data()
    {
        QTest::addColumn<bool>("threadEnds");
        QTest::newRow("caller deletes the call") << false;
        QTest::newRow("calling thread ends") << true;
    }
    void abandonedCallClosesItsConnection()
    {
        QFETCH(bool, threadEnds);
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        auto channel = std::make_shared<HttpCloudChannel>(localUrl(silent.serverPort()), 30000);
        if (threadEnds) {
            // Starts a call and leaves without waiting: thread and loop gone.
            QThread *worker = QThread::create([channel] {
                std::unique_ptr<CloudCall> call(channel->start(request("x"), QString()));
                QEventLoop loop;
                QTimer::singleShot(300, &loop, &QEventLoop::quit);
                loop.exec();
            });
            worker->start();
            QVERIFY(worker->wait(10000));
            delete worker;
        } else {
            CloudCall *call = channel->start(request("x"), QString());
            QTRY_VERIFY_WITH_TIMEOUT(silent.hasPendingConnections(), 5000);
            delete call;
        }
        QVERIFY(QTest::qWaitFor([&] { return silent.hasPendingConnections(); }, 5000));
        QPointer<QTcpSocket> peer = silent.nextPendingConnection();
        QTRY_VERIFY_WITH_TIMEOUT(!peer || peer->state() == QAbstractSocket::UnconnectedState, 5000);
    }

    void callsOnAWorkerThread()
    {
        // Each call finishes on the calling worker thread. The server drops an
        // idle keep-alive connection after a second; a worker whose loop did
        // not run meanwhile still gets through.
        const QUrl base = baseUrl();
        QFuture<QList<int>> f = QtConcurrent::run([base] {
            HttpCloudChannel channel(base, 10000);
            QList<int> got;
            for (int n = 0; n < 2; ++n) {
                std::unique_ptr<CloudCall> call(channel.start(request("n", {{"n", n}}), QString()));
                QThread *finishedOn = nullptr;
                QObject::connect(call.get(), &CloudCall::finished, [&] { finishedOn = QThread::currentThread(); });
                got << object(parsed(await(call.get()))).value("n").toInt(-1) << (finishedOn == QThread::currentThread());
                QThread::msleep(2600);
            }
            return got;
        });
        QTRY_VERIFY_WITH_TIMEOUT(f.isFinished(), 30000);
        QCOMPARE(f.result(), (QList<int>{0, 1, 1, 1}));
    }

    void concurrentWorkerThreadsGetTheirOwnReplies()
    {
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(baseUrl()));
        Users::Instance()->Kvy()->setLogin("u1", "张三", "s");
        QThreadPool pool;
        pool.setMaxThreadCount(4);
        QList<QFuture<int>> futures;
        for (int n = 0; n < 12; ++n) {
            futures << QtConcurrent::run(&pool, [n] {
                return object(exchange(request("n", {{"n", n}}))).value("n").toInt(-1);
            });
        }
        for (int n = 0; n < futures.size(); ++n) {
            QTRY_VERIFY_WITH_TIMEOUT(futures[n].isFinished(), 20000);
            QCOMPARE(futures[n].result(), n);
        }
        QCOMPARE(handler.sessions().count("s"), 12); // the login, read on every worker thread
    }
};

QTEST_MAIN(TestHttpCloudChannel)
#include "tst_httpcloudchannel.moc"
