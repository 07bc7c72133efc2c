#include "cloudjson.h"
#include "hosttestcase.h"

#include <cloud/cloudasyncrequest.h>
#include <cloud/cloudexchange.h>
#include <cloud/cloudrequest.h>
#include <cloud/cloudworkerrequest.h>

#include <hostapi/cloudchannel.h>
#include <hostapi/cloudenvelope.h>
#include <hostapi/datalibrary.h>
#include <hostapi/jsonnesting.h>
#include <hostapi/ltdinfo.h>

#include <QPointer>
#include <QRegularExpression>
#include <QSemaphore>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <functional>
#include <stdexcept>

namespace {
using Build = std::function<QJsonObject()>;

QJsonObject envelope(const QString &token, const QJsonObject &data)
{
    return cloudjson::envelope(token, data, 16);
}

// A worker job that blocks until the test lets it go, then answers `text`.
struct Gate
{
    std::shared_ptr<QSemaphore> open = std::make_shared<QSemaphore>(0);
    CloudWorkerRequest::Job job(const QString &text, bool deliver = true)
    {
        auto sem = open;
        return [sem, text, deliver](QJsonObject &reply) {
            sem->acquire();
            reply = QJsonObject{{"code", 0}, {"data", text}};
            return deliver;
        };
    }
};

}

Q_DECLARE_METATYPE(Build)

class TestCloudRequest : public HostTestCase
{
    Q_OBJECT
public slots:
    void onAsyncReply(const QJsonObject &reply) { asyncReplies << reply; }

public:
    QList<QJsonObject> asyncReplies;

private:
    QWidget dialog;
    CloudWorkerRequest *worker = nullptr;
    std::unique_ptr<QSignalSpy> spy;

    static void settle()
    {
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTest::qWait(30);
    }

private slots:
    void init()
    {
        HostTestCase::init();
        worker = new CloudWorkerRequest(GuardSite("VelDqqdznzj", &dialog));
        spy = std::make_unique<QSignalSpy>(worker, &CloudWorkerRequest::signalReply);
    }
    void cleanup()
    {
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QCoreApplication::processEvents();
        spy.reset();
        delete worker;
        DataLibrary::Instance()->clearAppType();
        asyncReplies.clear();
        HostTestCase::cleanup();
    }

