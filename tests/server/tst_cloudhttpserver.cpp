#include "hosttestcase.h"
#include "recordinghandler.h"

#include <server/compactjson.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTcpSocket>
#include <QtConcurrent>
#include <QtTest>

namespace {

const QByteArray smallEnvelope = R"({"cmd":"cloudSoft","app_type":1,"orgin_token":"kv_token_user","data":{"method":"getserverlist"}})";
const QJsonObject smallReply{{"code", 0}, {"msg", "好"}, {"data", QJsonObject{{"method", "getserverlist"}}}};

struct RawResponse {
    int status = 0;
    QByteArray headers;
    QByteArray body;
    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
};

// How many whole responses (headers and Content-Length bytes) `data` holds.
int wholeResponses(const QByteArray &data)
{
    int count = 0;
    for (int pos = 0;; ++count) {
        const int split = data.indexOf("\r\n\r\n", pos);
        if (split < 0)
            return count;
        int length = 0;
        for (const QByteArray &line : data.mid(pos, split - pos).split('\n'))
            if (line.toLower().startsWith("content-length:"))
                length = line.mid(15).trimmed().toInt();
        pos = split + 4 + length;
        if (pos > data.size())
            return count;
    }
}

// Reads until `data` holds `count` whole responses, the server closes, or ten seconds pass.
QByteArray readResponses(QTcpSocket &socket, int count, QByteArray data = QByteArray())
{
    QElapsedTimer clock;
    clock.start();
    while (wholeResponses(data) < count && clock.elapsed() < 10000
           && (socket.state() == QAbstractSocket::ConnectedState || socket.bytesAvailable() > 0)) {
        socket.waitForReadyRead(200);
        data += socket.readAll();
    }
    return data;
}

// One request on its own connection.
RawResponse exchange(quint16 port, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    RawResponse r;
    if (!socket.waitForConnected(5000))
        return r;
    socket.write(request);
    const QByteArray data = readResponses(socket, 1);
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

QByteArray request(const QByteArray &verb, const QByteArray &path, const QByteArray &headers = QByteArray())
{
    return verb + " " + path + " HTTP/1.1\r\nHost: x\r\nConnection: close\r\n" + headers + "\r\n";
}

QByteArray chunked(const QList<QByteArray> &chunks)
{
    QByteArray out = request("POST", "/cloud", "Transfer-Encoding: chunked\r\n");
    for (const QByteArray &c : chunks)
        out += QByteArray::number(c.size(), 16) + "\r\n" + c + "\r\n";
    return out + "0\r\n\r\n";
}

} // namespace

class TestCloudHttpServer : public HostTestCase
{
    Q_OBJECT
    RecordingHandler handler;
    std::unique_ptr<CloudHttpServer> server;

    quint16 port() const { return quint16(server->port()); }

private slots:
    // One server for most functions: civetweb takes up to two seconds to stop.
    void initTestCase()
    {
        server = handler.serve(4, 4096);
        QVERIFY(server->isRunning());
    }
    void cleanupTestCase() { server.reset(); }
    void init()
    {
        HostTestCase::init();
        handler.reset();
    }

    void servesEnvelopeWithSession()
    {
        const RawResponse r = exchange(port(), post(smallEnvelope, "X-Velora-Session: abc123\r\n"));
        QCOMPARE(r.status, 200);
        QCOMPARE(r.json(), smallReply);
        QCOMPARE(handler.requests().first(), QJsonDocument::fromJson(smallEnvelope).object());
        exchange(port(), post(smallEnvelope));
        QCOMPARE(handler.sessions(), (QStringList{"abc123", ""}));
    }

