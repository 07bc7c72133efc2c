#include "hosttestcase.h"
#include "loginanswers.h"

#include <materials/cloudclsavedialogm.h>
#include <materials/failed.h>
#include <materials/materialpricetables.h>
#include <materials/prompt.h>
#include <materials/tcjyjc.h>
#include <materials/tcloudclsavedialog_xjbc.h>
#include <materials/velcjyjc_checkresult.h>

#include <hostapi/generaltablebase.h>
#include <hostapi/hostconfig.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/users.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QUndoStack>
#include <QtTest>

class TestMaterialDialogs : public HostTestCase
{
    Q_OBJECT
private:
    static GljBean material(int guid, double tj)
    {
        GljBean m;
        m.SetGuid(guid);
        m.SetClmc(QStringLiteral("钢筋%1").arg(guid));
        m.SetDw(QStringLiteral("t"));
        m.SetTj(tj);
        return m;
    }
    // The name prompt answered with `name` ("确定"), or cancelled when null.
    void answerName(const QString &name)
    {
        fx->answerNextModal([name](QDialog *d) {
            auto *prompt = static_cast<TCloudCLSaveDialog_Xjbc *>(d);
            prompt->getEdtJbmc()->setText(name);
            name.isNull() ? prompt->actCancel() : prompt->actOk();
            return 0;
        });
    }

private slots:
    void ticksEnableConfirmAndApplyIsOneUndoStep()
    {
        GeneralTableBase table(QStringLiteral("工料机汇总"));
        QList<GljBean *> materials{table.addMaterial(material(1, 12.0)), table.addMaterial(material(2, 5.0))};
        CloudCjyjcBean record;
        record.setGuid(1);
        record.setYdjhs(10.0);
        QList<CloudCjyjcBean> records{record};
        QList<CloudCjyjcBean> results;
        VelCjyjc_CheckResult dialog(true, records, results, &table);
        dialog.setGljBean(materials, true);
        zTableModel *model = dialog.model();
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model->cellValue(0, "pcl").toString(), QStringLiteral("20.00%"));
        QCOMPARE(model->cellKind(0, "xy"), 5006);
        QCOMPARE(model->cellValue(1, "ydj").toString(), QStringLiteral("无"));
        QCOMPARE(model->cellValue(1, "pcl").toString(), QString());
        QVERIFY(model->cellKind(1, "xy") != 5006);
        QCOMPARE(results.at(1).getPcl(), QStringLiteral("null"));
        QCOMPARE(model->data(model->index(0, model->columnOf("ckxq")), Qt::ForegroundRole).value<QColor>(),
                 QColor(65, 127, 249));

        const QModelIndex tick = model->index(0, model->columnOf("xy"));
        QVERIFY(!dialog.okButton()->isEnabled());
        dialog.slotClCheckBoxClicked(tick, Qt::Checked);
        QVERIFY(dialog.okButton()->isEnabled());
        dialog.slotClCheckBoxClicked(tick, Qt::Unchecked);
        QVERIFY(!dialog.okButton()->isEnabled());
        dialog.slotClCheckBoxClicked(tick, Qt::Checked);

