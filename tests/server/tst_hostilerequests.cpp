#include "hosttestcase.h"

#include <hostapi/httpcloudchannel.h>
#include <server/cloudhttpserver.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray repeated(const char *text, int times) { return QByteArray(text).repeated(times); }

// A body whose "data" holds `extra` (the envelope and "data" are two levels).
QByteArray body(const QByteArray &extra)
{
    return R"({"cmd":"cloudSoft","app_type":1,"orgin_token":"kv_token","data":{"method":"getserverlist","x":)" + extra + "}}";
}

// An object of keys "k0".."k<n-1>", then "k<again>" once more when given.
QByteArray keys(int n, int again = -1)
{
    QByteArray text = "{";
    for (int i = 0; i < n; ++i)
        text += "\"k" + QByteArray::number(i) + "\":" + QByteArray::number(i) + ",";
    return text + (again < 0 ? QByteArray("\"end\":0}") : "\"k" + QByteArray::number(again) + "\":[]}");
}

QByteArray post(const QByteArray &body, const QByteArray &session = QByteArray())
{
    return "POST /cloud HTTP/1.1\r\nHost: x\r\nConnection: close\r\nX-Velora-Session: " + session
           + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

// Status and JSON body of one request on its own connection.
QPair<int, QJsonObject> exchange(quint16 port, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    socket.write(request); // sent once connected
    QByteArray data;
    while (socket.waitForReadyRead(10000))
        data += socket.readAll();
    return {data.mid(9, 3).toInt(), QJsonDocument::fromJson(data.mid(data.indexOf("\r\n\r\n") + 4)).object()};
}

} // namespace

class TestHostileRequests : public HostTestCase
{
    Q_OBJECT
    QTemporaryDir dataDir;
    std::unique_ptr<CloudService> service;
    std::unique_ptr<CloudHttpServer> server;
    QByteArray session;

