#include "hostfixture.h"

#include <hostapi/httpcloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <server/cloudhttpserver.h>

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMutex>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QtConcurrent>
#include <QtTest>

#include <memory>

namespace {

QJsonObject envelope(const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), 1},
                       {QStringLiteral("orgin_token"), QStringLiteral("kv_token_user")},
                       {QStringLiteral("data"), data}};
}

QJsonObject parsed(const QByteArray &bytes)
{
    return QJsonDocument::fromJson(bytes).object();
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

} // namespace

class TestHttpCloudChannel : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<CloudHttpServer> server;
    QMutex seenMutex;
    QList<QJsonObject> seenRequests;
    QStringList seenSessions;
    std::atomic<int> handlerDelayMs{0};

    // Echo service: answers {"code":0,"data":{"method":…,"n":…,"thread":…}}.
    QJsonObject echo(const QJsonObject &request, const QString &session)
    {
        {
            QMutexLocker lock(&seenMutex);
            seenRequests << request;
            seenSessions << session;
        }
        if (handlerDelayMs.load() > 0)
            QThread::msleep(ulong(handlerDelayMs.load()));
        const QJsonObject data = request.value(QStringLiteral("data")).toObject();
        return QJsonObject{{QStringLiteral("code"), 0},
                           {QStringLiteral("msg"), QString()},
                           {QStringLiteral("data"), data}};
    }

    QUrl baseUrl() const { return QUrl(server->baseUrl()); }

    void install(int timeoutMs = HttpCloudChannel::DefaultTimeoutMs)
    {
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(baseUrl(), timeoutMs));
    }