        connect(&dialog, &VelCjyjc_CheckResult::signalGbButtonClicked, &dialog, [&](QList<CloudCjyjcBean> &chosen) {
            for (const CloudCjyjcBean &r : chosen)
                if (r.getChecked()) {
                    GljBean values = *table.materialByGuid(r.getGuid());
                    values.SetTj(r.getYdj());
                    table.updateMaterial(table.materialByGuid(r.getGuid()), values);
                }
        });
        const int steps = RURecordControl::undoStack()->count();
        dialog.okButton()->click();
        QCOMPARE(materials.at(0)->GetTj(), 10.0);
        QCOMPARE(RURecordControl::undoStack()->count(), steps + 1);
        QCOMPARE(RURecordControl::undoStack()->undoText(), QStringLiteral("材料价格选用"));
        RURecordControl::undoStack()->undo();
        QCOMPARE(materials.at(0)->GetTj(), 12.0);
    }

    void promptShowsFailuresOnlyWhenThereAreAny_data()
    {
        QTest::addColumn<QString>("total");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<bool>("button");
        QTest::newRow("total 0, saved 3") << "0" << "3" << true;
        QTest::newRow("all saved") << "3" << "3" << false;
    }
    void promptShowsFailuresOnlyWhenThereAreAny()
    {
        QFETCH(QString, total);
        QFETCH(QString, saved);
        Prompt prompt;
        prompt.GljPrompt(total, saved, {"01001", "01002"}, {"镀锌钢管 DN25"});
        QTEST(!prompt.failedButton()->isHidden(), "button");
        QVERIFY(prompt.textLabel()->text().startsWith("选择范围内共" + total));
        QStringList cells;
        QColor reason;
        fx->answerNextModal([&](QDialog *d) {
            zTableModel *m = static_cast<Failed *>(d)->model();
            for (int row = 0; row < m->rowCount(); ++row)
                for (const char *key : {"clbh", "clmc", "sbyy"})
                    cells << m->cellValue(row, key).toString();
            reason = m->data(m->index(1, 2), Qt::ForegroundRole).value<QColor>();
            return 0;
        });
        prompt.showFailed();
        QCOMPARE(fx->modalRuns(), QStringList("Failed"));
        QCOMPARE(cells, QStringList({"01001", "镀锌钢管 DN25", "没有调价信息", "01002", "", "没有调价信息"}));
        QCOMPARE(reason, QColor(255, 0, 0));
    }

    void namePromptTrimsAndRefusesEmptyNames()
    {
        TCloudCLSaveDialog_Xjbc prompt;
        prompt.getEdtJbmc()->setText("   ");
        prompt.actOk();
        QCOMPARE(fx->messageTexts(), QStringList("名称不能为空！"));
        QVERIFY(prompt.slotData().isNull());
        prompt.getEdtJbmc()->setText("  甲表 ");
        prompt.actOk();
        QCOMPARE(prompt.slotData(), QStringLiteral("甲表"));
        prompt.actCancel();
        QVERIFY(prompt.slotData().isNull());
    }

    void localConfirmChoosesTheTable()
    {
        GljBean m = material(1, 4100.5);
        {
            CloudCLSaveDialogm empty(0);
            QMetaObject::invokeMethod(&empty, "Confirm");
        }
        MaterialPriceTables::createTable("甲", "1");
        MaterialPriceTables::createTable("乙", "0");
        CloudCLSaveDialogm dialog(0);
        dialog.StoreData(&m);
        QCOMPARE(dialog.defaultTableLabel(), QStringLiteral("甲【税后价】"));
        QSignalSpy done(&dialog, &CloudCLSaveDialogm::ConfirmData);
        QMetaObject::invokeMethod(&dialog, "Confirm");
        QCOMPARE(MaterialPriceTables::countMaterial("1", m), 1);
        QCOMPARE(done.count(), 1);

        // A table made in the dialog takes the next confirms, whatever is selected.
        answerName(QString());
        QMetaObject::invokeMethod(&dialog, "NewTable");
        answerName("丙");
        QMetaObject::invokeMethod(&dialog, "NewTable");
        answerName("丙");
        QMetaObject::invokeMethod(&dialog, "NewTable");
        dialog.localList()->selectRowAt(1);
        QMetaObject::invokeMethod(&dialog, "Confirm");
        QCOMPARE(MaterialPriceTables::findTable("丙").id, QStringLiteral("3"));
        QCOMPARE(MaterialPriceTables::countMaterial("3", m), 1);
        QCOMPARE(MaterialPriceTables::listTables().last(), QStringLiteral("丙【税后价】"));
        QCOMPARE(fx->messageTexts(),
                 QStringList({"当前没有价表，请创建价表", "保存成功", "价表名称已存在.", "保存成功"}));
    }

    void manyMaterialsAreHandedToTheHost_data()
    {
        QTest::addColumn<bool>("single");
        QTest::addColumn<bool>("dyk");
        QTest::addColumn<int>("multiple");
        QTest::addColumn<int>("dykMultiple");
        QTest::newRow("first flag cleared") << false << true << 1 << 0;
        QTest::newRow("both cleared") << false << false << 1 << 0;
        QTest::newRow("second flag cleared") << true << false << 0 << 1;
    }
    void manyMaterialsAreHandedToTheHost()
    {
        QFETCH(bool, single);
        QFETCH(bool, dyk);
        MaterialPriceTables::ensureTables();
        MaterialPriceTables::createTable("甲", "1");
        MaterialPriceTables::createTable("乙", "0");
        CloudCLSaveDialogm dialog(1);
        dialog.singleMaterial = single;
        dialog.singleDykMaterial = dyk;
        QSignalSpy multiple(&dialog, &CloudCLSaveDialogm::MultipleData);
        QSignalSpy dykMultiple(&dialog, &CloudCLSaveDialogm::DykMultipleData);
        dialog.localList()->selectRowAt(1);
        QMetaObject::invokeMethod(&dialog, "Confirm");
        QTEST(multiple.count(), "multiple");
        QTEST(dykMultiple.count(), "dykMultiple");
        const QList<QVariant> args = multiple.isEmpty() ? dykMultiple.value(0) : multiple.value(0);
        QCOMPARE(args, QList<QVariant>({"2", "5"}));
        QCOMPARE(dialog.matchCount(), 0);
        QVERIFY(fx->messageTexts().isEmpty());
    }

    void cloudTablesAreEditedPerTier_data()
    {
        QTest::addColumn<QString>("server");
        QTest::addColumn<QJsonObject>("create");
        QTest::addColumn<QJsonObject>("remove");
        QTest::addColumn<QStringList>("methods");
        QTest::newRow("personal") << "个人云"
                                  << QJsonObject{{"method", "personmaterialedit"}, {"sjksyid", ""}, {"kmc", "新库"}, {"oper", 1}}
                                  << QJsonObject{{"method", "personmaterialedit"}, {"sjksyid", "L1"}, {"kmc", "旧库"}, {"oper", 3}}
                                  << QStringList{"materiallist", "personmaterialedit", "materiallist", "personmaterialedit",
                                                 "materiallist"};
        QTest::newRow("enterprise") << "华东企业材价库"
                                    << QJsonObject{{"method", "enterprisematrialedit"}, {"sjksyid", ""}, {"kuName", "新库"},
                                                   {"oper", 1}, {"qiyeId", 11}}
                                    << QJsonObject{{"method", "enterprisematrialedit"}, {"sjksyid", "L1"}, {"kuName", "旧库"},
                                                   {"oper", 3}, {"qiyeId", 11}}
                                    << QStringList{"getenterprisepricelist", "isauthorityforenterprise",
                                                   "enterprisematrialedit", "getenterprisepricelist",
                                                   "isauthorityforenterprise", "isauthorityforenterprise",
                                                   "enterprisematrialedit", "getenterprisepricelist"};
    }
    void cloudTablesAreEditedPerTier()
    {
        QFETCH(QString, server);
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        HostConfig::openSysSet()->setValue("CloudApp/CurrServer_all", server);
        const bool enterprise = server != "个人云";
        const QJsonArray one{QJsonObject{{"kmms", "旧库"}, {"_id", "L1"}}};
        const QJsonArray two{one.first(), QJsonObject{{"kmms", "新库"}, {"_id", "L2"}}};
        // Lists, permissions and edits in the order the dialog asks.
        const QList<QJsonValue> replies{loginanswers::serverList(), one, QJsonValue(), QJsonValue(), two, QJsonValue(),
                                        QJsonValue(), QJsonValue(), one};
        const QList<bool> permission{false, false, true, false, false, true, true, false, false};
        for (int i = 0; i < replies.size(); ++i)
            if (enterprise || !permission.at(i))
                fx->channel().replyOk(replies.at(i));
        CloudCLSaveDialogm dialog(0);
        QMetaObject::invokeMethod(&dialog, "Cloud");
        QCOMPARE(dialog.getCurrServer()->getServerName(), server);
        answerName("新库");
        QMetaObject::invokeMethod(&dialog, "NewTable");
        QCOMPARE(dialog.cloudList()->selectionModel()->selectedRows().value(0).row(), 1);

        dialog.cloudList()->selectRowAt(0);
        answerName("新库");
        QMetaObject::invokeMethod(&dialog, "Rename");
        fx->answerNextMessage(0);
        QMetaObject::invokeMethod(&dialog, "SlotDelete");
        QCOMPARE(fx->messageTexts(), QStringList({"表已存在", "是否删除该价表下包含的材料？"}));

        QStringList methods;
        QList<QJsonObject> edits;
        for (const QJsonObject &r : fx->channel().requests()) {
            const QJsonObject data = r.value("data").toObject();
            const QString method = data.value("method").toString();
            if (method.contains("material") || method.contains("matrial") || method.contains("authority")
                || method.contains("pricelist"))
                methods << method;
            if (method.contains("edit"))
                edits << data;
        }
        QTEST(methods, "methods");
        QCOMPARE(edits.size(), 2);
        QTEST(edits.first(), "create");
        QTEST(edits.last(), "remove");
    }

    void checkSetupHandsOverLibraryAndPlace_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<int>("row");
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("code");
        QTest::newRow("case projects") << "四川省成都市金牛区" << 0 << "-999" << "510106";
        QTest::newRow("a library, place without units") << "浦东新" << 1 << "L7" << "";
    }
    void checkSetupHandsOverLibraryAndPlace()
    {
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        fx->channel().replyOk(loginanswers::serverList());
        fx->channel().replyOk(QJsonObject{{"sjksys", QJsonArray{QJsonObject{{"kmms", "我的库"}, {"_id", "L7"}}}}});
        TCjyjc dialog;
        dialog.CreateUI();
        QFETCH(QString, place);
        dialog.setLblDdsz(place);
        dialog.setLblHbsz("一般计税");
        QCOMPARE(fx->channel().requests().last().value("data").toObject(), QJsonObject({{"method", "materiallist"}}));
        QMetaObject::invokeMethod(&dialog, "QdButton");
        QCOMPARE(fx->messageTexts(), QStringList("请选择一条价表"));
        QString id;
        CloudParams params;
        connect(&dialog, &TCjyjc::signalCheckData, &dialog, [&](LtdInfo *, QString &i, CloudParams &p, QString &) {
            id = i;
            params = p;
        });
        QFETCH(int, row);
        dialog.libraryView()->selectRowAt(row);
        dialog.QdButton();
        QTEST(id, "id");
        QTEST(params.getPlaceCode(), "code");
        QCOMPARE(params.getCaseProject(), row == 0);
        QCOMPARE(params.getTaxBasis(), 0);
    }
};

QTEST_MAIN(TestMaterialDialogs)
#include "tst_materialdialogs.moc"
