#include "hosttestcase.h"

#include <channelsetup.h>
#include <mainwindow.h>
#include <materialcheckhost.h>
#include <materialstoragehost.h>
#include <materialtablemodel.h>
#include <projectdocument.h>

#include <materials/cloudclsavedialogm.h>
#include <materials/prompt.h>
#include <materials/tcjyjc.h>
#include <materials/tcloudclsavedialog_xjbc.h>
#include <materials/velcjyjc_checkresult.h>

#include <hostapi/generaltablebase.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUndoStack>
#include <QtTest>

// Store the project's prices in a new personal library of the embedded cloud,
// check a changed price against it and take the cloud price back.
class TestMaterialFlow : public HostTestCase
{
    Q_OBJECT
private:
    static int rowOf(zTableView *list, const QString &text)
    {
        for (int row = 0; row < list->tableModel()->rowCount(); ++row)
            if (list->tableModel()->cellValue(row, "wb").toString() == text)
                return row;
        return -1;
    }

private slots:
    void storeCheckApply()
    {
        ChannelSetup::install();
        QCOMPARE(ChannelSetup::signInDemo(), QString());
        ProjectDocument project;
        QString error;
        QVERIFY2(project.loadFile(ProjectDocument::samplePath(), &error), qPrintable(error));
        project.seedProjectSettings();
        MainWindow window(&project);
        HostContext &host = window.context();
        const QList<GljBean *> all = MaterialStorageHost::scope(host);
        QCOMPARE(all.size(), 32);

        QString outcome;
        {
            CloudCLSaveDialogm dialog(MaterialStorageHost::taxArgument(), host.window);
            MaterialStorageHost::prepare(dialog, host, all);
            QMetaObject::invokeMethod(&dialog, "Cloud");
            QCOMPARE(dialog.getCurrServer()->getServerName(), QStringLiteral("个人云"));
            fx->answerNextModal([](QDialog *d) {
                auto *prompt = static_cast<TCloudCLSaveDialog_Xjbc *>(d);
                prompt->getEdtJbmc()->setText("联调材价库");
                prompt->actOk();
                return 1;
            });
            QMetaObject::invokeMethod(&dialog, "NewTable");
            QCOMPARE(MaterialLibraryListRow(dialog), QStringLiteral("联调材价库"));
            fx->answerNextModal([&](QDialog *d) {
                outcome = static_cast<Prompt *>(d)->textLabel()->text();
                return 0;
            });
            QMetaObject::invokeMethod(&dialog, "Confirm");
        }
        QCOMPARE(outcome, QStringLiteral("选择范围内共32条材价,其中保存成功30条,\n保存失败(不满足保存条件)2条"));

        GljBean *pipe = all.at(4);
        GljBean raised = *pipe;
        raised.SetTj(20.0);
        project.materialTable()->updateMaterial(pipe, raised);
        MaterialCheckHost::Choice choice;
        {
            TCjyjc dialog(host.window);
            MaterialCheckHost::prepare(dialog, host, choice);
            dialog.libraryView()->selectRowAt(rowOf(dialog.libraryView(), "联调材价库"));
            dialog.QdButton();
        }
        QVERIFY(choice.chosen);
        QCOMPARE(choice.params.getTaxBasis(), 0);
        QStringList row;
        fx->answerNextModal([&](QDialog *d) {
            auto *result = static_cast<VelCjyjc_CheckResult *>(d);
            zTableModel *m = result->model();
            for (const char *key : {"clmc", "tj", "ydj", "pcl"})
                row << m->cellValue(4, key).toString();
            result->slotClCheckBoxClicked(m->index(4, m->columnOf("xy")), Qt::Checked);
            result->okButton()->click();
            return 1;
        });
        MaterialCheckHost::run(host, choice);
        QCOMPARE(row, QStringList({"PP-R给水管", "20.00", "10.24", "95.31%"}));
        QCOMPARE(pipe->GetTj(), 10.24);
        QCOMPARE(RURecordControl::undoStack()->undoText(), QStringLiteral("材料价格选用"));
        const QModelIndex price = host.materials->index(4, MaterialTableModel::PriceColumn);
        QVERIFY(!host.materials->data(price, Qt::BackgroundRole).isValid());
        RURecordControl::undoStack()->undo();
        QCOMPARE(pipe->GetTj(), 20.0);
        QCOMPARE(host.materials->data(price, Qt::BackgroundRole).value<QColor>(), QColor(0xFD, 0xE2, 0xE2));
        host.materials->setHighlightRate("100");
        QVERIFY(!host.materials->data(price, Qt::BackgroundRole).isValid());
        QVERIFY(fx->exceptionReports().isEmpty());
    }

