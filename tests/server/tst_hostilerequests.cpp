#include "hosttestcase.h"

#include <hostapi/httpcloudchannel.h>
#include <server/cloudhttpserver.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

QByteArray repeated(const char *text, int times)
{
    return QByteArray(text).repeated(times);
}

// A body whose "data" holds `extra` (the envelope and "data" are two levels).
QByteArray body(const QByteArray &extra)
{
    return R"({"cmd":"cloudSoft","app_type":1,"orgin_token":"kv_token","data":{"method":"getserverlist","x":)" + extra + "}}";
}

QByteArray post(const QByteArray &body, const QByteArray &session = QByteArray())
{
    return "POST /cloud HTTP/1.1\r\nHost: x\r\nConnection: close\r\nX-Velora-Session: " + session
           + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

QByteArray chunked(const QByteArray &chunks)
{
    return "POST /cloud HTTP/1.1\r\nHost: x\r\nConnection: close\r\nTransfer-Encoding: chunked\r\n\r\n" + chunks;
}

// Status and JSON body of one request on its own connection.
QPair<int, QJsonObject> exchange(quint16 port, const QByteArray &request)
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    socket.waitForConnected(5000);
    socket.write(request);
    QByteArray data;
    while (socket.waitForReadyRead(10000))
        data += socket.readAll();
    return {data.mid(9, 3).toInt(), QJsonDocument::fromJson(data.mid(data.indexOf("\r\n\r\n") + 4)).object()};
}

const QString tooDeep = QStringLiteral("请求内容嵌套超过128层的上限");

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
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("chain"));
        db.setDatabaseName(dataDir.filePath(QStringLiteral("velora-cloud.db")));
        QVERIFY(db.open());
        QSqlQuery insert(db);
        insert.prepare(QStringLiteral("INSERT INTO chapters(id, library_id, parent_id, name) VALUES(?, 1, ?, 'deep')"));
        for (int i = 1; i <= 200; ++i) {
            insert.addBindValue(QStringLiteral("d%1").arg(i));
            insert.addBindValue(i > 1 ? QStringLiteral("d%1").arg(i - 1) : QString(""));
            QVERIFY(insert.exec());
        }
    }

    void cleanupTestCase()
    {
        QSqlDatabase::removeDatabase(QStringLiteral("chain"));
        server.reset();
        service.reset();
    }

    void hostileBodies_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<int>("status");
        QTest::addColumn<QJsonObject>("reply");
        const QJsonObject refused{{"code", 1}, {"msg", tooDeep}};
        const QJsonObject broken{{"code", 400}, {"msg", QStringLiteral("请求内容不完整或格式错误")}};
        QTest::newRow("500 arrays") << post(body(repeated("[", 500) + repeated("]", 500))) << 200 << refused;
        QTest::newRow("350 objects") << post(body(repeated("{\"a\":", 350) + "1" + repeated("}", 350))) << 200 << refused;
        QTest::newRow("one over") << post(body(repeated("[", 127) + repeated("]", 127))) << 200 << refused;
        QTest::newRow("at the limit") << post(body(repeated("[", 126) + repeated("]", 126))) << 200 << QJsonObject();
        QTest::newRow("brackets in a string") << post(body("\"\\\"" + repeated("[{", 300) + "\"")) << 200 << QJsonObject();
        QTest::newRow("escaped backslash ends the string")
            << post(body("[\"\\\\\"," + repeated("[", 126) + repeated("]", 127))) << 200 << refused;
        QTest::newRow("chunk size not hex") << chunked("zz\r\n{}\r\n0\r\n\r\n") << 400 << broken;
    }

    void hostileBodies()
    {
        QFETCH(QByteArray, request);
        QFETCH(int, status);
        QFETCH(QJsonObject, reply);
        const QPair<int, QJsonObject> r = exchange(quint16(server->port()), request);
        QCOMPARE(r.first, status);
        if (reply.isEmpty())
            QCOMPARE(r.second.value("code").toInt(-1), 0);
        else
            QCOMPARE(r.second, reply);
    }

    void deepStoredTreeLoadsCut_data()
    {
        QTest::addColumn<QString>("zjid");
        QTest::addColumn<QString>("deepest");
        QTest::newRow("whole library") << QString() << "d32";
        QTest::newRow("below a deep chapter") << "d100" << "d132";
    }

    void deepStoredTreeLoadsCut()
    {
        QFETCH(QString, zjid);
        QFETCH(QString, deepest);
        const QJsonObject r = call({{"method", "getchaptertreeforperson"}, {"bzqdkid", "1"}, {"zjid", zjid}, {"sfjzzsm", "1"}});
        QCOMPARE(r.value("code").toInt(-1), 0);
        QJsonObject level;
        for (const QJsonValue &v : r.value("data").toArray())
            if (v.toObject().value("zjmc") == "deep" || !zjid.isEmpty())
                level = v.toObject();
        while (level.contains("children"))
            level = level.value("children").toArray().first().toObject();
        QCOMPARE(level.value("_id").toString(), deepest);
        QCOMPARE(level.value("state").toString(), QStringLiteral("closed"));
    }

    void chapterDepthIsLimitedOnWrite_data()
    {
        QTest::addColumn<QString>("zjid");
        QTest::addColumn<QJsonArray>("zjlj");
        QTest::addColumn<QString>("msg");
        QTest::newRow("to the limit") << "d30" << QJsonArray{"a", " ", "b"} << QStringLiteral("成功");
        QTest::newRow("one level too deep") << "d30" << QJsonArray{"a", "b", "c"} << QStringLiteral("章节层级不能超过32级");
        QTest::newRow("into a deeper old chapter") << "d40" << QJsonArray{} << QStringLiteral("成功");
        QTest::newRow("below a deeper old chapter") << "d40" << QJsonArray{"a"} << QStringLiteral("章节层级不能超过32级");
    }

    void chapterDepthIsLimitedOnWrite()
    {
        QFETCH(QString, zjid);
        QFETCH(QJsonArray, zjlj);
        QFETCH(QString, msg);
        const QString task = QStringLiteral("t-") + QTest::currentDataTag();
        QCOMPARE(call({{"method", "listsavingtaskbeginforperson"}, {"qiyeID", -1}, {"mark", "0"}, {"taskid", task},
                       {"qdcount", "1"}, {"bzqdkid", "1"}, {"zjid", zjid}}).value("code").toInt(-1), 0);
        const QJsonObject bill{{"guidb", "g"}, {"qdbh", "010101001001"}, {"xmmc", "平整场地"}, {"zjlj", zjlj}};
        const QJsonObject r = call({{"method", "uploadsavingtaskbills"}, {"taskid", task}, {"bills", QJsonArray{bill}}});
        QCOMPARE(r.value("msg").toString(), msg);
        QCOMPARE(r.value("data").toObject().value("saved").toInt(), msg == QStringLiteral("成功") ? 1 : 0);
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
        QSignalSpy finished(call.get(), &CloudCall::finished);
        QVERIFY(call->isFinished() || finished.wait(10000));
        QCOMPARE(call->reply().isEmpty(), !delivered);
    }
};

QTEST_MAIN(TestHostileRequests)
#include "tst_hostilerequests.moc"
