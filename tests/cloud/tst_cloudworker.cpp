#include "hostfixture.h"

#include <cloud/cloudworkerrequest.h>

#include <hostapi/ltdinfo.h>

#include <QJsonArray>
#include <QPointer>
#include <QSemaphore>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <memory>

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

class TestCloudWorker : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup()
    {
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QCoreApplication::processEvents();
        fx.reset();
    }

    void newestReplyWinsWhenOlderArrivesLast()
    {
        QWidget dialog;
        auto *worker = new CloudWorkerRequest(&dialog);
        QSignalSpy spy(worker, &CloudWorkerRequest::signalReply);
        Gate first, second;
        const unsigned a = worker->start(first.job(QStringLiteral("old")));
        const unsigned b = worker->start(second.job(QStringLiteral("new")));
        QVERIFY(b > a);
        second.open->release();
        QTRY_COMPARE(spy.size(), 1);
        first.open->release();
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTest::qWait(30);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().at(0).toUInt(), b);
        QCOMPARE(spy.first().at(1).toJsonObject().value("data").toString(), QStringLiteral("new"));
        QCOMPARE(worker->lastReply().value("data").toString(), QStringLiteral("new"));
    }

    void staleReplyArrivingFirstIsDropped()
    {
        QWidget dialog;
        auto *worker = new CloudWorkerRequest(&dialog);
        QSignalSpy spy(worker, &CloudWorkerRequest::signalReply);
        Gate first, second;
        worker->start(first.job(QStringLiteral("old")));
        const unsigned b = worker->start(second.job(QStringLiteral("new")));
        first.open->release();
        QTest::qWait(50);
        QCOMPARE(spy.size(), 0);
        second.open->release();
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(spy.first().at(0).toUInt(), b);
        QCOMPARE(spy.first().at(1).toJsonObject().value("data").toString(), QStringLiteral("new"));
    }

    void discardedAndUndeliverableRepliesAreDropped()
    {
        QWidget dialog;
        auto *worker = new CloudWorkerRequest(&dialog);
        QSignalSpy spy(worker, &CloudWorkerRequest::signalReply);
        Gate g, nothing;
        worker->start(g.job(QStringLiteral("x")));
        worker->discardPending();
        g.open->release();
        worker->start(nothing.job(QStringLiteral("y"), false));
        nothing.open->release();
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTest::qWait(30);
        QCOMPARE(spy.size(), 0);
    }

    void receiverDeletedBeforeReply()
    {
        auto *dialog = new QWidget;
        QPointer<CloudWorkerRequest> worker = new CloudWorkerRequest(dialog);
        int delivered = 0;
        connect(worker, &CloudWorkerRequest::signalReply, [&delivered] { ++delivered; });
        Gate g;
        worker->start(g.job(QStringLiteral("late")));
        delete dialog;
        QVERIFY(worker.isNull());
        g.open->release();
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTest::qWait(30);
        QCOMPARE(delivered, 0);
    }

    void requestRunsThroughHostChannel()
    {
        QWidget dialog;
        auto *worker = new CloudWorkerRequest(&dialog);
        QSignalSpy spy(worker, &CloudWorkerRequest::signalReply);
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        fx->channel().replyOk(QJsonArray{1, 2});
        worker->start(CloudRequest(&server, QStringLiteral("getppqd")).set(QStringLiteral("qdbm"), "010101"));
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(spy.first().at(1).toJsonObject().value("data").toArray().size(), 2);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 (QJsonObject{{"method", "getppqd"}, {"qdbm", "010101"}}));
    }

    void unansweredRequestDeliversEmptyObject()
    {
        QWidget dialog;
        auto *worker = new CloudWorkerRequest(&dialog);
        QSignalSpy spy(worker, &CloudWorkerRequest::signalReply);
        LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
        fx->channel().replyBytes("not json");
        worker->start(CloudRequest(&server, QStringLiteral("getppqd")));
        QTRY_COMPARE(spy.size(), 1);
        QVERIFY(spy.first().at(1).toJsonObject().isEmpty());
    }

    void throwingJobIsReportedNotDelivered()
    {
        QWidget dialog;
        auto *worker = new CloudWorkerRequest(&dialog);
        QSignalSpy spy(worker, &CloudWorkerRequest::signalReply);
        worker->start([](QJsonObject &) -> bool { throw std::runtime_error("boom"); });
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTest::qWait(30);
        QCOMPARE(spy.size(), 0);
        QTRY_COMPARE(fx->exceptionReports().size(), 1);
        QVERIFY(fx->exceptionReports().first().contains(QStringLiteral("boom")));
    }
};

QTEST_MAIN(TestCloudWorker)
#include "tst_cloudworker.moc"