    void oneConnectionServesSeveralRequests()
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port());
        QVERIFY(socket.waitForConnected(5000));
        // The HTTP channel sends its headers first; the interim answer lets
        // the body follow at once instead of after a delayed ACK.
        const QByteArray headers = "POST /cloud HTTP/1.1\r\nHost: x\r\nContent-Length: " + QByteArray::number(smallEnvelope.size()) + "\r\n";
        socket.write(headers + "Expect: 100-continue\r\n\r\n");
        QByteArray data = readResponses(socket, 1);
        QCOMPARE(data, QByteArray("HTTP/1.1 100 Continue\r\n\r\n"));
        for (int i = 1; i <= 3; ++i) {
            socket.write(i == 1 ? smallEnvelope : headers + "\r\n" + smallEnvelope);
            data = readResponses(socket, i + 1, data);
            QCOMPARE(data.count("HTTP/1.1 200 OK\r\n"), i);
            QCOMPARE(data.count("Connection: keep-alive\r\n"), i);
            QCOMPARE(socket.state(), QAbstractSocket::ConnectedState);
        }
        QCOMPARE(handler.handled(), 3);
    }

    // Requests answered without or around the handler; the server keeps
    // serving after each.
    void answers_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<int>("status");
        QTest::addColumn<QJsonObject>("json");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<int>("handled");
        const QJsonObject notJson{{"code", 1}, {"msg", "请求内容不是有效的JSON对象"}};
        const QJsonObject tooLarge{{"code", 413}, {"msg", "请求内容超过4096字节的上限"}};
        const QJsonObject notAllowed{{"code", 405}, {"msg", "请求方式不受支持"}};
        const QJsonObject notFound{{"code", 404}, {"msg", "请求的地址不存在"}};
        // Trailing blanks keep the envelope valid JSON.
        const auto padded = [](int size) { return post(smallEnvelope + QByteArray(size - smallEnvelope.size(), ' ')); };
        const QByteArray json = "Content-Type: application/json; charset=utf-8";
        QTest::newRow("chunked body") << chunked({smallEnvelope}) << 200 << smallReply << json << 1;
        QTest::newRow("body at the limit") << padded(4096) << 200 << smallReply << json << 1;
        QTest::newRow("empty body") << post("") << 200 << notJson << json << 0;
        QTest::newRow("not json") << post("cmd=cloudSoft") << 200 << notJson << json << 0;
        QTest::newRow("truncated") << post(R"({"cmd":"cloudSoft","data":{)") << 200 << notJson << json << 0;
        QTest::newRow("array") << post(R"([{"cmd":"cloudSoft"}])") << 200 << notJson << json << 0;
        QTest::newRow("string") << post(R"("cloudSoft")") << 200 << notJson << json << 0;
        QTest::newRow("handler throws") << post(R"({"cmd":"cloudSoft","data":{"method":"throw"}})") << 500
                                        << QJsonObject{{"code", 500}, {"msg", "服务内部错误"}} << json << 1;
        QTest::newRow("one byte over") << padded(4097) << 413 << tooLarge << QByteArray("Connection: close") << 0;
        QTest::newRow("far over") << padded(1024 * 1024) << 413 << tooLarge << QByteArray("Connection: close") << 0;
        // Only the headers are sent: the refusal must not wait for the body.
        QTest::newRow("declared length over") << request("POST", "/cloud", "Content-Length: 9000000\r\n") << 413 << tooLarge
                                              << QByteArray("Connection: close") << 0;
        QTest::newRow("chunks over") << chunked({QByteArray(0x800, ' '), QByteArray(0x800, ' '), QByteArray(0x800, ' ')}) << 413
                                     << tooLarge << QByteArray("Connection: close") << 0;
        QTest::newRow("health") << request("GET", "/health") << 200 << QJsonObject{{"status", "ok"}} << json << 0;
        QTest::newRow("HEAD health: no body") << request("HEAD", "/health") << 200 << QJsonObject() << QByteArray("Content-Length: 15") << 0;
        QTest::newRow("GET cloud") << request("GET", "/cloud") << 405 << notAllowed << QByteArray("Allow: ") << 0;
        QTest::newRow("POST health") << request("POST", "/health", "Content-Length: 0\r\n") << 405 << notAllowed
                                     << QByteArray("Allow: ") << 0;
        QTest::newRow("unknown") << request("GET", "/index.html") << 404 << notFound << json << 0;
        QTest::newRow("below cloud") << request("GET", "/cloud/x") << 404 << notFound << json << 0;
    }
    void answers()
    {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, header);
        const RawResponse r = exchange(port(), request);
        QTEST(r.status, "status");
        QTEST(r.json(), "json");
        QVERIFY2(r.headers.contains(header), r.headers.constData());
        QTEST(handler.handled(), "handled");
        if (request.startsWith("HEAD"))
            QVERIFY(r.body.isEmpty());
        QCOMPARE(exchange(port(), post(smallEnvelope)).json(), smallReply);
    }

    void workerThreadsBoundConcurrency()
    {
        std::unique_ptr<CloudHttpServer> narrow = handler.serve(2, 4096);
        QVERIFY(narrow->isRunning());
        handler.delayMs = 300;
        const quint16 p = quint16(narrow->port());
        QThreadPool pool; // all six clients at once, whatever the core count
        pool.setMaxThreadCount(6);
        QList<QFuture<int>> clients;
        for (int i = 0; i < 6; ++i)
            clients << QtConcurrent::run(&pool, [p] { return exchange(p, post(smallEnvelope)).status; });
        for (QFuture<int> &c : clients) {
            QTRY_VERIFY_WITH_TIMEOUT(c.isFinished(), 20000);
            QCOMPARE(c.result(), 200);
        }
        QCOMPARE(handler.handled(), 6);
        QCOMPARE(handler.mostInside.load(), 2);
    }

    void stopFinishesRequestsInProgress()
    {
        std::unique_ptr<CloudHttpServer> stopping = handler.serve(2, 4096);
        QVERIFY(stopping->isRunning());
        handler.delayMs = 3000;
        const quint16 p = quint16(stopping->port());
        QFuture<RawResponse> client = QtConcurrent::run([p] { return exchange(p, post(smallEnvelope)); });
        QVERIFY(handler.entered.tryAcquire(1, 10000));
        CloudHttpServer *raw = stopping.get();
        QFuture<void> stopper = QtConcurrent::run([raw] { raw->stop(); });
        // While it drains, new requests are turned away with a readable reply.
        QTRY_VERIFY_WITH_TIMEOUT(raw->isStopping(), 5000);
        const RawResponse refused = exchange(p, post(smallEnvelope));
        QCOMPARE(refused.status, 503);
        QCOMPARE(refused.json(), (QJsonObject{{"code", 503}, {"msg", "服务正在停止，请稍后重试"}}));
        QTRY_VERIFY_WITH_TIMEOUT(stopper.isFinished(), 15000);
        QVERIFY(!stopping->isRunning());
        // Also orders the stopper's last step before the server is deleted.
        QVERIFY(!stopping->isStopping());
        QVERIFY(client.isFinished());
        QCOMPARE(client.result().status, 200);
        QCOMPARE(client.result().json(), smallReply);
        QCOMPARE(handler.handled(), 1);
        // Nothing listens any more.
        QTcpSocket late;
        late.connectToHost(QHostAddress::LocalHost, p);
        QVERIFY(!late.waitForConnected(2000));
    }

    // Replies are written by the server's own writer; clients parse them
    // as Qt wrote them before, so the bytes must not differ.
    void writesWhatQtWrites_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QString odd = QStringLiteral("\"\\/\b\f\n\r\t\x01\x1f\x7f é价😀 end");
        odd += QChar(0xD800) + QStringLiteral("x") + QChar(0xDC00) + QChar(0xFFFE) + QChar(0xD83D);
        QTest::newRow("escapes, UTF-8, lone surrogates") << QJsonValue(QJsonObject{{odd, odd}, {"", ""}});
        const QString chinese = QString(3000, QChar(0x4ef7)) + odd;
        const QString quoted = QString(3000, QLatin1Char('a')) + QString(3000, QLatin1Char('"'));
        QTest::newRow("long texts") << QJsonValue(QJsonArray{QString(3000, QChar(1)), chinese, quoted});
        const double numbers[] = {0.0, -0.0, 1, -42, 1000, 1e15, 9007199254740992.0, 9007199254740993.0, 1e17,
                                  9.2e18, 1.8e19, 1e20, 1e21, 0.1, -2.5e-7, 123456.789, 1.0 / 3, qInf(), qQNaN()};
        QJsonArray array;
        for (double d : numbers)
            array.append(d);
        array.append(qint64(9223372036854775807LL));
        array.append(qint64(-9007199254740993LL));
        QTest::newRow("numbers") << QJsonValue(array);
        QTest::newRow("nested, empty, literals")
            << QJsonValue(QJsonObject{{"b", QJsonArray{QJsonObject(), QJsonArray(), true, false, QJsonValue()}},
                                      {"a", QJsonObject{{"z", QJsonArray{QJsonArray{1}}}, {"价", "值"}}}});
    }
    void writesWhatQtWrites()
    {
        QFETCH(QJsonValue, value);
        const QJsonArray wrapped{value};
        std::string written;
        CompactJson::append(wrapped, written);
        QCOMPARE(QByteArray::fromStdString(written), QJsonDocument(wrapped).toJson(QJsonDocument::Compact));
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
};

QTEST_MAIN(TestCloudHttpServer)
#include "tst_cloudhttpserver.moc"
