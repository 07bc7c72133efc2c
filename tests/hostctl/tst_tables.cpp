#include "hosttestcase.h"

#include <hostapi/zfiltersearchbox.h>
#include <hostapi/zgroupheaderview.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <hostapi/ztreemodel.h>
#include <hostapi/ztreeview.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(Qt::CheckState)

namespace {
// The result list of the unit-price check, as the dialogs declare it (again:
// the model refuses a second declaration), with `rows` bills.
void declareResultList(zTableModel &model, int rows = 0)
{
    model.addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 50, 5003);
    model.addColumn(QStringLiteral("项目名称"), QStringLiteral("xmmc"), 291, 5003);
    model.addColumn(QStringLiteral("单位"), QStringLiteral("dw"), 60, 5003);
    model.addColumn(QStringLiteral("综合|单价"), QStringLiteral("zhdj"), 90, 5003);
    model.addColumn(QStringLiteral("选用"), QStringLiteral("xy"), 40, 5003);
    model.addColumn(QStringLiteral("操作"), QStringLiteral("cz"), 59, 5003);
    for (int xh = 1; xh <= rows; ++xh) {
        model.addRow();
        model.appendCell(QStringLiteral("xh"), xh, 5004);
        model.appendCell(QStringLiteral("xmmc"), QStringLiteral("土方开挖%1").arg(xh), 5004);
        model.appendCell(QStringLiteral("dw"), QStringLiteral("m3"), 5004);
        model.appendCell(QStringLiteral("zhdj"), QStringLiteral("%1.50").arg(xh * 10), 5005);
        model.appendCell(QStringLiteral("xy"), QString(), 5006);
        model.appendCell(QStringLiteral("cz"), QStringLiteral("选用"), 5007);
    }
}

void click(QAbstractItemView &view, const QModelIndex &index, QPoint offset = QPoint())
{
    const QRect cell = view.visualRect(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, offset.isNull() ? cell.center() : cell.topLeft() + offset);
}

void show(QAbstractItemView &view, QAbstractItemModel *model)
{
    view.setModel(model);
    view.resize(700, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
}
}

class TestTables : public HostTestCase
{
    Q_OBJECT
private slots:
    void initTestCase() { qRegisterMetaType<Qt::CheckState>(); }

