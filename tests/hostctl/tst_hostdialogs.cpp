#include "hosttestcase.h"

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/apptype.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/fymodel.h>
#include <hostapi/logindialog.h>
#include <hostapi/modalrun.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/textpathwidget.h>
#include <hostapi/xmgktime.h>
#include <hostapi/zfiltersearchbox.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {
// A two-level place dictionary as an owner would answer doRequestNextTab.
QStringList childrenOf(const QString &name)
{
    static const QMap<QString, QStringList> tree{
        {"四川省", {"成都市", "绵阳市"}}, {"成都市", {"金牛区", "武侯区"}}, {"重庆市", {"渝中区"}}};
    return tree.value(name);
}

// A picker over the dictionary; `asked` collects the tabs that asked for more.
void primePath(TextPathDlg &dlg, const QStringList &top, QList<int> *asked = nullptr)
{
    QObject::connect(&dlg, &TextPathDlg::doRequestNextTab,
                     [asked](int tab, const QString &item, TextPathWidget *, QStringList *next) {
                         if (asked)
                             *asked << tab;
                         *next = childrenOf(item);
                     });
    dlg.addFirstTabData(top.first(), top);
}

QJsonObject project(const QString &tid, const QString &name)
{
    return QJsonObject{{"tid", tid}, {"xmmc", name}, {"dq", "四川省成都市"}, {"sj", "2023-05"}, {"gcType", 1}};
}

QJsonObject envelope(const QString &token, const QJsonObject &data)
{
    return QJsonObject{{"cmd", "cloudSoft"}, {"app_type", AppType()}, {"orgin_token", token}, {"data", data}};
}

void clickCheckBox(CloudProCheck &dlg, int row)
{
    auto *view = dlg.findChild<zTableView *>(QStringLiteral("gdTableGc"));
    const QPoint centre = view->visualRect(dlg.tableModel()->index(row, 0)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, centre);
}

std::unique_ptr<zTitleModal> hostDialog(const QString &which)
{
    if (which == QLatin1String("month"))
        return std::make_unique<XmgkTime>();
    if (which == QLatin1String("path"))
        return std::make_unique<TextPathDlg>(QStringLiteral("工程地点选择"));
    if (which == QLatin1String("filter"))
        return std::make_unique<CloudProCheck>(QStringList(), nullptr, QString(), TQDNodeInfo());
    if (which == QLatin1String("login"))
        return std::make_unique<LoginDialog>(QStringLiteral("登录"), QStringLiteral("Korvane云"), nullptr);
    auto fee = std::make_unique<FyModel>(QList<cloudFymb>{});
    fee->CreateUI();
    return fee;
}

// The buttons on the row of `last`, left to right; "*" marks the default.
QStringList rowOf(QWidget *dialog, QPushButton *last)
{
    QMap<int, QString> row;
    for (QPushButton *b : dialog->findChildren<QPushButton *>()) {
        const QPoint at = b->mapTo(dialog, QPoint());
        if (b->isVisible() && at.y() == last->mapTo(dialog, QPoint()).y())
            row.insert(at.x(), b->text() + (b->isDefault() ? QStringLiteral("*") : QString()));
    }
    return row.values();
}
}

class TestHostDialogs : public HostTestCase
{
    Q_OBJECT
private:
    LtdInfo personal{QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 1, 0, true};
    LtdInfo korvane{QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 1, 0, true};
    LtdInfo enterprise{QStringLiteral("某某造价公司"), QStringLiteral("ent_session_7"), 2, 7, true};

private slots:
    void hostDialogsAsTheUserSeesThem_data()
    {
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("look"); // caption and least size
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<int>("rightMargin");
        QTest::addColumn<int>("firstButtonResult");
        const QStringList plain{"确定", "取消"};
        const QStringList okDefault{"确定*", "取消"};
        QTest::newRow("month picker") << "month" << "时间选择 300x270" << plain << 16 << int(XmgkTime::Chosen);
        QTest::newRow("place picker") << "path" << "工程地点选择 520x340" << okDefault << 12 << 1;
        QTest::newRow("fee template") << "fee" << "费用模板 790x450" << okDefault << 20 << 1;
        QTest::newRow("project filter") << "filter" << "工程筛选 640x460" << plain << 16 << 1;
        // An empty user name keeps the form open, without a result.
        QTest::newRow("login") << "login" << "登录 360x0" << QStringList{"登录*", "取消"} << 24 << -1;
    }

