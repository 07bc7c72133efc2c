#include "cloudjson.h"
#include "hosttestcase.h"
#include "loginanswers.h"

#include <billstoragehost.h>
#include <tierbillstorage.h>
#include <hostcontext.h>

#include <storage/chapterchoice.h>
#include <storage/cloudstorage.h>
#include <storage/chaptertreemodel.h>
#include <storage/qdtreeitem.h>
#include <storage/storagerequests.h>
#include <storage/tbzqdycc.h>
#include <storage/tbzqdycc_xjqdk.h>
#include <storage/ttotalycc.h>
#include <storage/tycc.h>
#include <storage/yccxmtzycc.h>

#include <hostapi/apptype.h>
#include <hostapi/basedataitem.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <hostapi/zbasecombox.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QUndoStack>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTreeView>
#include <QtTest>

using namespace cloudjson;

namespace {
QByteArray sentAs(const QString &token, const QJsonObject &data)
{
    return QJsonDocument(envelope(token, data, AppType())).toJson(QJsonDocument::Compact);
}
QByteArray compact(const QJsonObject &o)
{
    return QJsonDocument(o).toJson(QJsonDocument::Compact);
}
}

class TestStorageWizard : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<TTotalYcc> dlg;
    QTemporaryDir cloudDir;
    std::unique_ptr<BaseDataItem> section;

    // The demo user on a fresh embedded cloud; two bills under a section, the
    // second without a name (the cloud refuses it).
    QList<BaseDataItem *> embeddedCloud()
    {
        auto service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Full);
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        const QJsonObject login = object(exchange(envelope(KvToken, method("login", {{"username", ServiceSeed::DemoUser},
                                                                                    {"password", ServiceSeed::DemoPassword}}))));
        Users::Instance()->Kvy()->setLogin(login.value("userid").toVariant().toString(), login.value("username").toString(),
                                           login.value("session").toString());
        section = std::make_unique<BaseDataItem>(1, BaseDataItem::SectionKind);
        section->setData(BaseDataItem::NameRole, "消防工程");
        BaseDataItem *bill = section->appendChild(std::make_unique<BaseDataItem>(2, BaseDataItem::BillKind));
        const QList<QPair<int, QVariant>> values{{BaseDataItem::CodeRole, "030905001001"}, {BaseDataItem::NameRole, "防火封堵"},
            {BaseDataItem::UnitRole, "m2"}, {BaseDataItem::FeaturesRole, "1.材料：防火泥\n2.部位：穿墙洞口"},
            {BaseDataItem::UnitPriceRole, 4321.5}};
        for (const auto &v : values)
            bill->setData(v.first, v.second);
        BaseDataItem *unnamed = section->appendChild(std::make_unique<BaseDataItem>(3, BaseDataItem::BillKind));
        unnamed->setData(BaseDataItem::CodeRole, "030905001002");
        return {bill, unnamed};
    }
    static QJsonObject billQuery()
    {
        return {{"qdbh", "030905001001"}, {"xmmc", "防火封堵"}, {"jldw", "m2"}, {"xmtz", "1.材料：防火泥\n2.部位：穿墙洞口"},
                {"gznr", ""}};
    }
    // The best "getppqd" match of the bill on the personal cloud.
    static QJsonObject ppqd()
    {
        QJsonObject request = method("getppqd", {{"usetype", "1"}, {"ltdID", -1}, {"cond", QJsonObject{{"qdly", 1}}},
                                                 {"getzj", "1"}, {"tagNum", 1}, {"data", QJsonArray{billQuery()}}});
        return array(exchange(envelope(KvTokenUser, request))).first().toObject();
    }

    QStringList methods() const
    {
        QStringList list;
        for (const QJsonObject &r : fx->channel().requests())
            list << r.value("data").toObject().value("method").toString();
        return list;
    }
    // The wizard on the personal cloud with `libraries` listed.
    void open(const QJsonArray &libraries)
    {
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(loginanswers::serverList());
        fx->channel().replyOk(libraries);
        dlg = std::make_unique<TTotalYcc>();
        dlg->CreateUI();
        dlg->setQdcount(2);
    }
    QStringList comboTexts() const
    {
        QStringList texts;
        for (int i = 0; i < dlg->libraryPage()->libraryCombo()->count(); ++i)
            texts << dlg->libraryPage()->libraryCombo()->itemText(i);
        return texts;
    }
    // Page two with a leaf chapter chosen.
    void toChapterPage()
    {
        fx->channel().replyOk();                                                       // edit permission
        fx->channel().replyOk(QJsonArray{QJsonObject{{"_id", "z1"}, {"zjmc", "土建"}, {"state", "open"}}});
        dlg->nextButton()->click();
        QCOMPARE(dlg->currentStep(), short(1));
        TYcc *page = dlg->chapterPage();
        page->treeView()->setCurrentIndex(page->treeModel()->index(0, 0));
    }

