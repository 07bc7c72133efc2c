// Intelligent pricing in the host against the real embedded cloud service.
#include "cloudjson.h"
#include "hosttestcase.h"

#include <batchpricing.h>
#include <batchpricingrun.h>
#include <billdetailpanel.h>
#include <compositionwriter.h>
#include <mainwindow.h>
#include <projectdocument.h>

#include <cloud/cloudworkerrequest.h>
#include <smartpricing/tznyzj.h>
#include <smartpricing/veldqqdznzj.h>

#include <hostapi/hostconstants.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QtTest>

using namespace cloudjson;

namespace {
// Price, features, mark and composition of every bill.
QStringList snapshot(const ProjectDocument &project)
{
    QStringList state;
    for (const BaseDataItem *b : project.allBills())
        state << QStringLiteral("%1|%2|%3|%4").arg(b->data(BaseDataItem::UnitPriceRole).toDouble())
                     .arg(b->text(BaseDataItem::FeaturesRole), b->text(BaseDataItem::FontColorRole),
                          b->text(BaseDataItem::CompositionRole));
    return state;
}
}

class TestSmartPricingFlow : public HostTestCase
{
    Q_OBJECT
    QTemporaryDir cloudDir;
    std::shared_ptr<CloudService> service;
    std::unique_ptr<ProjectDocument> project;

private slots:
    void initTestCase()
    {
        service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Full);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
    }
    void init()
    {
        HostTestCase::init();
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        const QJsonObject login = envelope(KvToken, {{"method", "login"}, {"username", ServiceSeed::DemoUser},
                                               {"password", ServiceSeed::DemoPassword}}, 16);
        const QJsonObject data = object(exchange(login));
        Users::Instance()->Kvy()->setLogin(data.value("userid").toVariant().toString(), data.value("username").toString(),
                                           data.value("session").toString());
        project = std::make_unique<ProjectDocument>();
        QString error;
        QVERIFY2(project->loadFile(ProjectDocument::samplePath(), &error), qPrintable(error));
    }

    void batchPricesTheSampleInOneUndoStep()
    {
        MainWindow main(project.get());
        const QStringList before = snapshot(*project);
        QUndoStack *undo = RURecordControl::undoStack();
        const int steps = undo->count();
        fx->answerNextModal([](QDialog *d) {
            auto *setup = qobject_cast<TZnyzj *>(d);
            setup->skipPricedBox()->setChecked(false);
            setup->findChild<QPushButton *>("btnOk")->click();
            return 0;
        });
        QString counts;
        fx->answerNextModal([&](QDialog *d) {
            counts = d->findChild<QLabel *>("lblCounts")->text();
            return 0;
        });
        main.openEntry(QStringLiteral("batchpricing"));
        int applied = 0, zeroQuantity = 0;
        for (const BaseDataItem *b : project->allBills()) {
            if (b->text(BaseDataItem::FontColorRole).isEmpty())
                continue;
            ++applied;
            const QList<cloudZjnr> lines = cloudZjnr::parseList(b->text(BaseDataItem::CompositionRole));
            QVERIFY(!lines.isEmpty());
            QCOMPARE(b->data(BaseDataItem::UnitPriceRole).toDouble(), CompositionWriter::unitPrice(lines));
            zeroQuantity += qFuzzyIsNull(b->data(BaseDataItem::QuantityRole).toDouble());
        }
        QVERIFY(applied > 0);
        QCOMPARE(zeroQuantity, 0);
        QVERIFY2(counts.startsWith(QStringLiteral("已组价 %1 条，").arg(applied)), qPrintable(counts));
        QCOMPARE(undo->count(), steps + 1);
        main.context().setCurrentBill(project->allBills().first());
        QVERIFY(!main.detailPanel()->compositionLines().isEmpty());
        undo->undo();
        QCOMPARE(snapshot(*project), before);
    }

    void writesInSlicesAsOneUndoStep_data()
    {
        QTest::addColumn<int>("slice");
        QTest::addColumn<int>("pauses");
        QTest::newRow("one bill a slice") << 1 << 6;
        QTest::newRow("three a slice") << 3 << 2;
        QTest::newRow("one slice") << 7 << 0;
        QTest::newRow("no slices") << 0 << 0;
    }
    void writesInSlicesAsOneUndoStep()
    {
        QFETCH(int, slice);
        MainWindow main(project.get());
        const QList<BaseDataItem *> bills = project->allBills().mid(0, 7);
        const QStringList before = snapshot(*project);
        QList<CompositionWriter::Choice> choices;
        for (BaseDataItem *bill : bills)
            choices.append(qMakePair(bill, CompositionWriter::Values{QString(), 12.5, QString(), QString()}));
        QUndoStack *undo = RURecordControl::undoStack();
        const int steps = undo->count();
        int pauses = 0;
        CompositionWriter writer(*project);
        writer.setSlices(slice, [&] {
            ++pauses;
            QCOMPARE(undo->count(), steps); // the step is still open
        });
        QCOMPARE(writer.applyAll(choices, false), 7);
        QTEST(pauses, "pauses");
        QCOMPARE(undo->count(), steps + 1);
        for (const BaseDataItem *bill : bills)
            QCOMPARE(bill->data(BaseDataItem::UnitPriceRole).toDouble(), 12.5);
        undo->undo();
        QCOMPARE(snapshot(*project), before);
    }

    void batchPlanAndOutcomes_data()
    {
        QTest::addColumn<double>("quantity");
        QTest::addColumn<double>("price");
        QTest::addColumn<bool>("tempDeleted");
        QTest::addColumn<int>("tableKind");
        QTest::addColumn<QJsonObject>("reply");
        QTest::addColumn<QString>("outcome");
        const QJsonObject one{{"code", 0}, {"data", QJsonArray{QJsonObject{{"id", 9}}}}};
        const QJsonObject none{{"code", 0}, {"data", QJsonArray()}};
        const int bills = JJBTableBase::BillTableKind, measures = JJBTableBase::MeasureTableKind;
        QTest::newRow("matched") << 2.0 << 0.0 << false << bills << one << "已组价 ";
        QTest::newRow("priced, not skipped in measures") << 2.0 << 5.0 << false << measures << one << "已组价 ";
        QTest::newRow("no match") << 2.0 << 0.0 << false << bills << none << "未匹配 没有匹配的组价";
        QTest::newRow("refused") << 2.0 << 0.0 << false << bills << QJsonObject{{"code", 1}, {"msg", "无权限"}} << "未匹配 无权限";
        QTest::newRow("unanswered") << 2.0 << 0.0 << false << bills << QJsonObject() << "未匹配 ";
        QTest::newRow("zero quantity") << 0.0 << 0.0 << false << bills << one << "跳过 工程量为零";
        QTest::newRow("priced") << 2.0 << 5.0 << false << bills << one << "跳过 已有单价";
        QTest::newRow("temporarily removed") << 2.0 << 0.0 << true << bills << one << "跳过 临时删除";
    }
    void batchPlanAndOutcomes()
    {
        QFETCH(double, quantity);
        QFETCH(double, price);
        QFETCH(bool, tempDeleted);
        QFETCH(int, tableKind);
        QFETCH(QJsonObject, reply);
        JJBTableBase table("表", tableKind);
        auto item = std::make_unique<BaseDataItem>(1, BaseDataItem::BillKind);
        item->setData(BaseDataItem::QuantityRole, quantity);
        item->setData(BaseDataItem::UnitPriceRole, price);
        item->setTempDeleted(tempDeleted);
        BaseDataItem *bill = table.rootItem()->appendChild(std::move(item));
        // Priced bills are skipped only in the bill table's case: the measure row asks not to skip.
        BatchPricing pricing(LtdInfo("个人云", KvTokenUser, 0, 0, true), tableKind == JJBTableBase::BillTableKind, 1, {},
                             TQDNodeInfo());
        pricing.plan({bill}, [&table](BaseDataItem *) { return &table; });
        pricing.takeReplies(QList<QJsonObject>{reply}.mid(0, pricing.requests().size()));
        const BatchPricing::Row row = pricing.rows().first();
        QTEST(QString(BatchPricing::outcomeText(row.outcome) + ' ' + row.note), "outcome");
        QCOMPARE(pricing.choices().size(), row.outcome == BatchPricing::Applied ? 1 : 0);
    }

    void batchRequestsInSlices_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("count");
        QTest::newRow("all") << 0 << -1;
        QTest::newRow("head") << 0 << 3;
        QTest::newRow("middle") << 2 << 4;
        QTest::newRow("tail past the end") << 5 << 1000;
        QTest::newRow("past the end") << 1000 << 3;
    }
    void batchRequestsInSlices()
    {
        QFETCH(int, first);
        QFETCH(int, count);
        BatchPricing pricing(LtdInfo("个人云", KvTokenUser, 0, 0, true), false, 3, {}, TQDNodeInfo());
        pricing.plan(project->allBills(), [this](BaseDataItem *b) { return project->tableOf(b); });
        const QList<QJsonObject> all = pricing.requests();
        QVERIFY(all.size() > 6 && pricing.count(BatchPricing::Skipped) > 0);
        QCOMPARE(pricing.requests(first, count), all.mid(first, count));
        // Only the best match is written, so only one is asked for.
        QCOMPARE(all.first().value("data").toObject().value("tagNum").toString(), QStringLiteral("1"));
    }

    void cancelledRunDeliversNothing()
    {
        BatchPricingRun run;
        QSignalSpy cancelled(&run, &BatchPricingRun::cancelled);
        QSignalSpy finished(&run, &BatchPricingRun::finished);
        const QJsonObject request = envelope(KvTokenUser, method("getppqd", {{"usetype", "1"}, {"data", QJsonArray{QJsonObject{{"xmmc", "配线"}}}}}));
        run.start(QList<QJsonObject>() << request << request << request);
        run.cancel();
        QVERIFY(cancelled.wait(5000));
        QCOMPARE(finished.count(), 0);
        QVERIFY(run.takeReplies().isEmpty());
    }

    void browserChoiceWritesTheBill()
    {
        MainWindow main(project.get());
        BaseDataItem *bill = main.context().currentBill;
        const int steps = RURecordControl::undoStack()->count();
        QString shown;
        fx->answerNextModal([&](QDialog *d) {
            auto *browser = qobject_cast<VelDqqdznzj *>(d);
            for (int i = 0; i < 200 && browser->isLoading(); ++i)
                QTest::qWait(20);
            browser->replaceBox()->setChecked(true);
            shown = browser->listModel()->cellValue(0, "zhdj").toString();
            emit browser->listView()->signalButtonClicked(browser->listModel()->index(0, 5));
            return 0;
        });
        main.openEntry(QStringLiteral("currentpricing"));
        QVERIFY(!shown.isEmpty());
        QCOMPARE(bill->text(BaseDataItem::FontColorRole), CompositionWriter::markColor());
        QCOMPARE(QString::number(bill->data(BaseDataItem::UnitPriceRole).toDouble(), 'f', 2), shown);
        QCOMPARE(RURecordControl::undoStack()->count(), steps + 1);
        QCOMPARE(main.detailPanel()->featuresText(), bill->text(BaseDataItem::FeaturesRole));
        QVERIFY(!main.detailPanel()->compositionLines().isEmpty());
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
    }
};

QTEST_MAIN(TestSmartPricingFlow)
#include "tst_smartpricingflow.moc"
