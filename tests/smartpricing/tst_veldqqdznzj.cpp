#include "cloudjson.h"
#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudsources.h>
#include <cloud/cloudworkerrequest.h>
#include <smartpricing/pricingmatchreply.h>
#include <smartpricing/tznyzj.h>
#include <smartpricing/veldqqdznzj.h>

#include <hostapi/basedataitem.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/users.h>
#include <hostapi/zfiltersearchbox.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QCheckBox>
#include <QPushButton>
#include <QtTest>

using namespace cloudjson;
using namespace loginanswers;

namespace {
QJsonObject matched(int id, const QJsonValue &zjnr = QString())
{
    return QJsonObject{{"id", id},        {"qdly", "2"},      {"qdbh", QStringLiteral("03041100%1").arg(id)},
                       {"xmmc", "配线"},   {"jldw", "m"},      {"xmtz", "铜芯"},
                       {"gznr", "穿线"},   {"zhdj", 12.5 * id}, {"zjnr", zjnr}};
}

QString linesText(const QList<cloudZjnr> &lines)
{
    QStringList out;
    for (const cloudZjnr &l : lines) {
        QStringList fees;
        for (const cloudFymb &f : l.getFymblist())
            fees << f.getFybh() + ':' + f.getJe();
        out << QStringLiteral("%1<%2 %3 %4 %5 %6 [%7]")
                   .arg(l.getId()).arg(l.getParentId()).arg(l.getType(), l.getDebh(), l.getZhdj(), l.getZhhj(),
                                                             fees.join(','));
    }
    return out.join(" | ");
}
}

class TestVelDqqdznzj : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<JJBTableBase> table;
    BaseDataItem *bill = nullptr;

    BaseDataItem *addBill(BaseDataItem *parent, qint64 id, const QString &kind)
    {
        auto item = std::make_unique<BaseDataItem>(id, BaseDataItem::BillKind);
        item->setData(BaseDataItem::CodeRole, "030412004001");
        item->setData(BaseDataItem::NameRole, "配线");
        item->setData(BaseDataItem::UnitRole, "m");
        item->setData(BaseDataItem::FeaturesRole, "1.名称：管内穿线");
        item->setData(BaseDataItem::WorkContentRole, "1.配线");
        item->setData(BaseDataItem::KindRole, kind);
        return parent->appendChild(std::move(item));
    }
    std::unique_ptr<VelDqqdznzj> open(int tableKind = JJBTableBase::BillTableKind)
    {
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        ProjectSettingHelper::SetProjectSettingsInfo({"2024年05月", "四川省成都市金牛区", "510106", "", "简易计税", ""});
        table = std::make_unique<JJBTableBase>("分部分项", tableKind);
        bill = addBill(table->rootItem(), 77, "gb24");
        fx->channel().replyOk(serverList());
        auto dlg = std::make_unique<VelDqqdznzj>();
        dlg->setCurrJjb(table.get());
        dlg->CreateUI();
        dlg->setAutoMatch();
        dlg->sources()->standardBox()->setChecked(true);
        dlg->setCurrQd(bill);
        return dlg;
    }
    static void settle(VelDqqdznzj &dlg)
    {
        QTRY_VERIFY_WITH_TIMEOUT(!dlg.isLoading(), 5000);
    }