private slots:
    void initTestCase() { qRegisterMetaType<LtdInfo *>("LtdInfo*"); }
    void init()
    {
        HostTestCase::init();
        ServerRegistry::instance()->reset();
    }
    void cleanup()
    {
        dlg.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void requestJson_data()
    {
        QTest::addColumn<QJsonObject>("sent");
        QTest::addColumn<QJsonObject>("expected");
        static LtdInfo personal("个人云", KvTokenUser, 0, 0, true), korvane("Korvane云", KvToken, 0, 0, true),
            east("华东企业", "ent-tok", 1, 11, true);
        const QJsonObject para{{"qdkid", ""}, {"qdkmc", "新库"}};
        QTest::newRow("library list") << StorageRequests::libraryList(&east).toJson()
            << envelope("ent-tok", method("getBZQDKList", {{"reqeuestype", 1}, {"qyid", 11}}));
        QTest::newRow("library permission") << StorageRequests::libraryPermission(&east, "7").toJson()
            << envelope("ent-tok", method("getQDKQX", {{"reqeuestype", 1}, {"qyid", 11}, {"qdkid", "7"}}));
        QTest::newRow("new library") << StorageRequests::newLibrary(&personal, "新库").toJson()
            << envelope(KvTokenUser, method("editNZQDK", {{"reqeuestype", 0}, {"qyid", 0}, {"czlx", 0}, {"para", para}}));
        QTest::newRow("permission korvane") << StorageRequests::editPermission(&korvane).toJson()
            << envelope(KvToken, method("listeditpermissionjudgmentforenterprise", {{"qiyeID", 0}, {"usetype", 3}}));
        QTest::newRow("permission personal") << StorageRequests::editPermission(&personal).toJson()
            << envelope(KvTokenUser, method("listeditpermissionjudgmentforperson", {{"qiyeID", -1}, {"usetype", 1}}));
        const QJsonObject tree{{"sfjzzsm", "0"}, {"zjid", "z1"}, {"bzqdkid", "7"}};
        QTest::newRow("tree kv") << StorageRequests::chapterTree(&korvane, "7", "z1").toJson()
            << envelope(KvToken, method("getchaptertreeforkv", tree));
        QJsonObject enterpriseTree = tree;
        enterpriseTree.insert("qiyeID", 11);
        QTest::newRow("tree enterprise") << StorageRequests::chapterTree(&east, "7", "z1").toJson()
            << envelope("ent-tok", method("getchaptertreeforenterprise", enterpriseTree));
        const QJsonObject task{{"mark", "1"}, {"taskid", "t1"}, {"qdcount", "3"}, {"bzqdkid", "7"}, {"zjid", ""}};
        QJsonObject korvaneTask = task; // the personal task is checked as sent by the wizard
        korvaneTask.insert("qiyeID", 0);
        QTest::newRow("task korvane") << StorageRequests::savingTask(&korvane, true, "t1", "3", "7", "").toJson()
            << envelope(KvToken, method("listsavingtaskbeginforenterprise", korvaneTask));
    }
    void requestJson()
    {
        QFETCH(QJsonObject, sent);
        QFETCH(QJsonObject, expected);
        QCOMPARE(compact(sent), sentAs(expected.value("orgin_token").toString(), expected.value("data").toObject()));
    }

    void chapterChecks_data()
    {
        QTest::addColumn<QList<bool>>("flags"); // root, replace, child chapters, from the tree, leaf
        QTest::addColumn<QString>("zjid");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("root") << QList<bool>{true, false, false, false, false} << "null" << "";
        QTest::newRow("root, child chapters, none") << QList<bool>{true, false, true, false, false} << "null" << "请选择一个章节";
        QTest::newRow("root, child chapters, folder") << QList<bool>{true, false, true, false, false} << "z" << "请选择末级章节";
        QTest::newRow("root, child, replace") << QList<bool>{true, true, true, false, false} << "null" << "";
        QTest::newRow("tree, replace, folder") << QList<bool>{false, true, false, true, false} << "z" << "";
        QTest::newRow("tree, replace, none") << QList<bool>{false, true, false, true, false} << "null" << "请选择一个章节";
        QTest::newRow("tree, folder") << QList<bool>{false, false, false, true, false} << "z" << "请选择末级章节";
        QTest::newRow("tree, none") << QList<bool>{false, false, false, true, false} << "null" << "请选择一个章节";
        QTest::newRow("tree, leaf") << QList<bool>{false, false, false, true, true} << "z" << "";
        QTest::newRow("no location, folder") << QList<bool>{false, false, false, false, false} << "null" << "请选择末级章节";
        QTest::newRow("no location, leaf") << QList<bool>{false, false, false, false, true} << "null" << "";
    }
    void chapterChecks()
    {
        QFETCH(QList<bool>, flags);
        QFETCH(QString, zjid);
        ChapterChoice c{flags[0], flags[1], flags[2], flags[3], flags[4], zjid};
        QTEST(c.refusal(), "refusal");
    }

    // The library list: an empty first item for no libraries, "新建清单库"
    // last; a refused list shows its "msg" once per page opening.
    void libraryList()
    {
        open(QJsonArray());
        QCOMPARE(comboTexts(), (QStringList{"", "新建清单库"}));
        QCOMPARE(compact(fx->channel().requests().last()),
                 sentAs(KvTokenUser, method("getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}})));
        for (int i = 0; i < 2; ++i) {
            fx->channel().replyError(3, "无权查看");
            dlg->libraryPage()->initQdk();
            QCOMPARE(comboTexts(), QStringList{"新建清单库"});
        }
        QCOMPARE(fx->messageTexts(), QStringList{"无权查看"});
        fx->channel().replyOk(QJsonArray{QJsonObject{{"mc", "甲"}, {"id", "7"}}, QJsonObject{{"mc", "乙"}, {"id", "8"}}});
        dlg->libraryPage()->initQdk();
        QCOMPARE(comboTexts(), (QStringList{"甲", "乙", "新建清单库"}));
        QCOMPARE(dlg->GetXmk(), QStringLiteral("7"));
        // Choosing "新建清单库" without the edit right opens no dialog.
        fx->channel().replyError(3, "没有编辑权限");
        fx->channel().replyOk(QJsonArray{QJsonObject{{"mc", "甲"}, {"id", "7"}}});
        dlg->libraryPage()->libraryCombo()->setCurrentIndex(2);
        QVERIFY(fx->modalRuns().isEmpty());
        QCOMPARE(fx->messageTexts().last(), QStringLiteral("没有编辑权限"));
        QCOMPARE(dlg->GetXmk(), QStringLiteral("7"));
    }

    void newLibrary_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("reply"); // 0 created, 5 refused, -1 no reply
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("result"); // 9 still open
        QTest::newRow("empty") << 0 << 0 << "名称不能为空！" << 9;
        QTest::newRow("50 characters") << 50 << 0 << "" << int(QDialog::Accepted);
        QTest::newRow("51 characters") << 51 << 0 << "请输入50个字符以内任意文本！" << 9;
        QTest::newRow("name taken") << 3 << 5 << "清单库名称已存在" << 9;
        QTest::newRow("no reply") << 3 << -1 << "" << int(QDialog::Rejected);
    }
    void newLibrary()
    {
        QFETCH(int, length);
        QFETCH(int, reply);
        LtdInfo personal("个人云", KvTokenUser, 0, 0, true);
        TBzqdycc_Xjqdk dialog(&personal, nullptr);
        QCOMPARE(dialog.size(), QSize(380, 135));
        QCOMPARE(dialog.nameEdit()->placeholderText(), QStringLiteral("允许输入50个字符以内任意文本"));
        if (reply == 0)
            fx->channel().replyOk(QJsonObject{{"id", "9"}, {"mc", "x"}});
        else if (reply > 0)
            fx->channel().replyError(reply, "清单库名称已存在");
        dialog.setResult(9);
        const QString name(length, QChar(u'库'));
        dialog.nameEdit()->setText(name);
        dialog.okButton()->click();
        QTEST(fx->messageTexts().join(""), "message");
        QTEST(dialog.result(), "result");
        if (length > 0 && length <= 50)
            QCOMPARE(fx->channel().lastRequest().value("data").toObject().value("para").toObject().value("qdkmc").toString(), name);
        else
            QVERIFY(fx->channel().requests().isEmpty());
    }

    // A "closed" chapter shows a placeholder until its arrow is pressed; an
    // empty library offers "默认章节".
    void lazyChapters()
    {
        LtdInfo personal("个人云", KvTokenUser, 0, 0, true);
        TYcc page;
        page.CreateUI();
        QAbstractItemModelTester tester(page.treeModel(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        fx->channel().replyOk(QJsonArray{QJsonObject{{"_id", "a"}, {"zjmc", "安装"}, {"state", "closed"}},
                                         QJsonObject{{"_id", "b"}, {"zjmc", "土建"}, {"state", "open"}}});
        page.loadTree(&personal, "7");
        ChapterTreeModel *model = page.treeModel();
        const QModelIndex a = model->index(0, 0);
        QVERIFY(ChapterTreeModel::waitsForChildren(model->itemForIndex(a)));
        QCOMPARE(model->rowCount(model->index(1, 0)), 0);
        fx->channel().replyOk(QJsonArray{QJsonObject{{"_id", "a1"}, {"zjmc", "电气"}, {"state", "open"}}});
        page.slotExpand(a);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject().value("zjid").toString(), QStringLiteral("a"));
        QCOMPARE(model->rowCount(a), 1);
        QCOMPARE(model->index(0, 0, a).data(Qt::WhatsThisRole).toString(), QStringLiteral("a1"));
        QVERIFY(page.treeView()->isExpanded(a));
        page.treeView()->setCurrentIndex(model->index(0, 0, a));
        QCOMPARE(page.getZjLevel(), 2);
        QVERIFY(page.isFinalTree());
        page.slotExpand(model->index(0, 0, a)); // a leaf asks nothing
        QCOMPARE(fx->channel().requests().size(), 2);

        fx->channel().replyOk(QJsonArray());
        page.loadTree(&personal, "8");
        QCOMPARE(model->index(0, 0).data().toString(), QStringLiteral("默认章节"));
        QCOMPARE(page.getZjid(), QStringLiteral("null"));
        page.treeView()->setCurrentIndex(model->index(0, 0));
        QCOMPARE(page.getZjid(), page.getMRId());
        QVERIFY(page.isAddMRZj());
        page.findChild<QRadioButton *>("radGml")->setChecked(true);
        page.UpText("定义块");
        QVERIFY(page.radZjxxChecked() && !page.findChild<QRadioButton *>("radGml")->isEnabled());
    }

    // "下一步": a server first, then the permission, then a library; a
    // broken transport is reported under "TotalYcc".
    void nextStep_data()
    {
        QTest::addColumn<bool>("login");
        QTest::addColumn<QJsonArray>("libraries");
        QTest::addColumn<int>("permission"); // reply code; -1 broken transport
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("step");
        const QJsonArray one{QJsonObject{{"mc", "甲"}, {"id", "7"}}};
        QTest::newRow("no server") << false << one << 0 << "请选择服务器" << 0;
        QTest::newRow("no permission") << true << one << 3 << "没有编辑权限" << 0;
        QTest::newRow("no library") << true << QJsonArray() << 0 << "请选择清单库" << 0;
        QTest::newRow("broken transport") << true << one << -1 << "" << 0;
        QTest::newRow("allowed") << true << one << 0 << "" << 1;
    }
    void nextStep()
    {
        QFETCH(bool, login);
        QFETCH(QJsonArray, libraries);
        QFETCH(int, permission);
        open(libraries);
        if (!login)
            dlg->libraryPage()->serverChoice()->slotSaveCurrServer(-1);
        if (permission > 0)
            fx->channel().replyError(permission, "没有编辑权限");
        else if (permission == 0)
            fx->channel().replyOk();
        else
            fx->channel().failWith("connection reset");
        fx->channel().replyOk(QJsonArray());
        dlg->nextButton()->click();
        QTEST(fx->messageTexts().join(""), "message");
        QTEST(int(dlg->currentStep()), "step");
        QCOMPARE(fx->exceptionReports().join("").contains("TotalYcc"), permission < 0);
        QCOMPARE(methods().contains("listeditpermissionjudgmentforperson"), login);
    }

    // A refused task leaves the wizard open and emits nothing; every attempt
    // sends a new task id and the signal carries the one that was sent.
    void savingTask()
    {
        open(QJsonArray{QJsonObject{{"mc", "甲"}, {"id", "7"}}});
        dlg->show();
        toChapterPage();
        QSignalSpy spy(dlg.get(), &TTotalYcc::signalCheckQdData);
        fx->channel().replyOk();
        fx->channel().replyError(3, "任务已满");
        dlg->okButton()->click();
        QCOMPARE(spy.count(), 0);
        QVERIFY(dlg->isVisible());
        QCOMPARE(fx->messageTexts().last(), QStringLiteral("任务已满"));
        const QString first = fx->channel().lastRequest().value("data").toObject().value("taskid").toString();
        fx->channel().replyOk();
        fx->channel().replyOk(QJsonObject{{"taskid", "x"}});
        dlg->okButton()->click();
        const QJsonObject sent = fx->channel().lastRequest().value("data").toObject();
        QCOMPARE(sent, (QJsonObject{{"method", "listsavingtaskbeginforperson"}, {"qiyeID", -1}, {"mark", "0"},
                                    {"taskid", sent.value("taskid")}, {"qdcount", "2"}, {"bzqdkid", "7"}, {"zjid", "z1"}}));
        QVERIFY(sent.value("taskid").toString() != first);
        QCOMPARE(spy.count(), 1);
        QVERIFY(!dlg->isVisible());
        const QList<QVariant> args = spy.first();
        QCOMPARE(args.at(1).toString(), sent.value("taskid").toString());
        QCOMPARE(args.at(2).toString(), QStringLiteral("z1"));
        QCOMPARE(methods(), (QStringList{"getserverlist", "getBZQDKList", "listeditpermissionjudgmentforperson",
                                         "getchaptertreeforperson", "listeditpermissionjudgmentforperson",
                                         "listsavingtaskbeginforperson", "listeditpermissionjudgmentforperson",
                                         "listsavingtaskbeginforperson"}));
        // "取消" sends nothing.
        open(QJsonArray{QJsonObject{{"mc", "甲"}, {"id", "7"}}});
        const int before = fx->channel().requests().size();
        dlg->cancelButton()->click();
        QCOMPARE(fx->channel().requests().size(), before);
    }

    // The wizard on the embedded cloud: the bills land in the library and
    // the cloud's matching finds them with their price.
    void uploadIsFoundByMatching()
    {
        const QList<BaseDataItem *> bills = embeddedCloud();
        RURecordControl::undoStack()->clear();
        HostContext host;
        dlg = std::make_unique<TTotalYcc>();
        BillStorageHost::prepare(*dlg, host, bills);
        dlg->nextButton()->click();
        dlg->chapterPage()->findChild<QRadioButton *>("radZjtj")->setChecked(true);
        QModelIndex leaf = dlg->chapterPage()->treeModel()->index(0, 0);
        for (; dlg->chapterPage()->treeModel()->rowCount(leaf) > 0; leaf = leaf.model()->index(0, 0, leaf))
            dlg->chapterPage()->slotExpand(leaf);
        dlg->chapterPage()->treeView()->setCurrentIndex(leaf);
        dlg->okButton()->click();
        QCOMPARE(fx->messageTexts(), QStringList{"云存储完成，共保存1条清单。1条清单未能保存，已用标记色标出。"});
        // The refused bill is marked in one undo step.
        QCOMPARE(bills[1]->text(BaseDataItem::MarkColorRole), QStringLiteral("#FF4D4F"));
        QCOMPARE(RURecordControl::undoStack()->count(), 1);
        RURecordControl::undoStack()->undo();
        QVERIFY(bills[1]->text(BaseDataItem::MarkColorRole).isEmpty());
        QVERIFY(bills[0]->text(BaseDataItem::MarkColorRole).isEmpty());

        QJsonObject similar = method("getsimilarbillprices", billQuery());
        similar.insert("qiyeID", -1), similar.insert("usetype", 1), similar.insert("matchNum", 1);
        const QJsonObject found = array(exchange(envelope(KvTokenUser, similar))).first().toObject();
        QCOMPARE(found.value("xmmc").toString(), QStringLiteral("防火封堵"));
        QCOMPARE(found.value("zhdj").toDouble(), 4321.5);
        const QJsonObject matched = ppqd();
        QCOMPARE(matched.value("zhdj").toDouble(), 4321.5);
        QVERIFY(matched.value("zjnr").toString().contains("防火封堵"));
    }

    // Features and schemes stored from their dialogs: features are found by
    // the feature match (in the features library), schemes priced by "getppqd".
    void tierStorage_data()
    {
        QTest::addColumn<int>("content");
        QTest::addColumn<QString>("library");
        QTest::newRow("features") << int(BillUpload::BillOnly) << TierBillStorage::FeatureLibrary;
        QTest::newRow("schemes") << int(BillUpload::FullComposition) << TierBillStorage::SchemeLibrary;
    }
    void tierStorage()
    {
        QFETCH(int, content);
        QFETCH(QString, library);
        const QList<BaseDataItem *> bills = embeddedCloud();
        HostContext host;
        for (int run = 0; run < 2; ++run)
            QCOMPARE(BillStorageHost::storeInTier(host, bills.mid(0, 1), 0, content, library).saved, 1);
        QJsonObject match = method("matchqdtz", billQuery());
        match.insert("qiyeID", -1), match.insert("usetype", 1), match.insert("sourceMask", 1);
        match.insert("params", QJsonObject{{"pageSize", 50}});
        int inLibrary = 0;
        for (const QJsonValue &b : object(exchange(envelope(KvTokenUser, match))).value("bzqds").toArray())
            inLibrary += b.toObject().value("bzqdkmc").toString() == library;
        QCOMPARE(inLibrary, 2);
        QCOMPARE(ppqd().value("zhdj").toDouble(), content == BillUpload::BillOnly ? 0.0 : 4321.5);
        // Enterprise storage needs a logged-in enterprise server.
        QCOMPARE(BillStorageHost::storeInTier(host, bills, 1, content, library).saved, 0);
        QCOMPARE(fx->messageTexts().last(), QStringLiteral("请先登录企业云"));
    }

    // The feature and scheme dialogs: no tier checked at start (0), the
    // enterprise box only while "企业云" is clicked.
    void tierDialog_data()
    {
        QTest::addColumn<QStringList>("clicks");
        QTest::addColumn<int>("target");
        QTest::addColumn<bool>("comboShown");
        QTest::newRow("nothing") << QStringList{} << 0 << false;
        QTest::newRow("enterprise") << QStringList{"radQyy"} << 1 << true;
        QTest::newRow("enterprise then personal") << QStringList{"radQyy", "radGry"} << 0 << false;
    }
    void tierDialog()
    {
        QFETCH(QStringList, clicks);
        YccXmtzycc dialog;
        dialog.setNum(12);
        dialog.show();
        QCOMPARE(dialog.form().countLabel()->text(), QStringLiteral("12"));
        QSignalSpy spy(&dialog, &YccXmtzycc::signalCheckData);
        for (const QString &name : clicks)
            dialog.findChild<QRadioButton *>(name)->click();
        QTEST(dialog.form().enterpriseCombo()->isVisible(), "comboShown");
        dialog.findChild<QPushButton *>("btnOk")->click();
        QCOMPARE(spy.count(), 1);
        QTEST(spy.first().first().toInt(), "target");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        CloudStorage layout;
        QCOMPARE(layout.findChild<QLabel *>("lblX")->text() + layout.findChild<QLabel *>("lblBcdx")->text(),
                 QStringLiteral(" 项)保存对象"));
    }
};

QTEST_MAIN(TestStorageWizard)
#include "tst_storagewizard.moc"
