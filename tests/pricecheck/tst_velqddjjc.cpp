#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/tvelqddjjc_yxys.h>
#include <pricecheck/pricecheckdetails.h>
#include <pricecheck/tvelqddjjc.h>
#include <smartpricing/veldqqdznzj_fymodal.h>

#include <hostapi/ztreeview.h>
#include <hostapi/basedataitem.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/fymodel.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/users.h>
#include <hostapi/zbasecombox.h>
#include <hostapi/ztabcontent.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <hostapi/ztreemodel.h>

#include <QDate>
#include <QJsonArray>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using namespace loginanswers;

namespace {
QString billText(int id, double price, const QString &zjnr = QString())
{
    const QJsonObject bill{{"id", id},     {"qdly", 2},      {"qdbh", QStringLiteral("Q%1").arg(id)},
                           {"xmmc", "配线"}, {"jldw", "m"},    {"zhdj", price},
                           {"jzsj", "2024年03月"}, {"dd", "成都市"}, {"xmtz", "特征"},
                           {"gznr", "内容"}, {"zjnr", zjnr}};
    return QString::fromUtf8(QJsonDocument(bill).toJson(QJsonDocument::Compact));
}

QStringList column(const zTableModel *model, const QString &key, int rows)
{
    QStringList values;
    for (int r = 0; r < rows; ++r)
        values << model->cellValue(r, key).toString();
    return values;
}
}

class TestVelQddjjc : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<TVelQddjjc> dlg;

    void open(bool loggedIn = true)
    {
        if (loggedIn)
            Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-1"));
        fx->channel().replyOk(serverList());
        dlg = std::make_unique<TVelQddjjc>();
        dlg->CreateUI();
    }
    void showBills(double own, const QStringList &bills)
    {
        dlg->setZhdj(own);
        QStringList data = bills;
        dlg->setCloudDjData(data);
    }