    void hostDialogsAsTheUserSeesThem()
    {
        QFETCH(QString, which);
        QFETCH(QString, look);
        QFETCH(QStringList, buttons);
        QFETCH(int, rightMargin);
        QFETCH(int, firstButtonResult);
        std::unique_ptr<zTitleModal> dialog = hostDialog(which);
        const QSize least = dialog->minimumSize();
        QCOMPARE(QStringLiteral("%1 %2x%3").arg(dialog->caption()).arg(least.width()).arg(least.height()), look);
        dialog->show();
        auto *cancel = dialog->findChild<QPushButton *>(QStringLiteral("btnCancel"));
        QCOMPARE(rowOf(dialog.get(), cancel), buttons);
        QCOMPARE(dialog->width() - 1 - (cancel->mapTo(dialog.get(), QPoint()).x() + cancel->width()), rightMargin);
        fx->answerNextModal([&](QDialog *d) {
            QPushButton *first = d->findChild<QPushButton *>(QStringLiteral("btnOk"));
            (first ? first : d->findChild<QPushButton *>(QStringLiteral("btnLogin")))->click();
            return d->result();
        });
        dialog->setResult(-1);
        QCOMPARE(dialog->ShowModal(), firstButtonResult);
        QCOMPARE(fx->modalRuns().size(), 1);
        if (which == QLatin1String("login"))
            QCOMPARE(qobject_cast<LoginDialog *>(dialog.get())->errorText(), QStringLiteral("请输入用户名"));
    }

    void feeDialogShowsSixColumnsInOrder()
    {
        FyModel dlg({cloudFymb("A", "人工费", "RGF", "100", "35.20", "rgf"),
                     cloudFymb("B", "管理费", "A*FL", "12.5", "4.40", "glf")});
        dlg.CreateUI();
        dlg.CreateUI();
        zTableModel *model = dlg.tableModel();
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QStringList seen;
        for (int c = 0; c < model->columnCount(); ++c) {
            const QString key = model->headerData(c, Qt::Horizontal, zTableCell::KeyRole).toString();
            const QString title = model->headerData(c, Qt::Horizontal).toString();
            seen << title + "/" + key + "=" + model->cellValue(1, key).toString();
        }
        QCOMPARE(seen, (QStringList{"费用编号/fybh=B", "费用名称/fymc=管理费", "计算公式/jjgs=A*FL", "费率/fl=12.5",
                                    "金额/jl=4.40", "计价表字段/jjbzd=glf"}));
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(dlg.tableView()->columnWidth(5), 120);
        for (const char *name : {"btnOk", "btnCancel"})
            QCOMPARE(dlg.findChild<QPushButton *>(name)->size(), QSize(60, 24));
    }

    void monthPicker_data()
    {
        QTest::addColumn<QString>("primed");
        QTest::addColumn<QStringList>("clicks");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("text");
        const QStringList ok{"btnOk"};
        const int chosen = XmgkTime::Chosen;
        QTest::newRow("host form") << "2023年05月" << ok << chosen << "2023年05月";
        QTest::newRow("short month") << "2021年9月" << ok << chosen << "2021年09月";
        QTest::newRow("dashed") << "2019-11" << ok << chosen << "2019年11月";
        QTest::newRow("date") << "2020-02-29" << ok << chosen << "2020年02月";
        QTest::newRow("month 13: today") << "2023年13月" << ok << chosen
                                         << QDate::currentDate().toString(QStringLiteral("yyyy年MM月"));
        QTest::newRow("previous year, December")
            << "2023年05月" << QStringList{"btnPrevYear", "btnMonth12", "btnOk"} << chosen << "2022年12月";
        QTest::newRow("next year") << "2023年05月" << QStringList{"btnNextYear", "btnOk"} << chosen << "2024年05月";
        // Cancelling keeps the primed text, readable or not.
        QTest::newRow("January, 取消") << "2023年05月" << QStringList{"btnMonth1", "btnCancel"}
                                        << int(XmgkTime::Cancelled) << "2023年05月";
        QTest::newRow("no month, 取消") << "无" << QStringList{"btnCancel"} << int(XmgkTime::Cancelled) << "无";
    }

    void monthPicker()
    {
        QFETCH(QString, primed);
        QFETCH(QStringList, clicks);
        QFETCH(int, result);
        QFETCH(QString, text);
        XmgkTime picker;
        picker.SetTimeData(primed);
        picker.setResult(-1);
        picker.show();
        for (const QString &name : clicks) {
            QCOMPARE(picker.GetTimeData(), primed); // nothing chosen yet
            QTest::mouseClick(picker.findChild<QPushButton *>(name), Qt::LeftButton);
        }
        QCOMPARE(picker.result(), result);
        QCOMPARE(picker.GetTimeData(), text);
        picker.chooseMonth(2024, 3);
        QCOMPARE(picker.GetTimeData(), QStringLiteral("2024年03月"));
    }

