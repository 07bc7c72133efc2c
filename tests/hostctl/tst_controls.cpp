#include "cloudjson.h"
#include "hosttestcase.h"

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/apptype.h>
#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/fymodel.h>
#include <hostapi/logindialog.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/modalrun.h>
#include <hostapi/tablegrid.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/textpathwidget.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/wizardsteps.h>
#include <hostapi/xmgktime.h>
#include <hostapi/zbaselabel.h>
#include <hostapi/zfiltersearchbox.h>
#include <hostapi/zgroupheaderview.h>
#include <hostapi/ztabcontent.h>
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
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMovie>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTabBar>
#include <QtTest>

#include <memory>

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

// A titled dialog that counts its own confirm action and its close events.
class CountingModal : public zTitleModal
{
public:
    int oks = 0;
    int closes = 0;
    void actOk() override { ++oks; zTitleModal::actOk(); }

protected:
    void closeEvent(QCloseEvent *event) override { ++closes; zTitleModal::closeEvent(event); }
};

QString describe(QLayoutItem *item)
{
    if (auto *w = item->widget()) {
        auto *b = qobject_cast<QPushButton *>(w);
        const QString text = b ? b->text() : qobject_cast<QLabel *>(w)->text();
        return QStringLiteral("%1 %2 %3x%4").arg(w->objectName(), text).arg(w->width()).arg(w->height());
    }
    const bool stretch = item->spacerItem()->sizePolicy().horizontalPolicy() == QSizePolicy::Expanding;
    return stretch ? QStringLiteral("stretch") : QStringLiteral("gap %1").arg(item->sizeHint().width());
}

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

class TestControls : public HostTestCase
{
    Q_OBJECT
private:
    LtdInfo personal{QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 1, 0, true};
    LtdInfo korvane{QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 1, 0, true};
    LtdInfo enterprise{QStringLiteral("某某造价公司"), QStringLiteral("ent_7"), 2, 7, false};
    LtdInfo enterpriseIn{QStringLiteral("某某造价公司"), QStringLiteral("ent_session_7"), 2, 7, true};

private slots:
    void initTestCase()
    {
        veloraInitResources();
        qRegisterMetaType<Qt::CheckState>();
    }
    void titleBarClosesUnlessDisabled()
    {
        zTitleModal dlg;
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
        // Roles follow the kinds of the cells.
        declareResultList(model, 1);
        const QModelIndex name = model.index(0, 1);
        const QModelIndex price = model.index(0, 3);
        const QModelIndex check = model.index(0, 4);
        QCOMPARE(name.data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignLeft | Qt::AlignVCenter));
        QCOMPARE(price.data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
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
    }

