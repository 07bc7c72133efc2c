#include "hostfixture.h"

#include <server/cloudhttpserver.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QMutex>
#include <QSemaphore>
#include <QTcpSocket>
#include <QThread>
#include <QtConcurrent>
#include <QtTest>

#include <atomic>
#include <memory>

namespace {

struct RawResponse {
    int status = 0;
    QByteArray headers;
    QByteArray body;
    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
};

int contentLength(const QByteArray &headers)
{
    for (const QByteArray &line : headers.split('\n')) {
        if (line.toLower().startsWith("content-length:"))
            return line.mid(15).trimmed().toInt();
    }
    return -1;
}

// One request on its own connection, read until the whole reply is in (by
// Content-Length) or the server closes.
RawResponse exchange(quint16 port, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    RawResponse r;
    if (!socket.waitForConnected(5000))
        return r;
    socket.write(request);
    QByteArray data;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < 10000) {
        const int split = data.indexOf("\r\n\r\n");
        if (split >= 0 && data.size() - split - 4 >= contentLength(data.left(split)))
            break;
        if (socket.state() != QAbstractSocket::ConnectedState && socket.bytesAvailable() == 0)
            break;
        socket.waitForReadyRead(200);
        data += socket.readAll();
    }
    const int split = data.indexOf("\r\n\r\n");
    if (split < 0)
        return r;
    r.headers = data.left(split);
    r.body = data.mid(split + 4);
    r.status = data.mid(9, 3).toInt();
    return r;
}

QByteArray post(const QByteArray &body, const QByteArray &extraHeaders = QByteArray())
{
    return "POST /cloud HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\nContent-Type: application/json\r\n"
           + extraHeaders + "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray get(const QByteArray &path)
{
    return "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";
}

const QByteArray smallEnvelope = R"({"cmd":"cloudSoft","app_type":1,"orgin_token":"kv_token_user","data":{"method":"getserverlist"}})";

} // namespace

class TestCloudHttpServer : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<CloudHttpServer> server;
    QMutex mutex;
    QStringList sessions;
    QList<QJsonObject> requests;
    std::atomic<int> inside{0};
    std::atomic<int> mostInside{0};
    std::atomic<int> delayMs{0};
    QSemaphore entered;

    QJsonObject handle(const QJsonObject &request, const QString &session)
    {
        const int now = ++inside;
        int seen = mostInside.load();
        while (now > seen && !mostInside.compare_exchange_weak(seen, now)) {
        }
        entered.release();
        {
            QMutexLocker lock(&mutex);
            requests << request;
            sessions << session;
        }
        if (delayMs.load() > 0)
            QThread::msleep(ulong(delayMs.load()));
        --inside;
        if (request.value(QStringLiteral("data")).toObject().value(QStringLiteral("method")).toString() == QLatin1String("throw"))
            throw std::runtime_error("handler failed");
        return QJsonObject{{QStringLiteral("code"), 0}, {QStringLiteral("msg"), QStringLiteral("好")}, {QStringLiteral("data"), 7}};
    }

    std::unique_ptr<CloudHttpServer> makeServer(int threads, qint64 maxBody)
    {
        CloudHttpServer::Limits limits;
        limits.threads = threads;
        limits.maxBodyBytes = maxBody;
        auto made = std::make_unique<CloudHttpServer>(
            [this](const QJsonObject &r, const QString &s) { return handle(r, s); }, limits);
        QString error;
        if (!made->start(QStringLiteral("127.0.0.1:0"), &error))
            qWarning("%s", qPrintable(error));
        return made;
    }

    quint16 port() const { return quint16(server->port()); }
    int handled()
    {
        QMutexLocker lock(&mutex);
        return requests.size();
    }

