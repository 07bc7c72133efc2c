#include "hostfixture.h"

#include <hostapi/fymodel.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QAbstractItemModelTester>
#include <QPushButton>
#include <QtTest>

#include <memory>

class TestHostDialogs : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

    static QStringList headers(const zTableModel *model)
    {
        QStringList out;
        for (int c = 0; c < model->columnCount(); ++c)
            out << model->headerData(c, Qt::Horizontal).toString() + QLatin1Char('/')
                       + model->headerData(c, Qt::Horizontal, zTableCell::KeyRole).toString();
        return out;
    }

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void feeDialogShowsSixColumnsInOrder()
    {
        const QList<cloudFymb> fees{
            cloudFymb(QStringLiteral("A"), QStringLiteral("人工费"), QStringLiteral("RGF"), QStringLiteral("100"),
                      QStringLiteral("35.20"), QStringLiteral("rgf")),
            cloudFymb(QStringLiteral("B"), QStringLiteral("管理费"), QStringLiteral("A*FL"), QStringLiteral("12.5"),
                      QStringLiteral("4.40"), QStringLiteral("glf"))};
        FyModel dlg(fees);
        dlg.CreateUI();
        dlg.CreateUI();
        zTableModel *model = dlg.tableModel();
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(headers(model), (QStringList{QStringLiteral("费用编号/fybh"), QStringLiteral("费用名称/fymc"),
                                              QStringLiteral("计算公式/jjgs"), QStringLiteral("费率/fl"),
                                              QStringLiteral("金额/jl"), QStringLiteral("计价表字段/jjbzd")}));
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(model->cellValue(1, QStringLiteral("fymc")).toString(), QStringLiteral("管理费"));
        QCOMPARE(model->cellValue(1, QStringLiteral("jjgs")).toString(), QStringLiteral("A*FL"));
        QCOMPARE(model->cellValue(0, QStringLiteral("jl")).toString(), QStringLiteral("35.20"));
        QCOMPARE(model->cellValue(0, QStringLiteral("jjbzd")).toString(), QStringLiteral("rgf"));
        QCOMPARE(dlg.tableView()->columnWidth(5), 120);
        QCOMPARE(dlg.caption(), QStringLiteral("费用模板"));
    }

    void emptyFeeListShowsHeadersOnly()
    {
        FyModel dlg(QList<cloudFymb>{});
        dlg.CreateUI();
        QCOMPARE(dlg.tableModel()->columnCount(), 6);
        QCOMPARE(dlg.tableModel()->rowCount(), 0);
    }

    void feeDialogRunsThroughModalRun()
    {
        FyModel dlg(QList<cloudFymb>{});
        dlg.CreateUI();
        fx->answerNextModal([](QDialog *d) {
            d->findChild<QPushButton *>(QStringLiteral("btnOk"))->click();
            return d->result();
        });
        QCOMPARE(dlg.ShowModal(), int(QDialog::Accepted));
        QCOMPARE(fx->modalRuns(), QStringList{QStringLiteral("FyModel")});
    }
};

QTEST_MAIN(TestHostDialogs)
#include "tst_hostdialogs.moc"
