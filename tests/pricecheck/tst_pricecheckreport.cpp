#include "hosttestcase.h"
#include "loginanswers.h"

#include <billtreemodel.h>
#include <mainwindow.h>
#include <pricecheckreport.h>
#include <pricecheckreporthost.h>
#include <pricecheckreportfilter.h>
#include <pricecheckreportmodel.h>
#include <pricecheckreportrun.h>
#include <pricecheckreportwindow.h>
#include <projectdocument.h>

#include <hostapi/users.h>

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QLabel>
#include <QSignalSpy>
#include <QTreeView>
#include <QtTest>

using namespace loginanswers;

class TestPriceCheckReport : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<ProjectDocument> project;

    static QJsonObject cloudBill(double price) { return {{"id", 7}, {"qdbh", "X"}, {"xmmc", "x"}, {"zhdj", price}}; }

private slots:
    void init()
    {
        HostTestCase::init();
        const QJsonArray bills{
            QJsonObject{{"code", "A1"}, {"name", "桥架, \"镀锌\""}, {"unit", "m"}, {"price", 120}, {"kind", 4}},
            QJsonObject{{"code", "B2"}, {"name", "配管"}, {"unit", "m"}, {"price", 0}, {"kind", 4}},
            QJsonObject{{"code", "C3"}, {"name", "插座"}, {"unit", "套"}, {"price", 100}, {"kind", 4}}};
        const QJsonObject file{{"name", "t"}, {"unitWork", QJsonObject{{"name", "u"}}},
                               {"tables", QJsonArray{QJsonObject{{"kind", 3001}, {"name", "分部分项工程"}, {"items", bills}}}}};
        project = std::make_unique<ProjectDocument>();
        QString error;
        QVERIFY2(project->load(QJsonDocument(file).toJson(), &error), qPrintable(error));
    }

    void csvOfSmallProject()
    {
        QList<PriceCheckReportRow> rows = PriceCheckReport::readBills(project->allBills());
        auto text = [](double price) { return QString::fromUtf8(QJsonDocument(cloudBill(price)).toJson()); };
        PriceCheckReport::compare(rows[0], {text(100), text(150)});
        PriceCheckReport::compare(rows[1], {text(80)});
        PriceCheckReport::compare(rows[2], {});
        QCOMPARE(PriceCheckReport::csv(rows),
                 QStringLiteral("项目编码,项目名称,单位,综合单价,云平均单价,相似清单数,偏差率\r\n"
                                "A1,\"桥架, \"\"镀锌\"\"\",m,120.00,125.00,2,-4%\r\n"
                                "B2,配管,m,0.00,80.00,1,-\r\n"
                                "C3,插座,套,100.00,,0,-\r\n"));
        QVERIFY(PriceCheckReport::isBeyond(rows[0], 3.99));
        QVERIFY(!PriceCheckReport::isBeyond(rows[0], 4));
        QVERIFY(!PriceCheckReport::isBeyond(rows[1], 0));
        QCOMPARE(PriceCheckReport::distribution(rows).at(3), qMakePair(QStringLiteral("-10~0"), 1));
    }

    void runStopsWhenAsked()
    {
        QList<PriceCheckReportRow> rows = PriceCheckReport::readBills(project->allBills());
        const LtdInfo personal("个人云", "kv_token_user", 1, 0, true);
        QVERIFY(!PriceCheckReport::run(rows, personal, 3, [](int done) { return done < 2; }));
        QCOMPARE(fx->channel().requests().size(), 2);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 QJsonObject({{"method", "getsimilarbillprices"}, {"qiyeID", -1}, {"usetype", 1}, {"qdbh", "B2"},
                              {"xmmc", "配管"}, {"jldw", "m"}, {"xmtz", ""}, {"gznr", ""}, {"matchNum", 3}}));
    }

    // The whole project on the worker thread; the out-of-range bill is shaded
    // in the report and in the bill tree; a cancelled second run changes nothing.
    void cancelLeavesTheReport()
    {
        Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-1"));
        MainWindow main(project.get());
        fx->channel().replyOk(serverList());
        auto *window = static_cast<PriceCheckReportWindow *>(PriceCheckReportHost::open(main.context()));
        QAbstractItemModelTester tester(window->model());
        for (double price : {100.0, 80.0, 101.0})
            fx->channel().replyOk(QJsonArray{cloudBill(price)});
        QSignalSpy done(window->run(), &PriceCheckReportRun::finished);
        window->startCheck();
        QVERIFY(window->isChecking());
        QVERIFY(done.wait(5000));
        const QString before = PriceCheckReport::csv(window->model()->rows());
        QVERIFY(before.contains(QStringLiteral("A1,\"桥架, \"\"镀锌\"\"\",m,120.00,100.00,1,20%")));
        QCOMPARE(window->model()->beyondBills(), QList<BaseDataItem *>{project->billByCode("A1")});
        auto *tree = static_cast<BillTreeModel *>(main.billView(0)->model());
        const QModelIndex a1 = tree->indexOf(project->billByCode("A1"));
        const QModelIndex c3 = tree->indexOf(project->billByCode("C3"));
        QVERIFY(a1.data(Qt::BackgroundRole).isValid());
        QVERIFY(!c3.data(Qt::BackgroundRole).isValid());
        window->filter()->setOnlyBeyond(true);
        QCOMPARE(window->filter()->rowCount(), 1);
        window->filter()->setOnlyBeyond(false);
        window->filter()->setText(QStringLiteral("c3"));
        QCOMPARE(window->filter()->index(0, 0).data().toString(), QStringLiteral("C3"));
        QCOMPARE(window->filter()->rowCount(), 1);

        QSignalSpy cancelled(window->run(), &PriceCheckReportRun::cancelled);
        window->startCheck();
        window->cancelCheck();
        QVERIFY(cancelled.wait(5000));
        QCOMPARE(done.size(), 1);
        QCOMPARE(PriceCheckReport::csv(window->model()->rows()), before);
        QVERIFY(a1.data(Qt::BackgroundRole).isValid());
        QCOMPARE(window->statusLabel()->text(), QStringLiteral("已取消，报告未改变"));
        QVERIFY(!window->isChecking());
        window->close();
        QVERIFY(!a1.data(Qt::BackgroundRole).isValid());
    }

    // Closed between the table's paint and the charts': nothing is shaded.
    void closedWhileFillingShadesNothing()
    {
        Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-1"));
        MainWindow main(project.get());
        fx->channel().replyOk(serverList());
        auto *window = static_cast<PriceCheckReportWindow *>(PriceCheckReportHost::open(main.context()));
        for (double price : {100.0, 80.0, 101.0})
            fx->channel().replyOk(QJsonArray{cloudBill(price)});
        QObject::connect(window->model(), &QAbstractItemModel::modelReset, window, &QWidget::close, Qt::QueuedConnection);
        QSignalSpy done(window->run(), &PriceCheckReportRun::finished);
        window->startCheck();
        QVERIFY(done.wait(5000));
        auto *tree = static_cast<BillTreeModel *>(main.billView(0)->model());
        QVERIFY(!tree->indexOf(project->billByCode("A1")).data(Qt::BackgroundRole).isValid());
    }
};

QTEST_MAIN(TestPriceCheckReport)
#include "tst_pricecheckreport.moc"