    // The demo user's call on the personal tier.
    QJsonObject call(QJsonObject data)
    {
        const QJsonObject envelope{{"cmd", "cloudSoft"}, {"app_type", 1}, {"orgin_token", "kv_token_user"}, {"data", data}};
        return exchange(quint16(server->port()), post(QJsonDocument(envelope).toJson(), session)).second;
    }

private slots:
    void initTestCase()
    {
        service = std::make_unique<CloudService>(dataDir.path(), CloudService::Seed::Minimal);
        CloudService *svc = service.get();
        // "deepreply" answers arrays nested "depth" levels, as a hostile server would.
        server = std::make_unique<CloudHttpServer>([svc](const QJsonObject &request, const QString &s) {
            const QJsonObject data = request.value("data").toObject();
            if (data.value("method") != "deepreply")
                return svc->handle(request, s);
            QJsonValue nested = 1;
            for (int i = 0; i < data.value("depth").toInt(); ++i)
                nested = QJsonArray{nested};
            return QJsonObject{{"code", 0}, {"data", nested}};
        });
        QVERIFY(server->start(QStringLiteral("127.0.0.1:0")));
        session = call({{"method", "login"}, {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}})
                      .value("data").toObject().value("session").toString().toUtf8();
        QVERIFY(!session.isEmpty());
        // A chain 200 chapters deep in library 1, as an older database may hold.
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("chain"));
            db.setDatabaseName(dataDir.filePath(QStringLiteral("velora-cloud.db")));
            QVERIFY(db.open());
            QVERIFY(QSqlQuery(db).exec(QStringLiteral(
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200)"
                " INSERT INTO chapters(id, library_id, parent_id, name)"
                " SELECT 'd' || i, 1, CASE i WHEN 1 THEN '' ELSE 'd' || (i - 1) END, 'deep' FROM n")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("chain"));
    }

    void hostileBodies_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("msg");
        const QString deep = QStringLiteral("请求内容嵌套超过128层的上限");
        const QString fine = QStringLiteral("成功");
        QTest::newRow("500 arrays") << post(body(repeated("[", 500) + repeated("]", 500))) << 200 << 1 << deep;
        QTest::newRow("350 objects") << post(body(repeated("{\"a\":", 350) + "1" + repeated("}", 350))) << 200 << 1 << deep;
        QTest::newRow("one over") << post(body(repeated("[", 127) + repeated("]", 127))) << 200 << 1 << deep;
        QTest::newRow("at the limit") << post(body(repeated("[", 126) + repeated("]", 126))) << 200 << 0 << fine;
        QTest::newRow("brackets in a string") << post(body("\"\\\"" + repeated("[{", 300) + "\"")) << 200 << 0 << fine;
        QTest::newRow("escaped backslash ends the string")
            << post(body("[\"\\\\\"," + repeated("[", 126) + repeated("]", 127))) << 200 << 1 << deep;
        const QString twice = QStringLiteral("请求内容的同一对象中有重复的键");
        QTest::newRow("key repeated, first holds an array") << post(body(R"({"a":[1],"a":2})")) << 200 << 1 << twice;
        QTest::newRow("key repeated in the envelope") << post(R"({"data":{},"data":{}})") << 200 << 1 << twice;
        QTest::newRow("key repeated, escaped") << post(body(R"({"a":1,"\u0061":{}})")) << 200 << 1 << twice;
        QTest::newRow("40 keys") << post(body(keys(40))) << 200 << 0 << fine;
        QTest::newRow("40 keys, the first repeated last") << post(body(keys(40, 0))) << 200 << 1 << twice;
        QTest::newRow("one key in sibling and nested objects")
            << post(body(R"([{"a":{"a":1}},{"a":"a","b":["a","a"]}])")) << 200 << 0 << fine;
        QTest::newRow("chunk size not hex")
            << QByteArray("POST /cloud HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n{}\r\n0\r\n\r\n")
            << 400 << 400 << QStringLiteral("请求内容不完整或格式错误");
    }

    void hostileBodies()
    {
        QFETCH(QByteArray, request);
        QFETCH(int, code);
        QFETCH(QString, msg);
        const QPair<int, QJsonObject> r = exchange(quint16(server->port()), request);
        QTEST(r.first, "status");
        QCOMPARE(r.second.value("code").toInt(-1), code);
        QCOMPARE(r.second.value("msg").toString(), msg);
    }

    void deepStoredTreeLoadsCut()
    {
        const QJsonObject r = call({{"method", "getchaptertreeforperson"}, {"bzqdkid", "1"}, {"zjid", ""}, {"sfjzzsm", "1"}});
        QCOMPARE(r.value("code").toInt(-1), 0);
        QJsonObject level = r.value("data").toArray().first().toObject(); // "d1", sorted first
        for (int depth = 1; depth < 32; ++depth)
            level = level.value("children").toArray().first().toObject();
        QCOMPARE(level.value("_id").toString(), QStringLiteral("d32"));
        QCOMPARE(level.value("state").toString(), QStringLiteral("closed"));
        QVERIFY(!level.contains("children"));
    }

    void chapterDepthIsLimitedOnWrite_data()
    {
        QTest::addColumn<QString>("zjid");
        QTest::addColumn<QJsonArray>("zjlj");
        QTest::addColumn<bool>("saved");
        QTest::newRow("to the limit") << "d30" << QJsonArray{"a", " ", "b"} << true;
        QTest::newRow("one level too deep") << "d30" << QJsonArray{"a", "b", "c"} << false;
        QTest::newRow("into a deeper old chapter") << "d40" << QJsonArray{} << true;
        QTest::newRow("below a deeper old chapter") << "d40" << QJsonArray{"a"} << false;
    }

    void chapterDepthIsLimitedOnWrite()
    {
        QFETCH(QString, zjid);
        QFETCH(QJsonArray, zjlj);
        QFETCH(bool, saved);
        const QString task = QStringLiteral("t-") + QTest::currentDataTag();
        QCOMPARE(call({{"method", "listsavingtaskbeginforperson"}, {"qiyeID", -1}, {"mark", "0"}, {"taskid", task},
                       {"qdcount", "1"}, {"bzqdkid", "1"}, {"zjid", zjid}}).value("code").toInt(-1), 0);
        const QJsonObject bill{{"guidb", "g"}, {"qdbh", "010101001001"}, {"xmmc", "平整场地"}, {"zjlj", zjlj}};
        const QJsonObject r = call({{"method", "uploadsavingtaskbills"}, {"taskid", task}, {"bills", QJsonArray{bill}}});
        QCOMPARE(r.value("msg").toString(), saved ? QStringLiteral("成功") : QStringLiteral("章节层级不能超过32级"));
        QCOMPARE(r.value("data").toObject().value("saved").toInt(), saved ? 1 : 0);
    }

    // Connections that stop mid-header or mid-body hold neither /health nor a
    // logged-in request, and are dropped after the header time-out.
    void stalledClientsLockNobodyOut()
    {
        std::vector<std::unique_ptr<QTcpSocket>> stalled;
        for (int i = 0; i < 64; ++i) {
            stalled.push_back(std::make_unique<QTcpSocket>());
            stalled.back()->connectToHost(QHostAddress::LocalHost, quint16(server->port()));
            QVERIFY(stalled.back()->waitForConnected(5000));
            stalled.back()->write(i % 2 ? "POST /cloud HTTP/1.1\r\nHost: x\r\nContent-Length: 100\r\n\r\n{\"cmd\""
                                        : "POST /cloud HTTP/1.1\r\nHost: x\r\nX-Velo");
            QVERIFY(stalled.back()->waitForBytesWritten(5000));
        }
        QTest::qWait(200);
        QCOMPARE(exchange(quint16(server->port()), "GET /health HTTP/1.1\r\nHost: x\r\nConnection: close\r\n\r\n").first, 200);
        QCOMPARE(call({{"method", "getserverlist"}}).value("data").toArray().size(), 7);
        for (const auto &socket : stalled)
            QVERIFY(socket->state() == QAbstractSocket::UnconnectedState || socket->waitForDisconnected(8000));
    }

    void deepReplyIsNoReplyToTheHost_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<bool>("delivered");
        QTest::newRow("at the limit") << 127 << true; // the reply object is one more level
        QTest::newRow("one over") << 128 << false;
    }

    void deepReplyIsNoReplyToTheHost()
    {
        QFETCH(int, depth);
        QFETCH(bool, delivered);
        HttpCloudChannel channel{QUrl(server->baseUrl())};
        std::unique_ptr<CloudCall> call(channel.start({{"data", QJsonObject{{"method", "deepreply"}, {"depth", depth}}}}, QString()));
        QTRY_VERIFY(call->isFinished());
        QCOMPARE(call->reply().isEmpty(), !delivered);
    }
};

QTEST_MAIN(TestHostileRequests)
#include "tst_hostilerequests.moc"