    void exactJson_data()
    {
        QTest::addColumn<Build>("build");
        QTest::addColumn<QJsonObject>("expected");
        QTest::newRow("chapter tree, enterprise") << Build([] {
            LtdInfo ent("华东企业", "ent_tok", 2, 9, true);
            return CloudRequest::tiered(&ent, "getchaptertreeforperson", "getchaptertreeforkv",
                                        "getchaptertreeforenterprise")
                .withEnterpriseQiyeId().set("zjid", "").set("bzqdkid", "lib1").set("sfjzzsm", 1).toJson();
        }) << envelope("ent_tok", {{"method", "getchaptertreeforenterprise"}, {"qiyeID", 9}, {"zjid", ""},
                                   {"bzqdkid", "lib1"}, {"sfjzzsm", 1}});
        QTest::newRow("chapter tree, personal: no qiyeID") << Build([] {
            LtdInfo person("个人云", "kv_token_user", 0, 9, true);
            return CloudRequest::tiered(&person, "a", "b", "c").withEnterpriseQiyeId().toJson();
        }) << envelope("kv_token_user", {{"method", "a"}});
        QTest::newRow("library style") << Build([] {
            LtdInfo server("企业A", "ent_a", -1, 31, true);
            return CloudRequest::library(&server, "editNZQDK")
                .withOperation(0, QJsonObject{{"qdkid", ""}, {"qdkmc", "新库"}})
                .toJson();
        }) << envelope("ent_a", {{"method", "editNZQDK"}, {"reqeuestype", -1}, {"qyid", 31}, {"czlx", 0},
                                 {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", "新库"}}}});
        QTest::newRow("asynchronous: no token; the host's app type") << Build([] {
            DataLibrary::Instance()->setAppType(23);
            return CloudRequest::withoutToken("personchapterinfoforuploadqd").toJson();
        }) << cloudjson::envelope(QString(), cloudjson::method("personchapterinfoforuploadqd"), 23);
    }
    void exactJson()
    {
        QFETCH(Build, build);
        QTEST(build(), "expected");
    }

    // The module's requests and the host's own calls follow one tier rule.
    void tierRule_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<QString>("method");
        QTest::addColumn<int>("qiyeID");
        QTest::addColumn<int>("usetype");
        QTest::newRow("personal") << "kv_token_user" << "xforperson" << -1 << 1;
        QTest::newRow("korvane") << "kv_token" << "xforkv" << 0 << 3;
        QTest::newRow("enterprise") << "ent_session_9" << "xforenterprise" << 77 << 2;
        QTest::newRow("case differs") << "KV_TOKEN" << "xforenterprise" << 77 << 2;
        QTest::newRow("korvane big data") << "kv_token_bigdata" << "xforenterprise" << 77 << 2;
    }
    void tierRule()
    {
        QFETCH(QString, token);
        QFETCH(int, qiyeID);
        QFETCH(int, usetype);
        LtdInfo server(QStringLiteral("srv"), token, 0, 77, true);
        const CloudRequest r = CloudRequest::tiered(&server, "xforperson", "xforkv", "xforenterprise").withTierFields();
        QTEST(r.method(), "method");
        const QJsonObject host = CloudEnvelope::tiered(r.method(), server).value("data").toObject();
        for (const QJsonObject &data : {r.data(), host}) {
            QCOMPARE(data.value("qiyeID").toInt(-99), qiyeID);
            QCOMPARE(data.value("usetype").toInt(-99), usetype);
        }
    }

    void replyReading_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("done");
        QTest::addColumn<QStringList>("shown");
        QTest::newRow("ok with array") << QByteArray(R"({"code":0,"msg":"","data":[{"mc":"库1","id":"1"}]})") << true
                                       << QStringList();
        QTest::newRow("a page beside its data") << QByteArray(R"({"code":0,"allCount":41,"pageRowCount":20,"data":[]})")
                                                << true << QStringList();
        QTest::newRow("ok without data") << QByteArray(R"({"code":0})") << true << QStringList();
        QTest::newRow("no code is success") << QByteArray(R"({"msg":"x","data":7})") << true << QStringList();
        QTest::newRow("refused") << QByteArray(R"({"code":-1,"msg":"没有权限 ， 请联系管理员","data":[1]})") << false
                                 << QStringList{QStringLiteral("没有权限 ， 请联系管理员")};
        QTest::newRow("empty bytes") << QByteArray() << false << QStringList();
        QTest::newRow("garbage") << QByteArray("<html>502</html>") << false << QStringList();
        QTest::newRow("json array") << QByteArray("[0]") << false << QStringList();
        QTest::newRow("repeated key") << QByteArray(R"({"code":0,"data":[1],"data":[2]})") << false << QStringList();
    }
    // The same bytes through the dialog's exchange and through a worker.
    void replyReading()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, done);
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        const QJsonObject object = JsonNesting::parse(bytes).object();
        fx->channel().replyBytes(bytes);
        const auto reply = CloudExchange(GuardSite("Xmytz", &dialog)).call(CloudRequest(&server, "m"));
        QCOMPARE(reply.has_value(), done);
        if (done)
            QCOMPARE(reply->object(), object);
        fx->channel().replyBytes(bytes);
        worker->start(CloudRequest(&server, QStringLiteral("getppqd")).set(QStringLiteral("qdbm"), "010101"));
        QTRY_COMPARE(spy->size(), 1);
        QCOMPARE(spy->first().at(1).value<CloudReply>().object(), object);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 (QJsonObject{{"method", "getppqd"}, {"qdbm", "010101"}}));
        QTEST(fx->messageTexts(), "shown"); // the worker shows nothing
        for (const MessageBoxRequest &m : fx->messages()) {
            QCOMPARE(m.parent.data(), &dialog);
            QCOMPARE(m.title, QString());
            QCOMPARE(m.kind, 0);
        }
        QCOMPARE(fx->channel().requests().size(), 2);
    }

    void failureIsReportedUnderTheCallingDialog()
    {
        fx->channel().failWith("down");
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        QVERIFY(!CloudExchange(GuardSite("Xmytz", &dialog)).call(CloudRequest(&server, "m")));
        QCOMPARE(fx->exceptionReports().size(), 1);
        QVERIFY2(fx->exceptionReports().first().contains(QRegularExpression(R"(down \(Xmytz:\d+ QWidget::call\)$)")),
                 qPrintable(fx->exceptionReports().first()));
        QVERIFY(fx->messages().isEmpty());
    }

    void asynchronousChannel()
    {
        ServicesUtil::publish();
        QVERIFY(CloudAsyncRequest::service());
        CloudAsyncRequest::listen(this, &TestCloudRequest::onAsyncReply);
        CloudAsyncRequest::listen(this, &TestCloudRequest::onAsyncReply); // no double delivery
        fx->channel().replyOk(QJsonArray{QStringLiteral("章节")});
        QVERIFY(CloudAsyncRequest::send(CloudRequest::withoutToken(QStringLiteral("personchapterinfoforuploadqd"))));
        QTRY_COMPARE(asyncReplies.size(), 1);
        QCOMPARE(asyncReplies.first().value("data").toArray().first().toString(), QStringLiteral("章节"));
        QVERIFY(!fx->channel().lastRequest().contains(QStringLiteral("orgin_token")));
        QTest::qWait(20);
        QCOMPARE(asyncReplies.size(), 1);
        QObject::disconnect(CloudAsyncRequest::service(), nullptr, this, nullptr);

        qApp->setProperty("ServicesUtil", QVariant());
        QCOMPARE(CloudAsyncRequest::service(), nullptr);
        QVERIFY(!CloudAsyncRequest::send(CloudRequest::withoutToken(QStringLiteral("m"))));
        QCOMPARE(fx->channel().requests().size(), 1);
    }

    // Worker requests: the newest reply wins.
    void newestReplyWins_data()
    {
        QTest::addColumn<bool>("olderArrivesLast");
        QTest::newRow("older arrives last") << true;
        QTest::newRow("older arrives first") << false;
    }
    void newestReplyWins()
    {
        QFETCH(bool, olderArrivesLast);
        Gate first, second;
        const unsigned a = worker->start(first.job(QStringLiteral("old")));
        const unsigned b = worker->start(second.job(QStringLiteral("new")));
        QVERIFY(b > a);
        (olderArrivesLast ? second : first).open->release();
        QTRY_COMPARE(CloudWorkerRequest::runningWorkers(), 1);
        QTest::qWait(30);
        QCOMPARE(spy->size(), olderArrivesLast ? 1 : 0);
        (olderArrivesLast ? first : second).open->release();
        settle();
        QCOMPARE(spy->size(), 1);
        QCOMPARE(spy->first().at(0).toUInt(), b);
        QCOMPARE(spy->first().at(1).value<CloudReply>().data().toString(), QStringLiteral("new"));
        QCOMPARE(worker->lastReply().data().toString(), QStringLiteral("new"));
    }

    void ownerDeletedBeforeReply()
    {
        auto *owner = new QWidget;
        QPointer<CloudWorkerRequest> mine = new CloudWorkerRequest(GuardSite("VelDqqdznzj", owner));
        int delivered = 0;
        connect(mine, &CloudWorkerRequest::signalReply, [&delivered] { ++delivered; });
        Gate g;
        mine->start(g.job(QStringLiteral("late")));
        delete owner;
        QVERIFY(mine.isNull());
        g.open->release();
        settle();
        QCOMPARE(delivered, 0);
    }

    void droppedReplies()
    {
        Gate discarded, nothing;
        worker->start(discarded.job(QStringLiteral("x")));
        worker->discardPending();
        discarded.open->release();
        worker->start(nothing.job(QStringLiteral("y"), false));
        nothing.open->release();
        const int line = __LINE__ + 1;
        worker->start([](QJsonObject &) -> bool { throw std::runtime_error("boom"); });
        settle();
        QCOMPARE(spy->size(), 0);
        // A job that throws is reported as the function that started it.
        QCOMPARE(fx->exceptionReports().size(), 1);
        QVERIFY2(fx->exceptionReports().first().endsWith(
                     QStringLiteral("boom (VelDqqdznzj:%1 QWidget::droppedReplies)").arg(line)),
                 qPrintable(fx->exceptionReports().first()));
    }
};

QTEST_MAIN(TestCloudRequest)
#include "tst_cloudrequest.moc"