    void modelChecksDeclarationsAndPassesTheTester()
    {
        zTableModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        declareResultList(model);
        QVERIFY(!model.addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 50, 5003));
        QVERIFY(!model.addColumn(QStringLiteral("金额"), QStringLiteral("je"), 50, 5004));
        QVERIFY(!model.appendCell(QStringLiteral("nosuchkey"), 1, 5004));
        QVERIFY(!model.appendCell(QStringLiteral("xh"), 1, 4711));
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(model.appendCell(QStringLiteral("xh"), 1, 5004));
        QCOMPARE(model.cellValue(0, QStringLiteral("xmmc")), QVariant());
        QVERIFY(!model.setCheckState(0, QStringLiteral("xh"), Qt::Checked));
        QVERIFY(!model.setSpan(0, QStringLiteral("dw"), 1, 5));
        QVERIFY(!model.setSpan(0, QStringLiteral("xh"), 2, 1));
        model.clearRows();
        declareResultList(model, 4);
        model.setRowForeground(3, Qt::red);
        QVERIFY(model.setSpan(3, QStringLiteral("xmmc"), 1, 2));
        model.setCheckState(1, QStringLiteral("xy"), Qt::Checked);
        model.removeRowAt(0);
        QCOMPARE(model.cellValue(0, QStringLiteral("xh")).toInt(), 2);
        QCOMPARE(model.spans(), QList<QRect>{QRect(1, 2, 2, 1)});
        model.clearRows();
        QCOMPARE(model.columnCount(), 6);
        QVERIFY(model.spans().isEmpty());
        model.clearAll();
        QCOMPARE(model.columnCount(), 0);
    }

    void rolesFollowCellKinds()
    {
        zTableModel model;
        declareResultList(model, 1);
        const QModelIndex name = model.index(0, 1);
        const QModelIndex price = model.index(0, 3);
        const QModelIndex check = model.index(0, 4);
        QCOMPARE(name.data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(price.data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
        QCOMPARE(price.data(zTableCell::KindRole).toInt(), 5005);
        QCOMPARE(check.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
        QVERIFY(model.flags(check) & Qt::ItemIsUserCheckable);
        QVERIFY(!(model.flags(name) & Qt::ItemIsUserCheckable));
        QVERIFY(!name.data(Qt::CheckStateRole).isValid());
        model.setRowData(0, QStringLiteral("bill-7"));
        QCOMPARE(price.data(zTableCell::RowDataRole).toString(), QStringLiteral("bill-7"));
        QCOMPARE(model.headerData(3, Qt::Horizontal).toString(), QStringLiteral("综合\n单价"));
        QCOMPARE(model.headerData(3, Qt::Horizontal, zTableCell::TitleRole).toString(), QStringLiteral("综合|单价"));
    }

    void cellClicksToggleAndSignal()
    {
        zTableModel model;
        declareResultList(model, 2);
        zTableView view;
        show(view, &model);
        QSignalSpy checks(&view, &zTableView::signalCheckBoxClicked);
        QSignalSpy clicks(&view, &zTableView::cellClicked);
        QSignalSpy buttons(&view, &zTableView::signalButtonClicked);
        const QModelIndex check = model.index(1, 4);
        click(view, check);
        QCOMPARE(checks.at(0).at(0).value<QModelIndex>(), check);
        QCOMPARE(checks.at(0).at(1).value<Qt::CheckState>(), Qt::Checked);
        QCOMPARE(model.checkedRows(QStringLiteral("xy")), QList<int>{1});
        click(view, check);
        QCOMPARE(checks.at(1).at(1).value<Qt::CheckState>(), Qt::Unchecked);
        QVERIFY(model.checkedRows(QStringLiteral("xy")).isEmpty());
        // A click on a text cell toggles nothing but reports the cell.
        click(view, model.index(0, 1));
        QCOMPARE(checks.count(), 2);
        QCOMPARE(clicks.last().at(0).toInt(), 0);
        QCOMPARE(clicks.last().at(1).toString(), QStringLiteral("土方开挖1"));
        QCOMPARE(view.selectionModel()->selectedRows(), QModelIndexList{model.index(0, 0)});
        // The drawn button of a button cell presses; its corner does not.
        click(view, model.index(1, 5));
        click(view, model.index(1, 5), QPoint(1, 1));
        QCOMPARE(buttons.count(), 1);
        QCOMPARE(buttons.at(0).at(0).value<QModelIndex>(), model.index(1, 5));
        // Widths and spans follow the model.
        QCOMPARE(view.columnWidth(1), 291);
        QVERIFY(model.setSpan(0, QStringLiteral("xmmc"), 1, 2));
        QCOMPARE(view.columnSpan(0, 1), 2);
        model.clearRows();
        declareResultList(model, 1);
        QCOMPARE(view.columnSpan(0, 1), 1);
        view.selectRowAt(0);
        QCOMPARE(view.currentIndex().row(), 0);
    }

    void treeModelAndView()
    {
        zTreeModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.addColumn(QStringLiteral("定额编号"), QStringLiteral("debh"), 170);
        model.addColumn(QStringLiteral("单价计算程序"), QStringLiteral("djjscx"), 76);
        model.addColumn(QStringLiteral("综合|单价"), QStringLiteral("zhdj"), 60);
        model.addColumn(QStringLiteral("综合|合价"), QStringLiteral("zhhj"), 60);
        zStandardTreeNodeData root;
        for (int i = 1; i <= 3; ++i) {
            zStandardTreeNodeData *line = root.addChild();
            line->setId(i);
            line->setCell(QStringLiteral("debh"), QStringLiteral("A1-%1").arg(i), 5004);
            line->setCell(QStringLiteral("djjscx"), QStringLiteral("查看"), 5007);
            zStandardTreeNodeData *material = line->addChild();
            material->setId(10 + i);
            material->setCell(QStringLiteral("debh"), QStringLiteral("C%1").arg(i), 5004);
        }
        model.setRootData(root);
        root.clearChildren(); // the model holds its own copy
        const QModelIndex second = model.index(1, 0);
        const QModelIndex child = model.index(0, 0, second);
        QCOMPARE(child.data().toString(), QStringLiteral("C2"));
        QCOMPARE(model.parent(child), second);
        QCOMPARE(model.nodeAt(child)->id(), 12);
        zStandardTreeNodeData *added = model.appendChild(second);
        model.setCell(model.indexOf(added, 0), QStringLiteral("C9"), 5004);
        QCOMPARE(model.index(1, 0, second).data().toString(), QStringLiteral("C9"));
        QVERIFY(!model.setCell(model.indexOf(added, 1), QStringLiteral("x"), 99));
        // The view: declared widths, a pressable button cell, grouped headers.
        zTreeView view;
        show(view, &model);
        QCOMPARE(view.columnWidth(0), 170);
        QSignalSpy buttons(&view, &zTreeView::signalButtonClicked);
        click(view, model.index(2, 1));
        QCOMPARE(model.nodeAt(buttons.value(0).value(0).value<QModelIndex>())->id(), 3);
        auto *header = qobject_cast<zGroupHeaderView *>(view.header());
        QCOMPARE(header->groupOf(0), QString());
        QCOMPARE(header->groupOf(3), QStringLiteral("综合"));
        QCOMPARE(header->groupRun(2), qMakePair(2, 3));
        QCOMPARE(header->groupRun(1), qMakePair(1, 1));
        QVERIFY(qobject_cast<zGroupHeaderView *>(zTableView().horizontalHeader()));
        model.clearRows();
        QCOMPARE(model.rowCount(), 0);
    }

    void searchBoxEmitsTypedText()
    {
        zFilterSearchBox box;
        box.show();
        QSignalSpy search(&box, &zFilterSearchBox::signalSearch);
        box.lineEdit()->insert(QStringLiteral("混凝土"));
        QTest::keyClick(box.lineEdit(), Qt::Key_Return);
        QTest::mouseClick(box.searchButton(), Qt::LeftButton);
        QCOMPARE(QList<QVariantList>(search), (QList<QVariantList>{{"混凝土"}, {"混凝土"}}));
    }
};

QTEST_MAIN(TestTables)
#include "tst_tables.moc"