    void pathGrowsTabByTab()
    {
        TextPathDlg dlg(QStringLiteral("工程地点选择"));
        QList<int> asked;
        primePath(dlg, {QStringLiteral("四川省"), QStringLiteral("重庆市")}, &asked);
        dlg.addTabData(QStringLiteral("类别1"), childrenOf(QStringLiteral("四川省")));
        TextPathWidget *w = dlg.pathWidget();
        QCOMPARE(dlg.getSelectedPath(), (QStringList{"四川省", "类别1"}));
        QVERIFY(w->chooseItem(1, QStringLiteral("成都市")));
        QCOMPARE(w->tabCount(), 3);
        QCOMPARE(w->tabTitle(2), QStringLiteral("类别2"));
        QCOMPARE(w->tabItems(2), childrenOf(QStringLiteral("成都市")));
        QCOMPARE(w->currentTab(), 2);
        QVERIFY(w->chooseItem(2, QStringLiteral("武侯区")));
        QCOMPARE(w->tabCount(), 3);
        QCOMPARE(dlg.getSelectedPath(), (QStringList{"四川省", "成都市", "武侯区"}));
        QCOMPARE(asked, (QList<int>{1, 2}));
        // Choosing again on the first tab drops the deeper levels.
        QVERIFY(w->chooseItem(0, QStringLiteral("重庆市")));
        QCOMPARE(dlg.getSelectedPath(), (QStringList{"重庆市", "类别1"}));
        QCOMPARE(w->tabItems(1), QStringList{QStringLiteral("渝中区")});
        QVERIFY(!w->chooseItem(1, QStringLiteral("金牛区")));
        QVERIFY(!w->chooseItem(5, QStringLiteral("渝中区")));
        // A maximum tab count stops the growth.
        w->setMaxTabCount(2);
        QVERIFY(w->chooseItem(0, QStringLiteral("四川省")));
        QVERIFY(w->chooseItem(1, QStringLiteral("成都市")));
        QCOMPARE(w->tabCount(), 2);
        QCOMPARE(asked, (QList<int>{1, 2, 0, 0}));
    }

    void leafChoiceAcceptsOnlyAShownPicker()
    {
        TextPathDlg dlg;
        primePath(dlg, {QStringLiteral("重庆市")});
        fx->answerNextModal([](QDialog *d) {
            TextPathWidget *w = qobject_cast<TextPathDlg *>(d)->pathWidget();
            w->chooseItem(0, QStringLiteral("重庆市"));
            w->chooseItem(1, QStringLiteral("渝中区"));
            return d->result();
        });
        dlg.setResult(-1);
        QCOMPARE(ModalRun::exec(&dlg), -1);
        QCOMPARE(dlg.getSelectedPath(), (QStringList{"重庆市", "渝中区"}));
        dlg.show(); // a click on the leaf in the shown list accepts
        QListWidget *list = nullptr;
        for (QListWidget *l : dlg.findChildren<QListWidget *>())
            list = l->isVisible() ? l : list;
        QListWidgetItem *item = list->findItems(QStringLiteral("渝中区"), Qt::MatchExactly).value(0);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
        QVERIFY(!dlg.isVisible());
    }