private slots:
    void matchRequestAndProjectInfo_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("selfMade");
        QTest::addColumn<QJsonObject>("billJson");
        QTest::addColumn<QString>("xxdezy");
        const QJsonObject common{{"xmmc", "配线"}, {"gznr", "1.配线"}, {"xmtz", "1.名称：管内穿线"}, {"dw", "m"},
                                 {"guidb", "77"}};
        QJsonObject plain = common, measure = common;
        plain.insert("qdbh", "030412004001");
        plain.insert("sjkm", "GB24");
        measure.insert("qdbh", "011701001001");
        measure.insert("sjkm", "自编");
        QTest::newRow("bill") << "gb24" << false << plain << "03";
        QTest::newRow("self-made measure bill") << "ZJXQDA" << true << measure << "";
    }
    void matchRequestAndProjectInfo()
    {
        QFETCH(QString, kind);
        QFETCH(bool, selfMade);
        auto dlg = open();
        bill->setData(BaseDataItem::KindRole, kind);
        bill->setSelfMade(selfMade);
        bill->setCsQdbh("011701001001");
        dlg->sources()->accumulatedBox()->setChecked(true);
        dlg->searchBox()->setText("铜芯");
        fx->channel().replyOk(QJsonArray{matched(1), matched(2)});
        fx->channel().replyOk(QJsonObject{{"xmmc", "锦江花园"}, {"oper", 0}, {"scrmc", "李四"}});
        dlg->matchButton()->click();
        QVERIFY(dlg->isLoading());
        QVERIFY(!dlg->titleBar()->isEnabled());
        settle(*dlg);
        const QJsonObject cond{{"jsfsIndex", 1}, {"jswjIndex", 0}, {"delbIndex", 0}, {"ddCode", "510106"},
                               {"dateB", "2024-05"}, {"qdly", 3}, {"gcids", QJsonArray()}, {"qdkey", "铜芯"}};
        QJsonObject expectedCond = cond;
        QFETCH(QString, xxdezy);
        expectedCond.insert("xxdezy", xxdezy);
        QFETCH(QJsonObject, billJson);
        const QList<QJsonObject> sent = fx->channel().requests();
        QCOMPARE(sent.size(), 3);
        QCOMPARE(sent.at(1), envelope("kv_token_user", method("getppqd", {{"usetype", "1"}, {"ltdID", "-1"},
                                                                          {"cond", expectedCond}, {"getzj", "1"},
                                                                          {"tagNum", "10"}, {"data", QJsonArray{billJson}}}), 16));
        QCOMPARE(sent.at(2), envelope("kv_token_user", method("intelligencezjforpersonprojectinfo", {{"id", 1}, {"ly", 2}}), 16));
        QCOMPARE(dlg->listModel()->rowCount(), 2);
        QCOMPARE(dlg->listModel()->cellValue(1, "zhdj").toString(), QStringLiteral("25.00"));
        QCOMPARE(dlg->projectInfoText(), QStringLiteral("项目名称：锦江花园\n上传人：李四\n"));
        QVERIFY(!dlg->isLoading());
        QVERIFY(dlg->titleBar()->isEnabled());
    }

    void replyParsing_data()
    {
        QTest::addColumn<QJsonValue>("zjnr");
        QTest::addColumn<QString>("lines");
        const QJsonObject fees{{"MB", QJsonObject{{"ROWS", QJsonObject{{"FH", QJsonArray{QJsonObject{{"BH", "A"}, {"JE", "5"}}}}}}}}};
        const QJsonObject rows{{"MB", QJsonObject{{"Rows", QJsonObject{{"Row", QJsonObject{{"BH", "B"}, {"JE", "7"}}}}}}}};
        QTest::newRow("no DJ, empty HJ") << QJsonValue("{\"zjnr\":[{\"TYPE\":\"DE\",\"BH\":\"4-1\",\"GCL\":\"1\",\"HJ\":\"\"}]}")
                                         << "1<-1 DE 4-1 0.00 0.00 []";
        QTest::newRow("rounding and kinds")
            << QJsonValue("{\"zjnr\":[{\"TYPE\":\"JS\",\"BH\":\"J\",\"DJ\":\"3.456\"},{\"TYPE\":\"XP\",\"BH\":\"X\",\"DJ\":2,\"HJ\":4.005},{\"TYPE\":\"ZZ\"}]}")
            << "1<-1 JS J 3.46  [] | 2<-1 XP X 2.00 4.01 []";
        QTest::newRow("children and fee spellings")
            << QJsonValue(QJsonObject{{"zjnr", QJsonArray{QJsonObject{{"TYPE", "DE"}, {"BH", "D"}, {"DJ", 1}, {"ZhfMbMx", fees},
                                                                      {"ITEM", QJsonArray{QJsonObject{{"TYPE", "CL"}, {"BH", "C"}, {"TJ", 9}, {"ZhfMbMx", rows}},
                                                                                          QJsonObject{{"TYPE", "DE"}, {"BH", "no"}}}}}}}})
            << "1<-1 DE D 1.00 0.00 [A:5] | 2<1 CL C 9.00 0.00 [B:7]";
        QTest::newRow("not JSON") << QJsonValue("zjnr") << "";
    }
    void replyParsing()
    {
        QFETCH(QJsonValue, zjnr);
        const PricingMatchReply reply(QJsonArray{matched(3, zjnr)});
        QCOMPARE(reply.size(), 1);
        const CloudZjBean &bean = reply.bill(0);
        QCOMPARE(QStringList({bean.getXmbh(), bean.getDw(), QString::number(bean.getLy()), QString::number(bean.getId())}),
                 QStringList({"030411003", "m", "2", "3"}));
        QTEST(linesText(bean.getZjnrlist()), "lines");
        QVERIFY(reply.contains(0) && !reply.contains(1));
    }

    void staleRepliesDropped()
    {
        auto dlg = open();
        QList<bool> steps;
        connect(dlg.get(), &VelDqqdznzj::signalNextPage, this, [&](bool skip) { steps << skip; });
        fx->channel().replyOk(QJsonArray{matched(1)});
        dlg->matchButton()->click();
        const unsigned generation = dlg->generation();
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        dlg->skipPricedBox()->setChecked(true);
        dlg->nextButton()->click();
        QTest::qWait(50);
        QCOMPARE(steps, QList<bool>{true});
        QCOMPARE(dlg->generation(), 0u);
        QCOMPARE(dlg->listModel()->rowCount(), 0);
        QVERIFY(!dlg->isLoading());
        // A late delivery of the old generation, or for another bill, changes nothing either.
        dlg->slotZjUpdata(int(generation), bill);
        dlg->slotZjUpdata(0, bill);
        QCOMPARE(dlg->listModel()->rowCount(), 0);
        QCOMPARE(fx->channel().requests().size(), 2);
    }

    void closingWhileMatching()
    {
        auto dlg = open();
        fx->channel().replyOk(QJsonArray{matched(1)});
        dlg->matchButton()->click();
        dlg.reset();
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTest::qWait(20);
        QVERIFY(fx->exceptionReports().isEmpty());
    }

    void errorReplyShowsMessage()
    {
        auto dlg = open();
        fx->channel().replyError(1, "清单来源参数错误");
        dlg->matchButton()->click();
        settle(*dlg);
        QCOMPARE(fx->messageTexts(), QStringList{"清单来源参数错误"});
        QVERIFY(!dlg->isLoading());
        QVERIFY(dlg->titleBar()->isEnabled());
    }

    void organisationMeasureRefused()
    {
        auto dlg = open(JJBTableBase::MeasureTableKind);
        auto section = std::make_unique<BaseDataItem>(5, BaseDataItem::SectionKind);
        section->setExclude(true);
        BaseDataItem *measure = addBill(table->rootItem()->appendChild(std::move(section)), 6, "ZJXQDB");
        dlg->setCurrQd(measure);
        dlg->matchButton()->click();
        QCOMPARE(fx->messages().size(), 1);
        QCOMPARE(fx->messages().first().title, QStringLiteral("提示"));
        QCOMPARE(fx->messages().first().text, QStringLiteral("当前清单是组织措施项目，不能使用该功能"));
        QCOMPARE(fx->messages().first().buttons, QStringList{"确定"});
        QCOMPARE(fx->channel().requests().size(), 1);
        QVERIFY(!dlg->isLoading());
    }

    void chooseHandsTheRowToTheHost()
    {
        auto dlg = open();
        fx->channel().replyOk(QJsonArray{matched(1), matched(2)});
        fx->channel().replyOk(QJsonObject());
        dlg->matchButton()->click();
        settle(*dlg);
        QList<QPair<QJsonObject, bool>> chosen;
        connect(dlg.get(), &VelDqqdznzj::signalZjChecked, this, [&](QJsonObject &o, bool r) { chosen.append({o, r}); });
        dlg->replaceBox()->setChecked(true);
        emit dlg->listView()->signalButtonClicked(dlg->listModel()->index(1, 5));
        QCOMPARE(chosen, (QList<QPair<QJsonObject, bool>>{{matched(2), true}}));
        QCOMPARE(dlg->replaceBox()->text(), QStringLiteral("选用时替换项目特征"));
    }

    void modificationAsksForUploadLibraries()
    {
        ServicesUtil::publish();
        auto dlg = open();
        fx->channel().replyOk(QJsonArray{QJsonObject{{"bzqdkid", "k1"}, {"mc", "我的清单库"}}});
        fx->answerNextModal([](QDialog *) { return 0; });
        dlg->modifyButton()->click();
        QTRY_COMPARE(dlg->uploadLibraries().size(), 1);
        QCOMPARE(fx->channel().requests().last(), envelope(QString(), method("personchapterinfoforuploadqd"), 16));
        qApp->setProperty("ServicesUtil", QVariant());
    }

    void batchSetupGuards_data()
    {
        QTest::addColumn<bool>("loggedIn");
        QTest::addColumn<bool>("standard");
        QTest::addColumn<QString>("message");
        QTest::newRow("login refused") << false << true << "请选择服务器";
        QTest::newRow("no source") << true << false << "请勾选清单方案来源";
        QTest::newRow("ok") << true << true << "";
    }
    void batchSetupGuards()
    {
        QFETCH(bool, loggedIn);
        QFETCH(bool, standard);
        if (loggedIn)
            Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(serverList(loggedIn));
        TZnyzj dlg;
        dlg.CreateUI();
        QVERIFY(dlg.skipPricedBox()->isChecked());
        dlg.sources()->standardBox()->setChecked(standard);
        dlg.sources()->accumulatedBox()->setChecked(false);
        QList<QVariantList> results;
        connect(&dlg, &TZnyzj::signalQdButtonClicked, this, [&](LtdInfo s, bool skip, int type, QStringList ids) {
            results << QVariantList{s.getToken(), skip, type, ids};
        });
        if (!loggedIn)
            fx->answerNextModal([](QDialog *) { return 0; });
        dlg.findChild<QPushButton *>("btnOk")->click();
        QFETCH(QString, message);
        QCOMPARE(fx->messageTexts().join(""), message);
        QCOMPARE(results.size(), message.isEmpty() ? 1 : 0);
        if (!results.isEmpty())
            QCOMPARE(results.first(), (QVariantList{"kv_token_user", true, 1, QStringList()}));
    }
};

QTEST_MAIN(TestVelDqqdznzj)
#include "tst_veldqqdznzj.moc"