private slots:
    // One server for most functions: civetweb takes up to two seconds to stop.
    void initTestCase()
    {
        server = makeServer(4, 4096);
        QVERIFY(server->isRunning());
    }

    void cleanupTestCase() { server.reset(); }

    void init()
    {
        fx = std::make_unique<HostFixture>();
        QMutexLocker lock(&mutex);
        requests.clear();
        sessions.clear();
        inside = 0;
        mostInside = 0;
        delayMs = 0;
        entered.acquire(entered.available());
    }

    void cleanup() { fx.reset(); }

    void servesEnvelopeWithSession()
    {
        const RawResponse r = exchange(port(), post(smallEnvelope, "X-Velora-Session: abc123\r\n"));
        QCOMPARE(r.status, 200);
        QVERIFY(r.headers.contains("Content-Type: application/json; charset=utf-8"));
        QCOMPARE(r.json(), (QJsonObject{{"code", 0}, {"msg", QStringLiteral("好")}, {"data", 7}}));
        QCOMPARE(sessions, QStringList{QStringLiteral("abc123")});
        QCOMPARE(requests.first(), QJsonDocument::fromJson(smallEnvelope).object());
    }

    void expectContinueIsAnsweredBeforeTheBody()
    {
        // The HTTP channel sends its headers first; the interim answer lets
        // the body follow at once instead of after a delayed ACK.
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port());
        QVERIFY(socket.waitForConnected(5000));
        socket.write("POST /cloud HTTP/1.1\r\nHost: x\r\nExpect: 100-continue\r\nContent-Length: "
                     + QByteArray::number(smallEnvelope.size()) + "\r\n\r\n");
        QByteArray data;
        QElapsedTimer clock;
        clock.start();
        while (!data.contains("\r\n\r\n") && clock.elapsed() < 5000) {
            socket.waitForReadyRead(200);
            data += socket.readAll();
        }
        QCOMPARE(data, QByteArray("HTTP/1.1 100 Continue\r\n\r\n"));
        socket.write(smallEnvelope);
        while (!data.contains("\"data\":7") && clock.elapsed() < 10000) {
            socket.waitForReadyRead(200);
            data += socket.readAll();
        }
        QVERIFY2(data.contains("\r\n\r\nHTTP/1.1 200 OK\r\n"), data.constData());
        QVERIFY(data.contains("Connection: keep-alive\r\n"));
        QCOMPARE(handled(), 1);
    }

    void chunkedBodyIsAccepted()
    {
        const QByteArray chunked = "POST /cloud HTTP/1.1\r\nHost: x\r\nConnection: close\r\nTransfer-Encoding: chunked\r\n\r\n"
                                   + QByteArray::number(smallEnvelope.size(), 16) + "\r\n" + smallEnvelope + "\r\n0\r\n\r\n";
        const RawResponse r = exchange(port(), chunked);
        QCOMPARE(r.status, 200);
        QCOMPARE(r.json().value("data").toInt(), 7);
        QCOMPARE(sessions, QStringList{QString()});
    }

    void malformedBodyGetsReadableFailure_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("not json") << QByteArray("cmd=cloudSoft");
        QTest::newRow("truncated") << QByteArray(R"({"cmd":"cloudSoft","data":{)");
        QTest::newRow("array") << QByteArray(R"([{"cmd":"cloudSoft"}])");
        QTest::newRow("string") << QByteArray(R"("cloudSoft")");
    }

    void malformedBodyGetsReadableFailure()
    {
        QFETCH(QByteArray, body);
        const RawResponse r = exchange(port(), post(body));
        QCOMPARE(r.status, 200);
        QCOMPARE(r.json(), (QJsonObject{{"code", 1}, {"msg", QStringLiteral("请求内容不是有效的JSON对象")}}));
        QCOMPARE(handled(), 0);
    }

    void bodySizeLimit_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("status");
        QTest::newRow("at the limit") << 4096 << 200;
        QTest::newRow("one over") << 4097 << 413;
        QTest::newRow("far over") << 1024 * 1024 << 413;
    }

    void bodySizeLimit()
    {
        QFETCH(int, size);
        QFETCH(int, status);
        QByteArray body = smallEnvelope;
        body.append(QByteArray(size - body.size(), ' ')); // trailing blanks keep it valid JSON
        const RawResponse r = exchange(port(), post(body));
        QCOMPARE(r.status, status);
        if (status == 413) {
            QCOMPARE(r.json().value("code").toInt(), 413);
            QCOMPARE(r.json().value("msg").toString(), QStringLiteral("请求内容超过4096字节的上限"));
            QVERIFY(r.headers.contains("Connection: close"));
        }
        QCOMPARE(handled(), status == 200 ? 1 : 0);
    }

    void oversizeDeclaredLengthIsRefusedBeforeReading()
    {
        // Only the headers are sent: the refusal must not wait for the body.
        const RawResponse r = exchange(port(), "POST /cloud HTTP/1.1\r\nHost: x\r\nContent-Length: 9000000\r\n\r\n");
        QCOMPARE(r.status, 413);
        QCOMPARE(handled(), 0);
    }

    void oversizeChunkedBodyIsRefused()
    {
        QByteArray chunked = "POST /cloud HTTP/1.1\r\nHost: x\r\nConnection: close\r\nTransfer-Encoding: chunked\r\n\r\n";
        for (int i = 0; i < 3; ++i)
            chunked += "800\r\n" + QByteArray(0x800, ' ') + "\r\n";
        chunked += "0\r\n\r\n";
        const RawResponse r = exchange(port(), chunked);
        QCOMPARE(r.status, 413);
        QCOMPARE(handled(), 0);
    }

    void routes_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<int>("status");
        QTest::addColumn<QJsonObject>("json");
        QTest::newRow("health") << get("/health") << 200 << QJsonObject{{"status", "ok"}};
        QTest::newRow("HEAD health") << QByteArray("HEAD /health HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n")
                                     << 200 << QJsonObject();
        QTest::newRow("GET cloud") << get("/cloud") << 405
                                   << QJsonObject{{"code", 405}, {"msg", QStringLiteral("请求方式不受支持")}};
        QTest::newRow("POST health") << QByteArray("POST /health HTTP/1.1\r\nHost: x\r\nConnection: close\r\nContent-Length: 0\r\n\r\n")
                                     << 405 << QJsonObject{{"code", 405}, {"msg", QStringLiteral("请求方式不受支持")}};
        QTest::newRow("unknown") << get("/index.html") << 404
                                 << QJsonObject{{"code", 404}, {"msg", QStringLiteral("请求的地址不存在")}};
        QTest::newRow("below cloud") << get("/cloud/x") << 404
                                     << QJsonObject{{"code", 404}, {"msg", QStringLiteral("请求的地址不存在")}};
    }

    void routes()
    {
        QFETCH(QByteArray, request);
        QFETCH(int, status);
        QFETCH(QJsonObject, json);
        const RawResponse r = exchange(port(), request);
        QCOMPARE(r.status, status);
        QCOMPARE(r.json(), json);
        if (status == 405)
            QVERIFY(r.headers.contains("Allow: "));
        if (request.startsWith("HEAD")) {
            QVERIFY(r.body.isEmpty());
            QVERIFY(r.headers.contains("Content-Length: 15"));
        }
        QCOMPARE(handled(), 0);
    }

    void throwingHandlerGives500()
    {
        const RawResponse r = exchange(port(), post(R"({"cmd":"cloudSoft","data":{"method":"throw"}})"));
        QCOMPARE(r.status, 500);
        QCOMPARE(r.json(), (QJsonObject{{"code", 500}, {"msg", QStringLiteral("服务内部错误")}}));
        // and the server keeps serving
        QCOMPARE(exchange(port(), post(smallEnvelope)).status, 200);
    }

    void workerThreadsBoundConcurrency()
    {
        std::unique_ptr<CloudHttpServer> narrow = makeServer(2, 4096);
        QVERIFY(narrow->isRunning());
        delayMs = 300;
        QList<QFuture<int>> clients;
        const quint16 p = quint16(narrow->port());
        QThreadPool pool; // all six clients at once, whatever the core count
        pool.setMaxThreadCount(6);
        for (int i = 0; i < 6; ++i)
            clients << QtConcurrent::run(&pool, [p] { return exchange(p, post(smallEnvelope)).status; });
        for (QFuture<int> &c : clients) {
            QTRY_VERIFY_WITH_TIMEOUT(c.isFinished(), 20000);
            QCOMPARE(c.result(), 200);
        }
        QCOMPARE(handled(), 6);
        QCOMPARE(mostInside.load(), 2);
    }

    void stopFinishesRequestsInProgress()
    {
        std::unique_ptr<CloudHttpServer> stopping = makeServer(2, 4096);
        QVERIFY(stopping->isRunning());
        delayMs = 3000;
        const quint16 p = quint16(stopping->port());
        QFuture<RawResponse> client = QtConcurrent::run([p] { return exchange(p, post(smallEnvelope)); });
        QVERIFY(entered.tryAcquire(1, 10000));
        CloudHttpServer *raw = stopping.get();
        QFuture<void> stopper = QtConcurrent::run([raw] { raw->stop(); });
        // While it drains, new requests are turned away with a readable reply.
        QTRY_VERIFY_WITH_TIMEOUT(raw->isStopping(), 5000);
        const RawResponse refused = exchange(p, post(smallEnvelope));
        QCOMPARE(refused.status, 503);
        QCOMPARE(refused.json(), (QJsonObject{{"code", 503}, {"msg", QStringLiteral("服务正在停止，请稍后重试")}}));
        QTRY_VERIFY_WITH_TIMEOUT(stopper.isFinished(), 15000);
        QVERIFY(!stopping->isRunning());
        QVERIFY(client.isFinished());
        QCOMPARE(client.result().status, 200);
        QCOMPARE(client.result().json().value("data").toInt(), 7);
        QCOMPARE(handled(), 1);
        // Nothing listens any more.
        QTcpSocket late;
        late.connectToHost(QHostAddress::LocalHost, p);
        QVERIFY(!late.waitForConnected(2000));
    }

    void busyAddressIsReported()
    {
        CloudHttpServer second([](const QJsonObject &, const QString &) { return QJsonObject(); });
        QString error;
        const QString address = QStringLiteral("127.0.0.1:%1").arg(server->port());
        QVERIFY(!second.start(address, &error));
        QVERIFY2(error.startsWith(QStringLiteral("cannot listen on ") + address), qPrintable(error));
        QVERIFY(!second.isRunning());
    }

    void keepAliveServesSeveralRequestsOnOneConnection()
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port());
        QVERIFY(socket.waitForConnected(5000));
        const QByteArray once = "POST /cloud HTTP/1.1\r\nHost: x\r\nContent-Length: "
                                + QByteArray::number(smallEnvelope.size()) + "\r\n\r\n" + smallEnvelope;
        for (int i = 1; i <= 3; ++i) {
            socket.write(once);
            QByteArray data;
            QElapsedTimer clock;
            clock.start();
            while (data.count("\"data\":7") < 1 && clock.elapsed() < 5000) {
                socket.waitForReadyRead(500);
                data += socket.readAll();
            }
            QVERIFY2(data.startsWith("HTTP/1.1 200"), data.constData());
            QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
        }
        QCOMPARE(handled(), 3);
    }
};

QTEST_MAIN(TestCloudHttpServer)
#include "tst_cloudhttpserver.moc"