    void requestByTier_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<bool>("condNull");
        QTest::addColumn<QJsonObject>("data");
        const QString m = QStringLiteral("getaccumulatedprojects");
        const QJsonObject personal{{"method", m}, {"qiyeID", -1}, {"usetype", 1}, {"gcType", 2}, {"keyword", "住宅"}};
        const QJsonObject korvane{{"method", m}, {"qiyeID", 0}, {"usetype", 3}, {"gcType", 2}, {"keyword", "住宅"}};
        const QJsonObject enterprise{{"method", m}, {"qiyeID", 7}, {"usetype", 2}};
        QTest::newRow("personal") << 0 << false << personal;
        QTest::newRow("korvane") << 1 << false << korvane;
        QTest::newRow("enterprise, no conditions") << 2 << true << enterprise;
    }

    void requestByTier()
    {
        QFETCH(int, which);
        QFETCH(bool, condNull);
        QFETCH(QJsonObject, data);
        const LtdInfo *server = QList<LtdInfo *>{&personal, &korvane, &enterprise}.at(which);
        QCOMPARE(AccumulatedProjectQuery::buildRequest(*server, 2, QStringLiteral(" 住宅 "), condNull),
                 envelope(server->getToken(), data));
    }

    void initLoadsTheList_data()
    {
        QTest::addColumn<bool>("server");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("message");
        const QJsonArray list{project("11", "万科城一期"), "garbage", QJsonObject{{"xmmc", "无编号"}}, project("12", "万科城二期")};
        const QString offline = QStringLiteral("无法连接云服务，请稍后重试");
        QTest::newRow("list") << true << QJsonDocument(QJsonObject{{"code", 0}, {"data", list}}).toJson() << "";
        QTest::newRow("code") << true << QByteArray(R"({"code":3,"msg":"企业云未登录","data":null})") << "企业云未登录";
        QTest::newRow("empty") << true << QByteArray() << offline;
        QTest::newRow("not json") << true << QByteArray("<html>") << offline;
        QTest::newRow("no server: no request") << false << QByteArray() << "请选择服务器";
    }

    void initLoadsTheList()
    {
        QFETCH(bool, server);
        QFETCH(QByteArray, reply);
        QFETCH(QString, message);
        fx->channel().replyBytes(reply);
        const QString chosen = AccumulatedProjectQuery::choiceText(project("12", "万科城二期"));
        CloudProCheck dlg(QStringList{chosen, chosen}, server ? &enterprise : nullptr, "建筑", TQDNodeInfo());
        dlg.setIscondNull(false);
        QCOMPARE(dlg.InitGcInfo(), message.isEmpty());
        QCOMPARE(fx->messageTexts(), message.isEmpty() ? QStringList() : QStringList{message});
        const QJsonObject data{{"method", "getaccumulatedprojects"}, {"qiyeID", 7}, {"usetype", 2}};
        const QList<QJsonObject> sent{envelope("ent_session_7", data)};
        QCOMPARE(fx->channel().requests(), server ? sent : QList<QJsonObject>());
        zTableModel *model = dlg.tableModel();
        QCOMPARE(model->rowCount(), message.isEmpty() ? 2 : 0);
        QCOMPARE(dlg.checkedChoices(), QStringList{chosen});
        if (!message.isEmpty())
            return;
        QCOMPARE(model->cellValue(0, QStringLiteral("xmmc")).toString(), QStringLiteral("万科城一期"));
        QCOMPARE(model->cellValue(1, QStringLiteral("dq")).toString(), QStringLiteral("四川省成都市"));
        QCOMPARE(model->checkedRows(QStringLiteral("xz")), QList<int>{1}); // chosen before
        QCOMPARE(dlg.findChild<QLabel *>(QStringLiteral("lblCount"))->text(), QStringLiteral("已选1个工程"));
    }

    void choicesSurviveSearchAndReachOwner()
    {
        fx->channel().replyOk(QJsonArray{project("11", "万科城一期"), project("12", "万科城二期")});
        CloudProCheck dlg({}, &korvane, QString(), TQDNodeInfo());
        dlg.setIscondNull(false);
        QVERIFY(dlg.InitGcInfo());
        dlg.show();
        clickCheckBox(dlg, 0);
        clickCheckBox(dlg, 1);
        clickCheckBox(dlg, 1);
        QCOMPARE(dlg.checkedChoices().size(), 1);
        // A search that hides the chosen project keeps it chosen.
        fx->channel().replyOk(QJsonArray{project("12", "万科城二期")});
        dlg.searchBox()->setText(QStringLiteral("二期"));
        dlg.searchBox()->searchButton()->click();
        QCOMPARE(fx->channel().lastRequest().value("data").toObject().value("keyword"), QJsonValue("二期"));
        QCOMPARE(dlg.tableModel()->rowCount(), 1);
        clickCheckBox(dlg, 0);
        QSignalSpy chosen(&dlg, &CloudProCheck::signalCheckGc);
        QSignalSpy maps(&dlg, &CloudProCheck::signalCheckGcMaps);
        dlg.findChild<QPushButton *>(QStringLiteral("btnOk"))->click();
        const QStringList choices = chosen.value(0).value(0).toStringList();
        QCOMPARE(AccumulatedProjectQuery::choiceIds(choices), (QStringList{"11", "12"}));
        QCOMPARE(AccumulatedProjectQuery::choiceName(choices.at(0)), QStringLiteral("万科城一期"));
        const auto mapList = maps.value(0).value(0).value<QList<QMap<QString, QVariant>>>();
        QCOMPARE(mapList.value(1).value(QStringLiteral("xmmc")).toString(), QStringLiteral("万科城二期"));
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
    }
};

QTEST_MAIN(TestHostDialogs)
#include "tst_hostdialogs.moc"