private slots:
    void cleanup()
    {
        dlg.reset();
        HostTestCase::cleanup();
    }

    void listRows_data()
    {
        QTest::addColumn<double>("own");
        QTest::addColumn<QList<double>>("cloud");
        QTest::addColumn<QString>("prices");
        QTest::addColumn<QString>("deviations");
        QTest::addColumn<QStringList>("summary");
        QTest::newRow("own price 0") << 0.0 << QList<double>{100, 150} << "100|150" << "-|-"
                                     << QStringList{"原单价", "", "平均单价", "125", "-", "-"};
        QTest::newRow("120 against 100 and 150") << 120.0 << QList<double>{100, 150} << "100|150" << "20%|-20%"
                                                 << QStringList{"原单价", "120", "平均单价", "125", "-4%", "-"};
        QTest::newRow("rounds to nothing") << 100.001 << QList<double>{100} << "100" << "0.00%"
                                           << QStringList{"原单价", "100.001", "平均单价", "100", "0.00%", "-"};
        QTest::newRow("cloud price 0") << 50.0 << QList<double>{0, 100} << "|100" << "-|-50%"
                                       << QStringList{"原单价", "50", "平均单价", "50", "0.00%", "-"};
        QTest::newRow("unrounded average, rounded for its deviation")
            << 2.02 << QList<double>{1.004, 1.004, 1.007} << "1|1|1.01" << "101.2%|101.2%|100.6%"
            << QStringList{"原单价", "2.02", "平均单价", "1.01", "100%", "-"};
    }
    void listRows()
    {
        QFETCH(double, own);
        QFETCH(QList<double>, cloud);
        open();
        QStringList bills;
        for (int i = 0; i < cloud.size(); ++i)
            bills << billText(i + 1, cloud.at(i));
        showBills(own, bills);
        const zTableModel *model = dlg->listModel();
        const int n = cloud.size();
        QCOMPARE(model->rowCount(), n + 1);
        QTEST(column(model, "zhdj", n).join('|'), "prices");
        QTEST(column(model, "pcl", n).join('|'), "deviations");
        QStringList summary;
        for (const QString key : {"xh", "xmbh", "xmmc", "zhdj", "pcl", "jzsj"}) {
            summary << model->cellValue(n, key).toString();
            QCOMPARE(model->index(n, model->columnOf(key)).data(Qt::ForegroundRole).value<QBrush>().color(),
                     QColor(Qt::red));
        }
        QTEST(summary, "summary");
        QCOMPARE(model->spans(), (QList<QRect>{QRect(2, n, 2, 1), QRect(6, n, 2, 1)}));
        QCOMPARE(dlg->listView()->currentIndex().row(), 0);
        QCOMPARE(dlg->shownBill(), 0);
    }

    void stopsWithoutResultOrLogin_data()
    {
        QTest::addColumn<bool>("loggedIn");
        QTest::addColumn<int>("bills");
        QTest::newRow("empty result") << true << 0;
        QTest::newRow("server not logged in") << false << 2;
    }
    void stopsWithoutResultOrLogin()
    {
        QFETCH(int, bills);
        QFETCH(bool, loggedIn);
        open(loggedIn);
        showBills(10, bills ? QStringList{billText(1, 9), billText(2, 11)} : QStringList());
        QCOMPARE(dlg->listModel()->rowCount(), 0);
        QCOMPARE(fx->channel().requests().size(), 1);
        QVERIFY(fx->messageTexts().isEmpty());
    }

    void matchNum_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("shown");
        for (int c : {1, 3, 5, 4, 0})
            QTest::newRow(qPrintable(QString::number(c))) << c << (c == 3 || c == 5 ? QString::number(c) : "1");
    }
    void matchNum()
    {
        open();
        QFETCH(int, count);
        dlg->setMatchNum(count);
        QTEST(dlg->matchCombo()->currentText(), "shown");
    }

    void labels()
    {
        open();
        QString name = "电力\r\n电缆\n敷设", empty;
        dlg->setItemName(name);
        dlg->setTime(empty);
        dlg->setPlace(empty);
        QCOMPARE(dlg->label("lblXmmcData")->text(), QStringLiteral("电力电缆敷设"));
        QCOMPARE(dlg->label("lblSjsj")->text(), QDate::currentDate().toString(QStringLiteral("yyyy年MM月")));
        QCOMPARE(dlg->label("lblDdsj")->text(), QStringLiteral("无"));
    }

    // The tab's name tests "contains", its text "equals" on the upper-cased kind.
    void firstTab_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::newRow("measure") << "ZJXQDA" << "工程内容" << "内容";
        QTest::newRow("lower case") << "zjxqdb" << "项目特征" << "内容";
        QTest::newRow("contains only") << "XZJXQDA" << "工程内容" << "特征";
        QTest::newRow("bill") << "GB24" << "项目特征" << "特征";
    }
    void firstTab()
    {
        open();
        BaseDataItem bill;
        QFETCH(QString, kind);
        bill.setData(BaseDataItem::KindRole, kind);
        dlg->SetCurQd(&bill);
        showBills(10, {billText(1, 9)});
        QTEST(dlg->detailTabs()->tabText(0), "name");
        QTEST(dlg->firstTabText(), "text");
        QCOMPARE(dlg->detailTabs()->tabText(2), QStringLiteral("项目信息"));
    }

    void projectInfoRequest_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<QJsonObject>("data");
        QTest::newRow("personal") << "kv_token_user"
                                  << QJsonObject{{"method", "personprojectinfoforsinglepricecheck"}, {"id", 7}, {"ly", 2}};
        QTest::newRow("korvane") << "kv_token"
                                 << QJsonObject{{"method", "kvprojectinfoforsinglepricecheck"}, {"id", 7}, {"ly", 2}};
        QTest::newRow("enterprise") << "ent-token"
                                    << QJsonObject{{"method", "enterpriseprojectinfoforsinglepricecheck"},
                                                   {"qiyeID", 42}, {"id", 7}, {"ly", 2}};
    }
    void projectInfoRequest()
    {
        QFETCH(QString, token);
        const LtdInfo server("s", token, 1, 42, true);
        const QJsonObject request = PriceCheckDetails::projectInfoRequest(&server, CloudZjBean(billText(7, 1))).toJson();
        QTEST(request.value("data").toObject(), "data");
        QCOMPARE(request.value("orgin_token").toString(), server.getToken());
    }

    void projectInfoText_data()
    {
        QTest::addColumn<QJsonObject>("data");
        QTest::addColumn<QString>("text");
        const QJsonObject all{{"xmmc", "办公楼"}, {"dxmc", "A座"},   {"dwmc", "电气"},   {"qdgf", "2013"},
                              {"jjde", "2020"},   {"jsfs", "一般"},  {"zhdjfs", "全费"}, {"hbgd", 500},
                              {"dd", "成都"},     {"jgjzsj", "2024"}, {"jsxs", "新建"},   {"zjsjlx", "结算"},
                              {"scrmc", "李四"}};
        const QString lines = "项目名称：办公楼\n单项名称：A座\n单位名称：电气\n清单规范：2013\n计价定额：2020\n"
                              "计税方式：一般\n综合单价方式：全费\n海拔高度：500\n地点：成都\n价格基准时间：2024\n"
                              "建设形式：新建\n造价数据类型：结算\n";
        QJsonObject withOper = all;
        withOper.insert("oper", 0);
        QJsonObject operOne = all;
        operOne.insert("oper", 1);
        QTest::newRow("oper 0 shows the uploader") << withOper << lines + "上传人：李四\n";
        QTest::newRow("no oper") << all << lines;
        QTest::newRow("oper 1") << operOne << lines;
        QTest::newRow("empty values") << QJsonObject{{"xmmc", ""}, {"dd", "成都"}, {"oper", 0}} << "地点：成都\n";
    }
    void projectInfoText()
    {
        QFETCH(QJsonObject, data);
        QTEST(PriceCheckDetails::projectInfoText(data), "text");
    }

    void detailsFollowTheClickedRow()
    {
        open();
        cloudZjnr line;
        line.setType("DE");
        line.setIsDe(true);
        line.setDebh("4-1");
        line.setFymblist({cloudFymb("A", "人工费", "RGF", "", "1", "rgf"), cloudFymb("B", "利润", "A*", "12", "2", "lr")});
        const QString zjnr = cloudZjnr::toZjnrText({line});
        fx->channel().replyOk(QJsonObject{{"xmmc", "甲"}});
        showBills(10, {billText(1, 9), billText(2, 11, zjnr)});
        QCOMPARE(dlg->projectInfoText(), QStringLiteral("项目名称：甲\n"));
        fx->channel().replyError(4, QStringLiteral("工程不存在"));
        emit dlg->listView()->cellClicked(1, QVariant());
        QCOMPARE(dlg->shownBill(), 1);
        QCOMPARE(fx->messageTexts(), QStringList{"工程不存在"});
        QCOMPARE(dlg->compositionModel()->rowCount(), 1);
        const int requests = fx->channel().requests().size();
        emit dlg->listView()->cellClicked(2, QVariant());
        QCOMPARE(dlg->shownBill(), 1);
        QCOMPARE(fx->channel().requests().size(), requests);
        QCOMPARE(dlg->compositionModel()->rowCount(), 1);

        int feeRows = -1;
        fx->answerNextModal([&](QDialog *d) {
            feeRows = qobject_cast<FyModel *>(d)->tableModel()->rowCount();
            return 0;
        });
        const QModelIndex view = dlg->compositionModel()->index(0, dlg->compositionModel()->columnOf("djjscx"));
        QCOMPARE(view.data(zTableCell::ValueRole).toString(), QStringLiteral("查看"));
        emit dlg->compositionView()->signalButtonClicked(view);
        QCOMPARE(feeRows, 2);
    }

    void checkButton()
    {
        open();
        QList<QPair<LtdInfo *, int>> asked;
        connect(dlg.get(), &TVelQddjjc::signalGetQjyData, [&](LtdInfo *server, int &count) { asked.append({server, count}); });
        dlg->setMatchNum(5);
        dlg->checkButton()->click();
        QCOMPARE(asked, (QList<QPair<LtdInfo *, int>>{{dlg->getCurrServer(), 5}}));
        QVERIFY(dlg->getCurrServer());
        fx->channel().replyOk(QJsonArray());
        dlg = std::make_unique<TVelQddjjc>();
        dlg->CreateUI();
        dlg->checkButton()->click();
        QCOMPARE(fx->messageTexts(), QStringList{"请选择服务器"});
    }

    void modification_data()
    {
        QTest::addColumn<bool>("sync");
        QTest::addColumn<bool>("confirm");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QStringList>("emitted");
        QTest::newRow("synced, place cleared") << true << true << "" << QStringList{"2024年01月", ""};
        QTest::newRow("synced") << true << true << "四川省成都市" << QStringList{"2024年01月", "四川省成都市"};
        QTest::newRow("not synced") << false << true << "四川省成都市" << QStringList();
        QTest::newRow("closed") << true << false << "四川省成都市" << QStringList();
    }
    void modification()
    {
        QFETCH(bool, sync);
        QFETCH(bool, confirm);
        QFETCH(QString, place);
        open();
        QString time = "2023年05月", before = "新疆";
        dlg->setTime(time);
        dlg->setPlace(before);
        QStringList emitted, seen;
        connect(dlg.get(), &TVelQddjjc::signalYxysChanged, [&](const QString &sj, const QString &dd) { emitted << sj << dd; });
        fx->answerNextModal([&](QDialog *d) {
            auto *yxys = qobject_cast<TVelQddjjc_Yxys *>(d);
            seen << yxys->timeField()->text() << yxys->placeField()->text();
            yxys->syncBox()->setChecked(sync);
            yxys->timeField()->setText("2024年01月");
            if (place.isEmpty())
                yxys->clearButton()->click();
            else
                yxys->placeField()->setText(place);
            if (confirm)
                yxys->confirmButton()->click();
            return d->result();
        });
        dlg->modifyButton()->click();
        QCOMPARE(seen, (QStringList{"2023年05月", "新疆"}));
        QTEST(emitted, "emitted");
        if (confirm)
            QCOMPARE(dlg->label("lblDdsj")->text(), place.isEmpty() ? QStringLiteral("无") : place);
    }

    void feeTemplate()
    {
        VelDqqDznzj_fymodal fees;
        fees.CreateUI();
        QCOMPARE(fees.tableModel()->rowCount(), 0);
        QCOMPARE(fees.tableModel()->columnCount(), 6);
        fees.setFymbList({cloudFymb("A", "人工费", "RGF", "", "1", "rgf"), cloudFymb("B", "利润", "A*", "12", "2", "lr")});
        QCOMPARE(column(fees.tableModel(), "fybh", 2), (QStringList{"A", "B"}));
        QCOMPARE(column(fees.tableModel(), "jjgs", 2), (QStringList{"RGF", "A*"}));
        QCOMPARE(fees.windowTitle(), QStringLiteral("费用模板"));
    }
};

QTEST_MAIN(TestVelQddjjc)
#include "tst_velqddjjc.moc"
