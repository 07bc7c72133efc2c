#include "cloudjson.h"
#include "hosttestcase.h"
#include "loginanswers.h"

#include <customfeaturelines.h>
#include <featureshost.h>
#include <featurelibraryseeder.h>
#include <hostcontext.h>
#include <projectdocument.h>

#include <cloud/cloudsources.h>
#include <cloud/cloudworkerrequest.h>
#include <features/featurecloudreply.h>
#include <features/featurestore.h>
#include <features/gclqdxmszn_xmxx.h>
#include <features/gclqdxmtz_txtz.h>
#include <features/gqdxmtzmszn.h>
#include <features/txmytz.h>

#include <hostapi/datalibrary.h>
#include <hostapi/hostconfig.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>
#include <hostapi/sqlaccess.h>
#include <hostapi/users.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTextEdit>
#include <QUndoStack>
#include <QtTest>

using namespace loginanswers;

namespace {
QJsonObject match(const QString &name, const QString &library = QString())
{
    QJsonObject m{{"guida", 7}, {"xmmc", name}, {"xmtz", QString(name + "特征")}, {"gznr", QString(name + "内容")}};
    if (!library.isEmpty())
        m.insert("bzqdkmc", library);
    return m;
}

QJsonObject matchReply(const QJsonArray &standard, const QJsonArray &projects, int all = 4)
{
    return QJsonObject{{"code", 0}, {"msg", ""}, {"allCount", all}, {"pageRowCount", 10},
                       {"data", QJsonObject{{"bzqds", standard}, {"jlqds", projects}}}};
}

// The code texts placed in a grid's code rows, blanks left out.
QStringList codeCells(QTableWidget *grid)
{
    QStringList codes;
    for (int row = 0; row < grid->rowCount(); row += 2)
        for (int column = 0; column < 2; ++column)
            if (grid->item(row, column) && grid->item(row, column)->text() != " ")
                codes << grid->item(row, column)->text();
    return codes;
}
}

class TestFeatures : public HostTestCase
{
    Q_OBJECT
private:
    BaseDataItem bill{501};
    BaseDataItem measure{502};
    std::unique_ptr<Gqdxmtzmszn> guide;

    void addCustom(const QString &code, const QString &text)
    {
        FeatureStore::ensureTables();
        DBM::clsDAC(FeatureStore::userDatabasePath())
            .execPrepared("INSERT INTO GB24_xmtz_ms (Xmbh, Xmmc, Xmtz) VALUES (?, '', ?)", {code, text});
    }
    int customRows()
    {
        DBM::clsDAC db(FeatureStore::userDatabasePath());
        DBM::clsDACResult r = db.execSql("SELECT COUNT(*) FROM GB24_xmtz_ms");
        return r.next() ? r.value(0).toInt() : -1;
    }
    void openGuide(bool loggedIn = false)
    {
        if (loggedIn)
            Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(serverList());
        guide = std::make_unique<Gqdxmtzmszn>();
    }
    QJsonObject cloudSearch(const QJsonObject &reply)
    {
        fx->channel().reply(reply);
        QSignalSpy shown(guide.get(), &Gqdxmtzmszn::signalUpdataTzData);
        guide->cloudRadio()->setChecked(true);
        [&] { QTRY_COMPARE(shown.count(), 1); }();
        return fx->channel().lastRequest();
    }

private slots:
    void init()
    {
        HostTestCase::init();
        FeatureLibrarySeeder::build(FeatureStore::libraryPath("GB24"), "GB24", QJsonArray());
        for (BaseDataItem *item : {&bill, &measure}) {
            item->setData(BaseDataItem::CodeRole, "030412004001");
            item->setData(BaseDataItem::NameRole, "配线");
            item->setData(BaseDataItem::FeaturesRole, "1.名称：桥架配线");
            item->setData(BaseDataItem::WorkContentRole, "1.配线");
        }
        bill.setData(BaseDataItem::KindRole, "gb24");
        bill.setReadOnly(false);
        measure.setData(BaseDataItem::KindRole, "ZJXQDA");
    }
    void cleanup()
    {
        guide.reset();
        CloudWorkerRequest::waitForWorkers(5000);
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void customTablesAsCreated_data()
    {
        QTest::addColumn<QString>("library");
        for (const char *name : {"QGQD", "N8QD", "N3QD", "GB24"})
            QTest::newRow(name) << QString(name);
    }
    void customTablesAsCreated()
    {
        QFETCH(QString, library);
        FeatureStore::ensureTables();
        DBM::clsDAC db(FeatureStore::userDatabasePath());
        DBM::clsDACResult r = db.execPrepared("SELECT sql FROM sqlite_master WHERE name = ?", {QVariant(library + "_xmtz_ms")});
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toString(), "CREATE TABLE " + library + "_xmtz_ms (FID INTEGER PRIMARY KEY AUTOINCREMENT, "
                                        "Xmbh VARCHAR(40) NOT NULL,  Xmmc VARCHAR(40) NOT NULL, Xmtz VARCHAR(400) NOT NULL)");
        QCOMPARE(FeatureStore::customTable(FeatureStore::libraryPath(library), "prev"), library + "_xmtz_ms");
    }

