#include "hosttestcase.h"

#include <hostapi/cloudservercombox.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/markcolorhelp.h>
#include <hostapi/zbaselabel.h>
#include <hostapi/zfiltersearchbox.h>
#include <hostapi/zgroupheaderview.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <hostapi/ztitlemodal.h>
#include <hostapi/ztreemodel.h>
#include <hostapi/ztreeview.h>
#include <resources/veloraresources.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QHeaderView>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QMovie>
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

class TestControls : public HostTestCase
{
    Q_OBJECT
private:
    LtdInfo personal{QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 1, 0, true};
    LtdInfo korvane{QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 1, 0, true};
    LtdInfo enterprise{QStringLiteral("某某造价公司"), QStringLiteral("ent_7"), 2, 7, false};

private slots:
    void initTestCase()
    {
        veloraInitResources();
        qRegisterMetaType<Qt::CheckState>();
    }
    void titleBarClosesUnlessDisabled()
    {
        zTitleModal dlg;
        QCOMPARE(dlg.titleBar()->objectName(), QStringLiteral("widgetTitleBar"));
        QVERIFY(!dlg.clientWidget()->isAncestorOf(dlg.titleBar()));
        dlg.show();
        auto *btnMin = dlg.titleBar()->findChild<QPushButton *>(QStringLiteral("btnMin"));
        QVERIFY(btnMin->isVisible());
        dlg.OnlyClose();
        QVERIFY(!btnMin->isVisible());
        for (bool enabled : {false, true}) {
            dlg.titleBar()->setEnabled(enabled);
            QTest::mouseClick(dlg.titleBar()->findChild<QPushButton *>(QStringLiteral("btnClose")), Qt::LeftButton);
            QCOMPARE(dlg.isVisible(), !enabled);
        }
        QCOMPARE(dlg.result(), int(QDialog::Rejected));
    }

    void labelElidesAndKeepsFullText()
    {
        zBaseLabel label;
        label.setFixedWidth(60);
        label.setElideMode(Qt::ElideRight);
        const QString name = QStringLiteral("成都市金牛区某某大厦二期土建及安装工程");
        label.setFullText(name);
        QVERIFY(label.text().endsWith(QChar(0x2026)));
        QCOMPARE(label.toolTip(), name);
        QSignalSpy clicked(&label, &zBaseLabel::labelClicked);
        QTest::mouseClick(&label, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
    }

    void markColours()
    {
        QSet<QString> colours;
        for (int i = 0; i < markColorHelp::ColorCount; ++i)
            colours.insert(QColor(markColorHelp::GetColorPath(i)).name());
        QCOMPARE(colours.size(), 6);
        QCOMPARE(markColorHelp::GetColorName(0) + markColorHelp::GetColorName(5), QStringLiteral("标记色①标记色⑥"));
        QCOMPARE(markColorHelp::GetColorPath(6) + markColorHelp::GetColorPath(-1), QString());
    }

    void serverBoxShowsChoiceOrPlaceholder_data()
    {
        QTest::addColumn<int>("servers");
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text"); // and the index shown, -1 for the placeholder
        const QString none = QStringLiteral("请选择服务器 -1");
        QTest::newRow("none") << 3 << -1 << none;
        QTest::newRow("beyond list") << 3 << 3 << none;
        QTest::newRow("first") << 3 << 0 << "个人云 0";
        QTest::newRow("enterprise") << 3 << 2 << "某某造价公司 2";
        QTest::newRow("empty list") << 0 << 0 << none;
    }

    void serverBoxShowsChoiceOrPlaceholder()
    {
        QFETCH(int, servers);
        QFETCH(int, index);
        QFETCH(QString, text);
        CloudServerCombox box;
        QList<LtdInfo *> all{&personal, &korvane, &enterprise};
        box.setServerList(all, 1, true);
        QList<LtdInfo *> shown = all.mid(0, servers);
        box.setServerList(shown, index, true);
        QCOMPARE(QStringLiteral("%1 %2").arg(box.currentText()).arg(box.currentIndex()), text);
        QCOMPARE(box.comboBox()->count(), servers);
        // Text leaves several colours along the middle row of the label area;
        // an empty box is one colour there (its bevel gradient is vertical).
        box.setFixedSize(180, 26);
        const QImage image = box.comboBox()->grab().toImage();
        QSet<QRgb> colours;
        for (int x = 8; x < 100; ++x)
            colours.insert(image.pixel(x, image.height() / 2));
        QVERIFY2(colours.size() > 2, "no text drawn");
    }

    void serverBoxMarksLoginsAndSignalsUserChoice()
    {
        CloudServerCombox box;
        QSignalSpy picked(&box, &CloudServerCombox::signalCurrentItemChanged);
        QList<LtdInfo *> servers{&personal, &korvane, &enterprise};
        box.setServerList(servers, 0, true);
        QCOMPARE(box.comboBox()->itemData(0, Qt::UserRole).toBool(), true);
        QCOMPARE(box.comboBox()->itemData(2, Qt::UserRole).toBool(), false);
        QCOMPARE(box.comboBox()->itemData(2, Qt::ToolTipRole).toString(), QStringLiteral("未登录"));
        // A later login shows up when the host hands the list again.
        enterprise.setServerLogin(true);
        box.setServerList(servers, 1, false);
        QCOMPARE(box.comboBox()->itemData(2, Qt::UserRole).toBool(), true);
        box.comboBox()->setCurrentIndex(2);
        QCOMPARE(picked.count(), 0);
        box.setServerList(servers, 0, true);
        box.show();
        box.comboBox()->setFocus();
        QTest::keyClick(box.comboBox(), Qt::Key_Down);
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked.takeFirst().at(0).toInt(), 1);
        QCOMPARE(box.currentText(), QStringLiteral("Korvane云"));
    }

    // Every image the dialogs name resolves to a drawable resource.
    void imagesLoad_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("side");
        for (const char *name : {"s_icon_qdycc", "s_icon_djyjc", "s_icon_znyzj", "s_icon_xmytz", "s_icon_cjycc"})
            QTest::newRow(name) << QStringLiteral(":/Image/Velostra/%1.svg").arg(name) << 32;
        for (const char *name : {"lastqd", "lastqd-HOVER", "nextqd", "nextqd-HOVER"})
            QTest::newRow(name) << QStringLiteral(":/Image/Velostra/%1.svg").arg(name) << 24;
        for (const char *name : {"file", "folder", "openFolder"})
            QTest::newRow(name) << QStringLiteral(":/Image/svg/%1.svg").arg(name) << 16;
        for (const char *name : {"arrowTop", "arrowBottom"})
            QTest::newRow(name) << QStringLiteral(":/res/%1.png").arg(name) << 12;
        QTest::newRow("loading") << QStringLiteral(":/Image/Velostra/loading-YFAUpdata.gif") << 32;
    }

    void imagesLoad()
    {
        QFETCH(QString, path);
        QFETCH(int, side);
        QImageReader reader(path);
        const QImage image = reader.read();
        QVERIFY2(!image.isNull(), qPrintable(path + QLatin1Char(' ') + reader.errorString()));
        QCOMPARE(image.size(), QSize(side, side));
        bool drawn = false;
        for (int i = 0; i < side * side && !drawn; ++i)
            drawn = qAlpha(image.pixel(i % side, i / side)) > 128;
        QVERIFY(drawn);
        if (path.endsWith(QLatin1String(".gif")))
            QCOMPARE(QMovie(path).frameCount(), 12);
    }

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

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