    // The grid drawn by fills must be Qt's own grid, pixel for pixel.
    void tableGridMatchesQtGrid_data()
    {
        QTest::addColumn<QString>("setup");
        for (const char *setup : {"plain", "headers", "wrapped", "hidden", "spans", "scrolled", "rtl",
                                  "styled", "alternate"})
            QTest::newRow(setup) << QString::fromLatin1(setup);
    }
    void tableGridMatchesQtGrid()
    {
        QFETCH(QString, setup);
        QStandardItemModel model(30, 5);
        for (int r = 0; r < model.rowCount(); ++r) {
            for (int c = 0; c < model.columnCount(); ++c) {
                auto *item = new QStandardItem(QStringLiteral("清单%1 第%2列 土方开挖").arg(r).arg(c));
                if (r % 3 == 0)
                    item->setBackground(QColor(0xF2, 0xF3, 0xF5));
                model.setItem(r, c, item);
            }
        }
        const auto grab = [&](bool ours) {
            QTableView view;
            view.setModel(&model);
            view.resize(420, 260);
            if (setup != QLatin1String("headers")) {
                view.horizontalHeader()->hide();
                view.verticalHeader()->hide();
            }
            if (setup == QLatin1String("wrapped")) {
                view.setWordWrap(true);
                view.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
                view.resizeRowsToContents();
            } else if (setup == QLatin1String("hidden")) {
                view.setRowHidden(2, true);
                view.setColumnHidden(1, true);
            } else if (setup == QLatin1String("spans")) {
                view.setSpan(1, 0, 1, 3);
                view.setSpan(4, 2, 3, 2);
                view.setSpan(0, 3, 3, 2);
            } else if (setup == QLatin1String("scrolled")) {
                view.setSpan(0, 1, 4, 2);
                view.verticalScrollBar()->setValue(2);
                view.horizontalScrollBar()->setValue(40);
            } else if (setup == QLatin1String("rtl")) {
                view.setLayoutDirection(Qt::RightToLeft);
            } else if (setup == QLatin1String("styled")) {
                view.setStyleSheet(QStringLiteral("QTableView{gridline-color:#2F7CF6;}"));
            } else if (setup == QLatin1String("alternate")) {
                view.setAlternatingRowColors(true);
                view.setRowHidden(3, true);
            }
            if (ours) {
                TableGrid::install(&view);
                if (view.gridStyle() != Qt::NoPen)
                    return QImage();
            }
            view.show();
            return view.grab().toImage();
        };
        const QImage qt = grab(false);
        QCOMPARE(grab(true), qt);
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

    void buttonRowAndFactoryLayOutWhatTheyAreGiven()
    {
        QDialog dialog;
        ButtonRow row(&dialog); // never installed: the test owns it
        row.addLeading(WidgetFactory::label(QStringLiteral("已选0个工程"), QStringLiteral("lblCount"), &dialog, 150, 24));
        row.setButtonSize(60, 24);
        row.addOkCancel(&dialog, 5);
        row.addButton(QStringLiteral("关闭"), QStringLiteral("btnGb"));
        QStringList items;
        for (int i = 0; i < row.count(); ++i)
            items << describe(row.itemAt(i));
        QCOMPARE(items, (QStringList{"lblCount 已选0个工程 150x24", "stretch", "btnOk 确定 60x24", "gap 5",
                                     "btnCancel 取消 60x24", "btnGb 关闭 60x24"}));
        QCOMPARE(row.okButton()->parent(), &dialog);
        QLabel *rule = WidgetFactory::rule(QStringLiteral("lblLine1"), &dialog, 564, QStringLiteral("#DCDFE6"));
        QCOMPARE(rule->maximumSize(), QSize(564, 1));
    }

    void okAndCancelReachTheDialog_data()
    {
        QTest::addColumn<bool>("titled");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("oks");
        QTest::newRow("titled 确定 runs actOk") << true << true << int(QDialog::Accepted) << 1;
        QTest::newRow("titled 取消") << true << false << int(QDialog::Rejected) << 0;
        QTest::newRow("plain 确定 accepts") << false << true << int(QDialog::Accepted) << 0;
        QTest::newRow("plain 取消 rejects") << false << false << int(QDialog::Rejected) << 0;
    }
    void okAndCancelReachTheDialog()
    {
        QFETCH(bool, titled);
        QFETCH(bool, ok);
        CountingModal modal;
        QDialog plain;
        QDialog *dialog = titled ? &modal : static_cast<QDialog *>(&plain);
        ButtonRow row(dialog);
        row.addOkCancel(dialog);
        dialog->setResult(-1);
        (ok ? row.okButton() : row.cancelButton())->click();
        QTEST(dialog->result(), "result");
        QTEST(modal.oks, "oks");
    }

    void childDialogSurvivesDeaths_data()
    {
        QTest::addColumn<QString>("dies");
        QTest::addColumn<int>("result");
        QTest::addColumn<bool>("read");
        QTest::newRow("nobody") << QString() << 1 << true;
        QTest::newRow("owner during the run") << QStringLiteral("owner") << int(ChildDialog::Gone) << false;
        QTest::newRow("child during the run") << QStringLiteral("child") << int(ChildDialog::Gone) << false;
    }
    void childDialogSurvivesDeaths()
    {
        QFETCH(QString, dies);
        QPointer<QWidget> owner = new QWidget;
        QPointer<QDialog> child = new QDialog(owner);
        fx->answerNextModal([&](QDialog *running) {
            if (dies == QLatin1String("owner"))
                delete owner.data();
            else if (dies == QLatin1String("child"))
                delete running;
            return 1;
        });
        bool wasRead = false;
        QTEST(ChildDialog::run(owner, child, [&](int) { wasRead = child && owner; }), "result");
        QTEST(wasRead, "read");
        QVERIFY(!child);
        delete owner.data();
    }

    void wizardSwitchesPagesAndButtons()
    {
        CountingModal dialog;
        auto *pages = new zTabContent(&dialog);
        QPushButton *previous = WidgetFactory::button(QStringLiteral("上一步"), QStringLiteral("btnSyb"), &dialog);
        QPushButton *ok = WidgetFactory::button(QStringLiteral("确定"), QStringLiteral("btnQd"), &dialog);
        QPushButton *next = WidgetFactory::button(QStringLiteral("下一步"), QStringLiteral("btnXyb"), &dialog);
        QPushButton *close = WidgetFactory::button(QStringLiteral("关闭"), QStringLiteral("btnGb"), &dialog);
        WizardSteps steps(pages);
        QList<int> made;
        auto page = [&](int step) { return [&made, step] { made << step; return new QLabel(QString::number(step)); }; };
        QCOMPARE(steps.addStep(page(0), {next}, next), 0);
        QCOMPARE(steps.addStep(page(1), {previous, ok}, ok), 1);
        QSignalSpy changed(&steps, &WizardSteps::stepChanged);
        auto shown = [&] {
            QStringList out;
            for (QPushButton *b : {previous, ok, next, close})
                out << (b->isHidden() ? QString() : b->text() + (b->isDefault() ? QStringLiteral("*") : QString()));
            return out.join(QLatin1Char('|'));
        };
        QCOMPARE(steps.currentStep(), -1);
        steps.showStep(0);
        QCOMPARE(shown(), QStringLiteral("||下一步*|关闭"));
        steps.next();
        QCOMPARE(shown(), QStringLiteral("上一步|确定*||关闭"));
        QCOMPARE(pages->currentPage(), steps.page(1));
        steps.previous();
        steps.showStep(0);
        steps.showStep(2);
        QCOMPARE(steps.currentStep(), 0);
        QCOMPARE(pages->currentPage(), steps.page(0));
        QCOMPARE(made, (QList<int>{0, 1}));
        QCOMPARE(changed.size(), 3);
        pages->setCurrentIndex(7); // ignored
        pages->tabBar()->setCurrentIndex(1); // a click on the (hidden) tab bar
        QCOMPARE(pages->currentPage(), steps.page(1));
        // A page that died is made again.
        pages->removePage(1);
        QCOMPARE(pages->currentPage(), steps.page(0));
        steps.next();
        QCOMPARE(made, (QList<int>{0, 1, 1}));
        QCOMPARE(pages->count(), 2);
        steps.closeOnEscape(&dialog);
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QCOMPARE(dialog.closes, 1);
        QVERIFY(!dialog.isVisible());
    }

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
        std::unique_ptr<zTitleModal> dialog = hostDialog(which);
        const QSize least = dialog->minimumSize();
        QTEST(QStringLiteral("%1 %2x%3").arg(dialog->caption()).arg(least.width()).arg(least.height()), "look");
        dialog->show();
        auto *cancel = dialog->findChild<QPushButton *>(QStringLiteral("btnCancel"));
        QTEST(rowOf(dialog.get(), cancel), "buttons");
        QTEST(dialog->width() - 1 - (cancel->mapTo(dialog.get(), QPoint()).x() + cancel->width()), "rightMargin");
        fx->answerNextModal([&](QDialog *d) {
            QPushButton *first = d->findChild<QPushButton *>(QStringLiteral("btnOk"));
            (first ? first : d->findChild<QPushButton *>(QStringLiteral("btnLogin")))->click();
            return d->result();
        });
        dialog->setResult(-1);
        QTEST(dialog->ShowModal(), "firstButtonResult");
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
        XmgkTime picker;
        picker.SetTimeData(primed);
        picker.setResult(-1);
        picker.show();
        for (const QString &name : clicks) {
            QCOMPARE(picker.GetTimeData(), primed); // nothing chosen yet
            QTest::mouseClick(picker.findChild<QPushButton *>(name), Qt::LeftButton);
        }
        QTEST(picker.result(), "result");
        QTEST(picker.GetTimeData(), "text");
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
        const QJsonObject enterprise{{"method", m}, {"qiyeID", 7}, {"usetype", 2}};
        QTest::newRow("personal") << 0 << false << personal;
        QTest::newRow("enterprise, no conditions") << 2 << true << enterprise;
    }
    void requestByTier()
    {
        QFETCH(int, which);
        QFETCH(bool, condNull);
        QFETCH(QJsonObject, data);
        const LtdInfo *server = QList<LtdInfo *>{&personal, &korvane, &enterpriseIn}.at(which);
        QCOMPARE(AccumulatedProjectQuery::buildRequest(*server, 2, QStringLiteral(" 住宅 "), condNull),
                 cloudjson::envelope(server->getToken(), data, AppType()));
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
        CloudProCheck dlg(QStringList{chosen, chosen}, server ? &enterpriseIn : nullptr, "建筑", TQDNodeInfo());
        dlg.setIscondNull(false);
        QCOMPARE(dlg.InitGcInfo(), message.isEmpty());
        QCOMPARE(fx->messageTexts(), message.isEmpty() ? QStringList() : QStringList{message});
        const QJsonObject data{{"method", "getaccumulatedprojects"}, {"qiyeID", 7}, {"usetype", 2}};
        const QList<QJsonObject> sent{cloudjson::envelope("ent_session_7", data, AppType())};
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

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