    void hostRequestsPerTier_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<int>("qiyeID");
        QTest::addColumn<int>("usetype");
        QTest::newRow("personal") << "kv_token_user" << -1 << 1;
        QTest::newRow("enterprise") << "cj_11" << 11 << 2;
    }
    void hostRequestsPerTier()
    {
        QFETCH(QString, token);
        QFETCH(int, qiyeID);
        QFETCH(int, usetype);
        LtdInfo server("库", token, 2, 11, true);
        GeneralTableBase table(QStringLiteral("工料机汇总"));
        GljBean pipe;
        pipe.SetGuid(5);
        pipe.SetBh("01005");
        pipe.SetClmc("PP-R给水管");
        pipe.SetGgxh("dn32 S4");
        pipe.SetDw("m");
        pipe.SetTj(10.24);
        GljBean labour = pipe;
        labour.SetGuid(31);
        labour.SetZhfl("人工");
        const QList<GljBean *> materials{table.addMaterial(pipe), table.addMaterial(labour)};
        const QJsonObject tier{{"qiyeID", qiyeID}, {"usetype", usetype}};
        auto expect = [&](QJsonObject fields) {
            for (auto it = tier.begin(); it != tier.end(); ++it)
                fields.insert(it.key(), it.value());
            return fields;
        };

        fx->channel().replyOk(QJsonObject{{"saved", 1}, {"failed", QJsonArray()}});
        MaterialStorageHost::Outcome outcome;
        QVERIFY(MaterialStorageHost::saveToCloud(materials, &server, "L7", nullptr, outcome));
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 expect({{"method", "savematerialprices"}, {"sjksyid", "L7"}, {"hsbz", 1}, {"sj", ""}, {"dd", ""},
                         {"materials", QJsonArray{QJsonObject{{"guid", 5}, {"bh", "01005"}, {"clmc", "PP-R给水管"},
                                                              {"ggxh", "dn32 S4"}, {"dw", "m"}, {"cd", ""}, {"cj", ""},
                                                              {"tj", 10.24}}}}}));
        QCOMPARE(outcome.total, 2);
        QCOMPARE(outcome.saved, 1);
        QCOMPARE(outcome.failed, QList<GljBean *>{materials.at(1)});

        MaterialCheckHost::Choice choice;
        choice.server = &server;
        choice.libraryId = "L7";
        choice.params.setTaxBasis(0);
        choice.params.setTime("2024年05月");
        fx->channel().replyOk(QJsonArray{QJsonObject{{"guid", 5}, {"ydjhs", "11.5"}, {"ydjbhs", 10.2}}});
        const auto records = MaterialCheckHost::fetchRecords(choice, materials.mid(0, 1), nullptr);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 expect({{"method", "getmaterialcheckrecords"}, {"sjksyid", "L7"}, {"params", choice.params.toJson()},
                         {"materials", QJsonArray{QJsonObject{
                                           {"guid", 5}, {"clmc", "PP-R给水管"}, {"ggxh", "dn32 S4"}, {"dw", "m"}}}}}));
        QVERIFY(records && records->size() == 1);
        QCOMPARE(records->first().getYdjhs(), 11.5);
        fx->channel().replyError(3, "价表不存在");
        QVERIFY(!MaterialCheckHost::fetchRecords(choice, materials, nullptr));
        QCOMPARE(fx->messageTexts(), QStringList("价表不存在"));
    }

private:
    static QString MaterialLibraryListRow(CloudCLSaveDialogm &dialog)
    {
        const QModelIndexList rows = dialog.cloudList()->selectionModel()->selectedRows();
        return rows.isEmpty() ? QString() : dialog.cloudList()->tableModel()->cellValue(rows.first().row(), "wb").toString();
    }
};

QTEST_MAIN(TestMaterialFlow)
#include "tst_materialflow.moc"