private slots:
    // One server for the whole case: civetweb takes up to two seconds to stop.
    void initTestCase()
    {
        CloudHttpServer::Limits limits;
        limits.threads = 4;
        limits.maxBodyBytes = 64 * 1024;
        server = std::make_unique<CloudHttpServer>(
            [this](const QJsonObject &r, const QString &s) { return echo(r, s); }, limits);
        QString error;
        QVERIFY2(server->start(QStringLiteral("127.0.0.1:0"), &error), qPrintable(error));
        QVERIFY(server->port() > 0);
    }

    void cleanupTestCase() { server.reset(); }

    void init()
    {
        fx = std::make_unique<HostFixture>();
        QMutexLocker lock(&seenMutex);
        seenRequests.clear();
        seenSessions.clear();
        handlerDelayMs = 0;
    }

    void cleanup()
    {
        ServicesUtil::setChannel(nullptr);
        fx.reset();
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
        QFETCH(QString, endpoint);
        QCOMPARE(HttpCloudChannel(QUrl(base)).endpoint().toString(), endpoint);
        QCOMPARE(HttpCloudChannel(QUrl(base)).timeoutMs(), 30000);
    }

    void postsEnvelopeAndSessionHeader()
    {
        install();
        Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-甲-1"));
        const QJsonObject sent = envelope({{QStringLiteral("method"), QStringLiteral("getchaptertreeforperson")},
                                           {QStringLiteral("zjid"), QStringLiteral("章节")}});
        QJsonObject request = sent;
        const QJsonObject reply = parsed(ServicesUtil::AsyncReplyLoop(request));
        QCOMPARE(reply.value(QStringLiteral("code")).toInt(-1), 0);
        QCOMPARE(reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("zjid")).toString(),
                 QStringLiteral("章节"));
        QMutexLocker lock(&seenMutex);
        QCOMPARE(seenRequests, QList<QJsonObject>{sent});
        QCOMPARE(seenSessions, QStringList{QStringLiteral("sess-甲-1")});
    }

    void noSessionSendsEmptyHeader()
    {
        install();
        QJsonObject request = envelope({{QStringLiteral("method"), QStringLiteral("getserverlist")}});
        QVERIFY(!ServicesUtil::AsyncReplyLoop(request).isEmpty());
        QMutexLocker lock(&seenMutex);
        QCOMPARE(seenSessions, QStringList{QString()});
    }

    void malformedEnvelopeReachesCallerAsFailure()
    {
        // The server refuses a body that is not an object with a readable
        // reply; the channel hands it through like any answer.
        QNetworkAccessManager nam;
        QNetworkRequest req(HttpCloudChannel::endpointFor(baseUrl()));
        req.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
        std::unique_ptr<QNetworkReply> reply(nam.post(req, QByteArrayLiteral("[\"cloudSoft\"]")));
        QSignalSpy done(reply.get(), &QNetworkReply::finished);
        QVERIFY(done.wait(10000));
        const QJsonObject answer = parsed(reply->readAll());
        QCOMPARE(answer.value(QStringLiteral("code")).toInt(), 1);
        QCOMPARE(answer.value(QStringLiteral("msg")).toString(), QStringLiteral("请求内容不是有效的JSON对象"));
    }

    void failuresAreNoReply_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("connection refused") << "refused";
        QTest::newRow("http 404") << "404";
        QTest::newRow("http 413 oversize body") << "413";
    }

    void failuresAreNoReply()
    {
        QFETCH(QString, kind);
        QUrl base = baseUrl();
        QJsonObject request = envelope({{QStringLiteral("method"), QStringLiteral("getserverlist")}});
        if (kind == QLatin1String("refused"))
            base.setPort(closedPort());
        else if (kind == QLatin1String("404"))
            base.setPath(QStringLiteral("/elsewhere"));
        else
            request.insert(QStringLiteral("data"), QJsonObject{{QStringLiteral("pad"), QString(70 * 1024, QLatin1Char('x'))}});
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(base, 10000));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ServicesUtil::AsyncReplyLoop(request), QByteArray());
        QVERIFY2(clock.elapsed() < 9000, "a failure must end the call before the time-out");
        QMutexLocker lock(&seenMutex);
        QVERIFY(seenRequests.isEmpty());
    }

    void silentServerTimesOut()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        QUrl base(QStringLiteral("http://127.0.0.1"));
        base.setPort(silent.serverPort());
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(base, 300));
        QJsonObject request = envelope({{QStringLiteral("method"), QStringLiteral("getserverlist")}});
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(ServicesUtil::AsyncReplyLoop(request), QByteArray());
        QVERIFY(clock.elapsed() >= 290);
        QVERIFY(clock.elapsed() < 5000);
        QVERIFY(silent.hasPendingConnections()); // the request did go out
    }

    void lateReplyFinishesOnce()
    {
        handlerDelayMs = 600;
        HttpCloudChannel channel(baseUrl(), 150);
        std::unique_ptr<CloudCall> call(channel.start(envelope({{QStringLiteral("method"), QStringLiteral("slow")}}), QString()));
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

    void deletedCallAbortsItsRequest()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        QUrl base(QStringLiteral("http://127.0.0.1"));
        base.setPort(silent.serverPort());
        HttpCloudChannel channel(base, 30000);
        auto *call = channel.start(envelope({{QStringLiteral("method"), QStringLiteral("x")}}), QString());
        QTRY_VERIFY_WITH_TIMEOUT(silent.hasPendingConnections(), 5000);
        QPointer<QTcpSocket> peer = silent.nextPendingConnection();
        QVERIFY(peer);
        delete call; // the caller gave up: its loop is gone
        QTRY_VERIFY_WITH_TIMEOUT(!peer || peer->state() == QAbstractSocket::UnconnectedState, 5000);
    }

    void callFinishesOnTheCallingWorkerThread()
    {
        const QUrl base = baseUrl();
        QFuture<bool> f = QtConcurrent::run([base] {
            HttpCloudChannel channel(base);
            std::unique_ptr<CloudCall> call(channel.start(envelope({{QStringLiteral("method"), QStringLiteral("w")}}), QString()));
            QEventLoop loop;
            QThread *finishedOn = nullptr;
            QObject::connect(call.get(), &CloudCall::finished, [&] {
                finishedOn = QThread::currentThread();
                loop.quit();
            });
            QTimer::singleShot(10000, &loop, &QEventLoop::quit);
            if (!call->isFinished())
                loop.exec();
            return finishedOn == QThread::currentThread() && !call->reply().isEmpty();
        });
        QTRY_VERIFY_WITH_TIMEOUT(f.isFinished(), 15000);
        QVERIFY(f.result());
    }

    void concurrentWorkerThreadsGetTheirOwnReplies()
    {
        install();
        Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("s"));
        QThreadPool pool;
        pool.setMaxThreadCount(4);
        QList<QFuture<int>> futures;
        for (int n = 0; n < 12; ++n) {
            futures << QtConcurrent::run(&pool, [n] {
                QJsonObject request = envelope({{QStringLiteral("method"), QStringLiteral("n")}, {QStringLiteral("n"), n}});
                const QJsonObject reply = parsed(ServicesUtil::AsyncReplyLoop(request));
                return reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("n")).toInt(-1);
            });
        }
        for (int n = 0; n < futures.size(); ++n) {
            QTRY_VERIFY_WITH_TIMEOUT(futures[n].isFinished(), 20000);
            QCOMPARE(futures[n].result(), n);
        }
        QMutexLocker lock(&seenMutex);
        QCOMPARE(seenRequests.size(), 12);
    }

    void idleConnectionClosedByServerIsReopened()
    {
        // The server drops an idle keep-alive connection after a second;
        // a worker thread whose loop did not run meanwhile still gets through.
        const QUrl base = baseUrl();
        QFuture<QList<int>> f = QtConcurrent::run([base] {
            HttpCloudChannel channel(base, 10000);
            QList<int> got;
            for (int n = 0; n < 2; ++n) {
                std::unique_ptr<CloudCall> call(channel.start(envelope({{QStringLiteral("method"), QStringLiteral("n")}, {QStringLiteral("n"), n}}), QString()));
                QEventLoop loop;
                QObject::connect(call.get(), &CloudCall::finished, &loop, &QEventLoop::quit);
                if (!call->isFinished())
                    loop.exec();
                got << parsed(call->reply()).value(QStringLiteral("data")).toObject().value(QStringLiteral("n")).toInt(-1);
                QThread::msleep(2600);
            }
            return got;
        });
        QTRY_VERIFY_WITH_TIMEOUT(f.isFinished(), 30000);
        QCOMPARE(f.result(), (QList<int>{0, 1}));
    }

    void threadEndingWithCallPendingIsSafe()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost, 0));
        QUrl base(QStringLiteral("http://127.0.0.1"));
        base.setPort(silent.serverPort());
        auto channel = std::make_shared<HttpCloudChannel>(base, 30000);
        QThread *worker = QThread::create([channel] {
            // Starts a call and leaves without waiting: thread and loop gone.
            std::unique_ptr<CloudCall> call(channel->start(envelope({{QStringLiteral("method"), QStringLiteral("x")}}), QString()));
            QEventLoop loop;
            QTimer::singleShot(300, &loop, &QEventLoop::quit);
            loop.exec();
        });
        worker->start();
        QVERIFY(worker->wait(10000));
        delete worker;
        QTRY_VERIFY_WITH_TIMEOUT(silent.hasPendingConnections(), 5000);
        QPointer<QTcpSocket> peer = silent.nextPendingConnection();
        QVERIFY(peer);
        QTRY_VERIFY_WITH_TIMEOUT(!peer || peer->state() == QAbstractSocket::UnconnectedState, 5000);
    }
};

QTEST_MAIN(TestHttpCloudChannel)
#include "tst_httpcloudchannel.moc"
