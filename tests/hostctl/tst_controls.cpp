#include "hosttestcase.h"

#include <hostapi/cloudprocheck.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/fymodel.h>
#include <hostapi/logindialog.h>
#include <hostapi/markcolorhelp.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/xmgktime.h>
#include <hostapi/zbaselabel.h>
#include <hostapi/ztabcontent.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>
#include <resources/veloraresources.h>

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QImageReader>
#include <QLabel>
#include <QMovie>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QtTest>

#include <memory>

namespace {
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

private slots:
    void initTestCase() { veloraInitResources(); }
    void hostDialogsAsTheUserSeesThem_data()
    {
        QTest::addColumn<QString>("which");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QStringList>("buttons");
        QTest::addColumn<int>("rightMargin");
        QTest::addColumn<int>("firstButtonResult");
        QTest::newRow("month picker") << "month" << "时间选择" << QSize(300, 270) << QStringList{"确定", "取消"} << 16
                                      << int(XmgkTime::Chosen);
        QTest::newRow("place picker") << "path" << "工程地点选择" << QSize(520, 340) << QStringList{"确定*", "取消"}
                                      << 12 << 1;
        QTest::newRow("fee template") << "fee" << "费用模板" << QSize(790, 450) << QStringList{"确定*", "取消"} << 20
                                      << 1;
        QTest::newRow("project filter") << "filter" << "工程筛选" << QSize(640, 460) << QStringList{"确定", "取消"}
                                        << 16 << 1;
        // An empty user name keeps the form open, without a result.
        QTest::newRow("login") << "login" << "登录" << QSize() << QStringList{"登录*", "取消"} << 24 << -1;
    }

    void hostDialogsAsTheUserSeesThem()
    {
        QFETCH(QString, which);
        QFETCH(QString, caption);
        QFETCH(QSize, size);
        QFETCH(QStringList, buttons);
        QFETCH(int, rightMargin);
        QFETCH(int, firstButtonResult);
        std::unique_ptr<zTitleModal> dialog = hostDialog(which);
        QCOMPARE(dialog->caption(), caption);
        QCOMPARE(dialog->windowTitle(), caption);
        if (size.isValid())
            QCOMPARE(dialog->maximumSize(), size);
        dialog->show();
        auto *cancel = dialog->findChild<QPushButton *>(QStringLiteral("btnCancel"));
        QCOMPARE(rowOf(dialog.get(), cancel), buttons);
        QCOMPARE(dialog->width() - 1 - (cancel->mapTo(dialog.get(), QPoint()).x() + cancel->width()), rightMargin);
        fx->answerNextModal([&](QDialog *d) {
            QPushButton *first = d->findChild<QPushButton *>(QStringLiteral("btnOk"));
            (first ? first : d->findChild<QPushButton *>(QStringLiteral("btnLogin")))->click();
            return d->result();
        });
        dialog->setResult(-1);
        QCOMPARE(dialog->ShowModal(), firstButtonResult);
        QCOMPARE(fx->modalRuns().size(), 1);
        if (which == QLatin1String("login"))
            QCOMPARE(qobject_cast<LoginDialog *>(dialog.get())->errorText(), QStringLiteral("请输入用户名"));
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
            seen << model->headerData(c, Qt::Horizontal).toString() + "/" + key + "=" + model->cellValue(1, key).toString();
        }
        QCOMPARE(seen, (QStringList{"费用编号/fybh=B", "费用名称/fymc=管理费", "计算公式/jjgs=A*FL", "费率/fl=12.5",
                                    "金额/jl=4.40", "计价表字段/jjbzd=glf"}));
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(dlg.tableView()->columnWidth(5), 120);
        for (const char *name : {"btnOk", "btnCancel"})
            QCOMPARE(dlg.findChild<QPushButton *>(name)->size(), QSize(60, 24));
    }

    void tabContentHasExactlyOneCurrentPage()
    {
        zTabContent tabs;
        QCOMPARE(tabs.currentIndex(), -1);
        QSignalSpy changed(&tabs, &zTabContent::currentChanged);
        QPointer<QWidget> a = new QLabel(QStringLiteral("a"));
        auto *b = new QLabel(QStringLiteral("b"));
        QCOMPARE(tabs.addPage(a, QStringLiteral("项目特征")), 0);
        QCOMPARE(tabs.addPage(b, QStringLiteral("组价内容")), 1);
        QCOMPARE(tabs.currentPage(), a);
        tabs.setCurrentPage(b);
        QCOMPARE(tabs.tabBar()->currentIndex(), 1);
        tabs.setCurrentIndex(7);
        tabs.tabBar()->setCurrentIndex(0); // a click on the tab bar
        QCOMPARE(tabs.currentPage(), a);
        QCOMPARE(changed.count(), 3);
        tabs.removePage(0);
        QVERIFY(a.isNull());
        QCOMPARE(tabs.currentPage(), b);
    }

    void labelElidesAndKeepsFullText()
    {
        zBaseLabel label;
        label.setFixedWidth(60);
        label.setElideMode(Qt::ElideRight);
        const QString name = QStringLiteral("成都市金牛区某某大厦二期土建及安装工程");
        label.setFullText(name);
        QCOMPARE(label.fullText(), name);
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
        QVERIFY(!box.comboBox()->itemIcon(0).isNull());
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
};

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
