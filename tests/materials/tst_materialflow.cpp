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

private:
    static QString MaterialLibraryListRow(CloudCLSaveDialogm &dialog)
    {
        const QModelIndexList rows = dialog.cloudList()->selectionModel()->selectedRows();
        return rows.isEmpty() ? QString() : dialog.cloudList()->tableModel()->cellValue(rows.first().row(), "wb").toString();
    }
};

QTEST_MAIN(TestMaterialFlow)
#include "tst_materialflow.moc"
