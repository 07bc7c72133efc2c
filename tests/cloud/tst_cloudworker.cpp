#include "hosttestcase.h"

#include <cloud/cloudworkerrequest.h>

#include <hostapi/ltdinfo.h>

#include <QJsonArray>
#include <QPointer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

// A job that blocks until the test lets it go, then answers `text`.
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

class TestCloudWorker : public HostTestCase
{
    Q_OBJECT
private:
    QWidget dialog;
    CloudWorkerRequest *worker = nullptr;
    std::unique_ptr<QSignalSpy> spy;

    QString deliveredText(int i) const { return spy->at(i).at(1).value<CloudReply>().data().toString(); }
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
        HostTestCase::cleanup();
    }

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
        QCOMPARE(deliveredText(0), QStringLiteral("new"));
        QCOMPARE(worker->lastReply().data().toString(), QStringLiteral("new"));
    }

    void discardedAndUndeliverableRepliesAreDropped()
    {
        Gate g, nothing;
        worker->start(g.job(QStringLiteral("x")));
        worker->discardPending();
        g.open->release();
        worker->start(nothing.job(QStringLiteral("y"), false));
        nothing.open->release();
        settle();
        QCOMPARE(spy->size(), 0);
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

    void requestRunsThroughTheHostChannel_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("answered");
        QTest::newRow("answered") << QByteArray(R"({"code":0,"allCount":2,"data":[1,2]})") << true;
        QTest::newRow("not json") << QByteArray("not json") << false;
    }
    void requestRunsThroughTheHostChannel()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, answered);
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        fx->channel().replyBytes(bytes);
        worker->start(CloudRequest(&server, QStringLiteral("getppqd")).set(QStringLiteral("qdbm"), "010101"));
        QTRY_COMPARE(spy->size(), 1);
        const CloudReply reply = spy->first().at(1).value<CloudReply>();
        QCOMPARE(reply.answered(), answered);
        QCOMPARE(reply.value("allCount").toInt(), answered ? 2 : 0);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 (QJsonObject{{"method", "getppqd"}, {"qdbm", "010101"}}));
    }

    void throwingJobIsReportedUnderTheCaller()
    {
        const int line = __LINE__ + 1;
        worker->start([](QJsonObject &) -> bool { throw std::runtime_error("boom"); });
        settle();
        QCOMPARE(spy->size(), 0);
        QTRY_COMPARE(fx->exceptionReports().size(), 1);
        QVERIFY2(fx->exceptionReports().first().endsWith(
                     QStringLiteral("boom (VelDqqdznzj:%1 QWidget::throwingJobIsReportedUnderTheCaller)").arg(line)),
                 qPrintable(fx->exceptionReports().first()));
    }
};

QTEST_MAIN(TestCloudWorker)
#include "tst_cloudworker.moc"