    void specialtyTables_data()
    {
        QTest::addColumn<QString>("library");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("specialty");
        QTest::newRow("QGQD has no 6") << "QGQD" << "060101001" << "";
        QTest::newRow("N8QD 6") << "N8QD" << "060101001" << "cs_de";
        QTest::newRow("N3QD 2") << "N3QD" << "020101001" << "fg_de";
        QTest::newRow("GB24 9") << "GB24" << "090101001" << "bp_de";
    }
    void specialtyTables()
    {
        QFETCH(QString, library);
        QFETCH(QString, code);
        QTEST(FeatureStore::specialtyTable(library, code), "specialty");
    }

    void gridSizes_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("placed");
        QTest::addColumn<bool>("nextPage");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("none") << 0 << 0 << 0 << false << false;
        QTest::newRow("three") << 3 << 4 << 3 << false << false;
        QTest::newRow("twelve") << 12 << 10 << 10 << true << false;
        QTest::newRow("read-only bill") << 12 << 0 << 0 << false << true;
    }
    void gridSizes()
    {
        QFETCH(int, lines);
        QFETCH(int, placed);
        QFETCH(bool, nextPage);
        QFETCH(bool, readOnly);
        bill.setReadOnly(readOnly);
        // Longer codes starting with the bill's library code are its lines too.
        for (int i = 0; i < lines; ++i)
            addCustom(QString("0304120040%1").arg(i, 2, 10, QChar('0')), QString("自编%1").arg(i));
        addCustom("030412005001", "另一清单");
        openGuide();
        guide->setCurrQd(&bill);
        QTEST(guide->localGrid()->rowCount(), "rows");
        QCOMPARE(codeCells(guide->localGrid()).size(), placed);
        if (placed > 0)
            QCOMPARE(codeCells(guide->localGrid()).first(), QString("[自编]030412004000"));
        QCOMPARE(guide->pageButtons().at(2)->isEnabled(), nextPage);
        QVERIFY(!guide->pageButtons().at(0)->isEnabled());
        QCOMPARE(guide->featureEdit()->isReadOnly(), readOnly);
        if (nextPage) {
            guide->NextPage();
            QCOMPARE(codeCells(guide->localGrid()), (QStringList{"[自编]030412004010", "[自编]030412004011"}));
            QVERIFY(guide->pageButtons().at(1)->isEnabled());
        }
    }

    void standardLinesFromTheData()
    {
        QFile data(FeatureLibrarySeeder::dataFile());
        QVERIFY(data.open(QIODevice::ReadOnly));
        const QJsonArray items = QJsonDocument::fromJson(data.readAll()).object().value("items").toArray();
        FeatureLibrarySeeder::build(FeatureStore::libraryPath("GB24"), "GB24", items);
        bill.setData(BaseDataItem::CodeRole, "030101001001");
        openGuide();
        guide->setCurrQd(&bill);
        QCOMPARE(guide->fillingHint(), QString("按设计要求描述：名称、型号、规格、类型、质量、灌浆配合比、单机试运转要求。"
                                               "工作内容：本体安装、地脚螺栓孔灌浆、设备底座与基础间灌浆"));
        QCOMPARE(guide->localGrid()->item(3, 0)->text(), QString("2.型号："));
        guide->localGrid()->cellClicked(3, 0);
        QCOMPARE(guide->featureEdit()->toPlainText(), QString("2.型号："));
        QVERIFY(guide->button("btnXgdqzbms")->isHidden());
        QStringList shown;
        for (int i = 0; i < 2; ++i) {
            fx->answerNextModal([&](QDialog *d) {
                auto *w = qobject_cast<Gclqdxmtz_Txtz *>(d);
                shown << w->caption() + "|" + w->edit()->toPlainText().section('\n', 0, 1);
                return w->okButton()->isHidden() && w->edit()->isReadOnly() ? 1 : -1;
            });
        }
        guide->GfButton();
        guide->TsButton();
        QCOMPARE(shown, (QStringList{"规范特征|1.名称：\n2.型号：", "填写提示|" + guide->fillingHint()}));
    }

    void customLineWithQuoteEditedAndDeleted()
    {
        addCustom("030412004001", "1.名称：O'Brien桥架");
        openGuide();
        guide->setCurrQd(&bill);
        guide->localGrid()->cellClicked(1, 0);
        QVERIFY(!guide->button("btnXgdqzbms")->isHidden());
        fx->answerNextModal([](QDialog *d) {
            auto *w = qobject_cast<Gclqdxmtz_Txtz *>(d);
            if (w->caption() != "编辑自编特征描述" || w->edit()->toPlainText() != "1.名称：O''Brien桥架" || w->fid() == 0)
                return -1;
            w->edit()->setPlainText("1.名称：新的桥架");
            w->okButton()->click();
            return 1;
        });
        guide->EditCustomLine();
        QCOMPARE(guide->localGrid()->item(1, 0)->text(), QString("1.名称：新的桥架"));
        // The edited text is written as typed: a quote breaks the statement,
        // which goes unreported, and the window still signals and closes.
        fx->answerNextModal([](QDialog *d) {
            auto *w = qobject_cast<Gclqdxmtz_Txtz *>(d);
            QSignalSpy updated(w, &Gclqdxmtz_Txtz::Updata);
            w->edit()->setPlainText("1.名称：坏'引号");
            w->okButton()->click();
            return updated.count() == 1 && !w->isVisible() ? 1 : -1;
        });
        guide->EditCustomLine();
        QCOMPARE(guide->localGrid()->item(1, 0)->text(), QString("1.名称：新的桥架"));
        guide->localGrid()->cellClicked(1, 0);
        guide->DeleteCustomLine();
        QCOMPARE(customRows(), 0);
        QCOMPARE(guide->localGrid()->rowCount(), 0);
        QVERIFY(fx->exceptionReports().isEmpty());
    }

    void titleAndCloudSource_data()
    {
        QTest::addColumn<int>("appType");
        QTest::addColumn<QString>("areaVersion");
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("cloud");
        QTest::newRow("16") << 16 << "HB2024" << "工程量清单项目特征/工程内容描述指南" << true;
        QTest::newRow("other JL") << 3 << "JL2019" << "工程量清单项目特征描述指南" << false;
        QTest::newRow("YN") << 16 << "YN" << "工程量清单项目特征/工程内容描述指南" << false;
    }
    void titleAndCloudSource()
    {
        QFETCH(int, appType);
        QFETCH(QString, areaVersion);
        DataLibrary::Instance()->setAppType(appType);
        HostConfig::setValue("AreaVer", areaVersion);
        openGuide();
        DataLibrary::Instance()->clearAppType();
        QTEST(guide->caption(), "title");
        QTEST(guide->cloudRadio()->isVisibleTo(guide.get()), "cloud");
    }

    void hostGuideFollowsBills()
    {
        ProjectDocument project;
        QString error;
        QVERIFY(project.loadFile(ProjectDocument::samplePath(), &error));
        const QList<BaseDataItem *> bills = project.allBills();
        bills[2]->setData(BaseDataItem::UnitPriceRole, 0.0);
        HostContext host;
        host.project = &project;
        host.setCurrentBill(bills[0]);
        fx->channel().replyOk(serverList());
        QPointer<QWidget> window = FeaturesHost::openGuide(host);
        auto *opened = qobject_cast<Gqdxmtzmszn *>(window.data());
        QVERIFY(opened && opened->isVisible());
        opened->skipPricedBox()->setChecked(true);
        opened->ObtainNextRow();
        QCOMPARE(host.currentBill, bills[2]);
        QCOMPARE(opened->currentItem(), bills[2]);
        host.onBillFollowed(bills[5]);
        QCOMPARE(opened->currentItem(), bills[5]);
        opened->close();
        QTRY_VERIFY(!window);
    }

    void brokenLibraryIsReported()
    {
        QFile broken(FeatureStore::libraryPath("GB24"));
        QVERIFY(broken.open(QIODevice::WriteOnly | QIODevice::Truncate));
        broken.write(QByteArray(4096, 'x'));
        broken.close();
        openGuide();
        guide->setCurrQd(&bill);
        QCOMPARE(guide->localGrid()->rowCount(), 0);
        QCOMPARE(fx->exceptionReports().size(), 1);
        QVERIFY(fx->exceptionReports().first().contains("..\\Gclqdxmttzmszn"));
        QVERIFY(fx->exceptionReports().first().contains("Gqdxmtzmszn::setXmbhmc"));
    }

    void libraryOfNoneKeepsTheTable()
    {
        openGuide();
        guide->setCurrQd(&bill);
        guide->setCurrQd(&measure);
        QCOMPARE(guide->customTable(), QString("GB24_xmtz_ms"));
        QCOMPARE(guide->featureEdit()->toPlainText(), QString("1.配线"));
        QCOMPARE(guide->findChild<QLabel *>("lblXmtz")->text(), QString("工程内容:"));
    }

    void pageCounts_data()
    {
        QTest::addColumn<QJsonObject>("reply");
        QTest::addColumn<int>("pages");
        QTest::newRow("25/10") << QJsonObject{{"allCount", 25}, {"pageRowCount", 10}} << 3;
        QTest::newRow("20/10") << QJsonObject{{"allCount", 20}, {"pageRowCount", 10}} << 2;
        QTest::newRow("size 0") << QJsonObject{{"allCount", 25}, {"pageRowCount", 0}} << 0;
        QTest::newRow("no size") << QJsonObject{{"allCount", 25}} << 0;
        QTest::newRow("negative count") << QJsonObject{{"allCount", -25}, {"pageRowCount", 10}} << 0;
        QTest::newRow("count at the int limit") << QJsonObject{{"allCount", 2147483647}, {"pageRowCount", 1}}
                                                << 214748364;
    }
    void pageCounts()
    {
        QFETCH(QJsonObject, reply);
        QTEST(FeatureCloudReply::pageCount(reply), "pages");
    }

    void cloudResultsPagedAndRequestExact()
    {
        openGuide(true);
        guide->setCurrQd(&bill);
        const QJsonObject request = cloudSearch(
            matchReply({match("标1", "库A"), match("标2", "库A"), match("标3", "库B")}, {match("工1", "库X")}, 25));
        QJsonObject params{{"keyword", ""}, {"page", 1}, {"pageSize", 10}, {"isAlgc", false}, {"hsbz", 1},
                           {"ddCode", ""}, {"dd", ""}, {"sj", ""}};
        QCOMPARE(request, cloudjson::envelope("kv_token_user",
                                              cloudjson::method("matchqdtz", {{"qiyeID", -1}, {"usetype", 1},
                                                                              {"qdbh", "030412004001"}, {"xmmc", "配线"},
                                                                              {"jldw", ""}, {"xmtz", "1.名称：桥架配线"},
                                                                              {"gznr", "1.配线"}, {"params", params},
                                                                              {"sourceMask", 3}, {"gcids", QJsonArray()}}),
                                              16));
        QStringList order;
        for (const CloudZnytzBean &r : guide->cloudResults())
            order << r.getXmmc() + (r.getBzQd() ? QString("/" + r.getQdkMc()) : QString("/-"));
        QCOMPARE(order, (QStringList{"标1/库A", "工1/-", "标2/库A", "标3/库B"}));
        QStringList labels;
        for (QLabel *l : guide->cloudGrid()->findChildren<QLabel *>("lblNumber"))
            labels << l->text() + ":" + l->parent()->findChild<QLabel *>("lblSource")->text();
        labels.sort();
        QCOMPARE(labels, (QStringList{"1:库A", "2:工程实例", "3:库A", "4:库B"}));
        QCOMPARE(guide->cloudGrid()->item(1, 1)->text(), QString("工1特征"));
        QCOMPARE(guide->cloudPageCount(), 3);
        QVERIFY(guide->pageButtons().at(2)->isEnabled());
        guide->PreviousPage(); // already on the first page: nothing is sent
        QCOMPARE(fx->messageTexts(), QStringList{"已经是第一页"});
        QCOMPARE(fx->channel().requests().size(), 2);

        fx->channel().reply(matchReply({match("标11", "库A")}, {}, 25));
        guide->NextPage();
        QTRY_COMPARE(guide->cloudResults().size(), 1);
        QCOMPARE(fx->channel().lastRequest()["data"].toObject()["params"].toObject()["page"].toInt(), 2);
        QCOMPARE(guide->cloudGrid()->findChild<QLabel *>("lblNumber")->text(), QString("11"));
        // A login change elsewhere clears the cloud results.
        emit guide->serverChoice()->signalServersReset();
        QVERIFY(guide->cloudResults().isEmpty());
        QCOMPARE(guide->cloudGrid()->rowCount(), 0);
    }

    void onlyTheNewestReplyIsShown()
    {
        openGuide(true);
        guide->setCurrQd(&bill);
        cloudSearch(matchReply({match("标1", "库A")}, {}));
        QSignalSpy shown(guide.get(), &Gqdxmtzmszn::signalUpdataTzData);
        fx->channel().reply(matchReply({match("旧", "库A")}, {}));
        fx->channel().reply(matchReply({match("旧", "库A")}, {}));
        guide->slotBtnGrySsClicked();
        guide->slotBtnGrySsClicked();
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QTRY_COMPARE(guide->cloudResults().first().getXmmc(), QString("旧"));
        QCOMPARE(shown.count(), 1);
        // A number other than the newest is ignored by the slot as well.
        guide->setCloudTableClear();
        guide->slotUpdataTzData(shown.first().first().toInt() - 1);
        QVERIFY(guide->cloudResults().isEmpty());
    }

    void projectInformation_data()
    {
        QTest::addColumn<QJsonObject>("reply");
        QTest::addColumn<QStringList>("labels");
        QTest::newRow("shown") << QJsonObject{{"code", 0}, {"data", QJsonObject{{"xmmc", "某办公楼"}, {"qdbh", "030412004001"},
                                                                              {"dwmc", ""}, {"dxmc", "电气"}, {"qdmc", "配线"}}}}
                               << QStringList{"项目名称：某办公楼", "清单编号：030412004001", "单位名称：", "单项名称：电气",
                                              "清单名称：配线"};
        QTest::newRow("refused") << QJsonObject{{"code", 1}, {"msg", "无权限"}} << QStringList();
    }
    void projectInformation()
    {
        QFETCH(QJsonObject, reply);
        openGuide(true);
        guide->setCurrQd(&bill);
        cloudSearch(matchReply({}, {match("工1")}));
        QStringList seen;
        fx->answerNextModal([&](QDialog *d) {
            for (QLabel *l : qobject_cast<Gclqdxmszn_Xmxx *>(d)->labels())
                seen << l->text();
            return 0;
        });
        fx->channel().reply(reply);
        guide->requestProjectInfo(0, 0);
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        // The worker's queued reply, if any, reaches the dialog here.
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QCOMPARE(fx->channel().lastRequest(),
                 cloudjson::envelope("kv_token_user",
                                     cloudjson::method("getgcsldata", {{"qiyeID", -1}, {"usetype", 1}, {"id", "7"}}), 16));
        QTEST(seen, "labels");
    }

    void applyAndCloseSurvivesRestart_data()
    {
        QTest::addColumn<bool>("closeAfter");
        QTest::newRow("close") << true;
        QTest::newRow("stay") << false;
    }
    void applyAndCloseSurvivesRestart()
    {
        QFETCH(bool, closeAfter);
        ProjectDocument project;
        QString error;
        QVERIFY(project.loadFile(ProjectDocument::samplePath(), &error));
        BaseDataItem *target = project.allBills().first();
        openGuide();
        QObject::connect(guide.get(), &Gqdxmtzmszn::Uptext, [&](const QString &t) { project.applyFeatureText(target, t); });
        guide->setCurrQd(target);
        guide->show();
        guide->appCloseBox()->setChecked(closeAfter);
        const int steps = RURecordControl::undoStack()->count();
        guide->featureEdit()->setPlainText("1.名称：新特征");
        guide->button("btnYy")->click();
        QCOMPARE(target->text(BaseDataItem::FeaturesRole), QString("1.名称：新特征"));
        QCOMPARE(RURecordControl::undoStack()->count(), steps + 1);
        QCOMPARE(RURecordControl::undoStack()->undoText(), QString("修改项目特征"));
        QCOMPARE(guide->isVisible(), !closeAfter);
        guide->close();
        QCOMPARE(HostConfig::openSysSet()->value("CloudApp/MSZN_AppClose").toString(), closeAfter ? "1" : "0");
        openGuide();
        QCOMPARE(guide->appCloseBox()->isChecked(), closeAfter);
    }

    void projectFeaturesRefusals_data()
    {
        QTest::addColumn<bool>("loggedIn");
        QTest::addColumn<int>("server");
        QTest::addColumn<bool>("sources");
        QTest::addColumn<QString>("message");
        QTest::newRow("no server") << true << -1 << true << "请选择服务器";
        QTest::newRow("not logged in") << false << 0 << true << "请登录服务器";
        QTest::newRow("no source") << true << 0 << false << "请勾选清单方案来源";
        QTest::newRow("accepted") << true << 0 << true << "";
    }
    void projectFeaturesRefusals()
    {
        QFETCH(bool, loggedIn);
        QFETCH(int, server);
        QFETCH(bool, sources);
        QFETCH(QString, message);
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(serverList());
        TXmytz dialog;
        if (server < 0)
            dialog.serverChoice()->slotSaveCurrServer(-1);
        else if (!loggedIn)
            dialog.getCurrServer()->setServerLogin(false);
        QCOMPARE(dialog.sourceMask(), 3);
        dialog.sources()->standardBox()->setChecked(false);
        dialog.sources()->accumulatedBox()->setChecked(sources);
        QCOMPARE(dialog.sources()->filterLink()->isEnabled(), sources);
        QList<QVariantList> emitted;
        QObject::connect(&dialog, &TXmytz::signalQdButtonClicked, [&](LtdInfo *s, bool skip, int mask, QStringList ids) {
            emitted << QVariantList{s->getServerName(), skip, mask, ids, RURecordControl::IsRecording()};
        });
        dialog.QdButton();
        QCOMPARE(fx->messageTexts(), message.isEmpty() ? QStringList() : QStringList{message});
        if (message.isEmpty())
            QCOMPARE(emitted, (QList<QVariantList>{{"个人云", false, 2, QStringList(), true}}));
        else
            QVERIFY(emitted.isEmpty());
        QVERIFY(!RURecordControl::IsRecording());
    }

    void hostFillsMeasureBillsAsOneStep()
    {
        ProjectDocument project;
        QString error;
        QVERIFY(project.loadFile(ProjectDocument::samplePath(), &error));
        const QList<BaseDataItem *> bills = project.measureTable()->rootItem()->bills();
        const QString before = bills[0]->text(BaseDataItem::WorkContentRole);
        HostContext host;
        host.project = &project;
        host.setCurrentBill(bills[0]);
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(serverList());
        fx->channel().reply(matchReply({}, {match("工1")}));
        fx->channel().reply(matchReply({}, {}));
        fx->channel().reply(matchReply({match("标1", "库A")}, {}));
        const int steps = RURecordControl::undoStack()->count();
        fx->answerNextModal([](QDialog *d) {
            d->findChild<QPushButton *>("btnOk")->click();
            return 0;
        });
        FeaturesHost::openProjectFeatures(host);
        QCOMPARE(fx->messageTexts(), QStringList{"已填写2条清单的项目特征，1条未找到匹配清单，6条跳过。"});
        QCOMPARE(bills[0]->text(BaseDataItem::WorkContentRole), QString("工1内容"));
        QCOMPARE(bills[2]->text(BaseDataItem::WorkContentRole), QString("标1内容"));
        QCOMPARE(RURecordControl::undoStack()->count(), steps + 1);
        QCOMPARE(RURecordControl::undoStack()->undoText(), QString("修改项目特征"));
        RURecordControl::undoStack()->undo();
        QCOMPARE(bills[0]->text(BaseDataItem::WorkContentRole), before);
        // The host adds custom lines to the library of a bill; a measure bill has none.
        QVERIFY(CustomFeatureLines::add(project.allBills().first(), "1.名称：自编"));
        QVERIFY(!CustomFeatureLines::add(bills[0], "1.名称：自编"));
        QCOMPARE(customRows(), 1);
    }
};

QTEST_MAIN(TestFeatures)
#include "tst_features.moc"
