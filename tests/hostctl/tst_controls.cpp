#include "hosttestcase.h"

#include <hostapi/interfaceadaptation.h>
#include <hostapi/zbaselabel.h>
#include <hostapi/ztabcontent.h>
#include <hostapi/ztitlemodal.h>

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QtTest>

#include <memory>

class TestControls : public HostTestCase
{
    Q_OBJECT
private slots:

    void showModalRunsThroughModalRun()
    {
        zTitleModal dlg;
        dlg.SetCaption(QStringLiteral("Velora"));
        bool sawCaption = false;
        fx->answerNextModal([&](QDialog *d) {
            auto *modal = qobject_cast<zTitleModal *>(d);
            sawCaption = modal && modal->caption() == QStringLiteral("Velora");
            modal->actOk();
            return modal->result();
        });
        QCOMPARE(dlg.ShowModal(), int(QDialog::Accepted));
        QVERIFY(sawCaption);
        QCOMPARE(fx->modalRuns(), QStringList{QStringLiteral("zTitleModal")});
        QCOMPARE(dlg.windowTitle(), QStringLiteral("Velora"));
    }

    void titleBarAndCloseOnly()
    {
        zTitleModal dlg;
        QWidget *bar = dlg.findChild<QWidget *>(QStringLiteral("widgetTitleBar"));
        QVERIFY(bar);
        QCOMPARE(dlg.titleBar(), bar);
        QVERIFY(!dlg.clientWidget()->isAncestorOf(bar));
        dlg.show();
        auto *btnMin = bar->findChild<QPushButton *>(QStringLiteral("btnMin"));
        auto *btnClose = bar->findChild<QPushButton *>(QStringLiteral("btnClose"));
        QVERIFY(btnMin && btnClose);
        QVERIFY(btnMin->isVisible());
        dlg.OnlyClose();
        QVERIFY(!btnMin->isVisible());
        QVERIFY(btnClose->isVisible());
        // The caption bar's close button rejects.
        QTest::mouseClick(btnClose, Qt::LeftButton);
        QCOMPARE(dlg.result(), int(QDialog::Rejected));
        QVERIFY(!dlg.isVisible());
    }

    void disabledTitleBarCannotClose()
    {
        zTitleModal dlg;
        dlg.show();
        dlg.titleBar()->setEnabled(false);
        auto *btnClose = dlg.titleBar()->findChild<QPushButton *>(QStringLiteral("btnClose"));
        QTest::mouseClick(btnClose, Qt::LeftButton);
        QVERIFY(dlg.isVisible());
    }

    void scaledSizeAtNinetySixDpi()
    {
        QCOMPARE(InterfaceAdaptation::getResolutionRatioH(), 1.0);
        zTitleModal dlg;
        dlg.setScaledFixedSize(600, 430);
        QCOMPARE(dlg.size(), QSize(600, 430));
    }

    void tabContentHasExactlyOneCurrentPage()
    {
        zTabContent tabs;
        QCOMPARE(tabs.currentIndex(), -1);
        QSignalSpy changed(&tabs, &zTabContent::currentChanged);
        auto *a = new QLabel(QStringLiteral("a"));
        auto *b = new QLabel(QStringLiteral("b"));
        QCOMPARE(tabs.addPage(a, QStringLiteral("项目特征")), 0);
        QCOMPARE(tabs.addPage(b, QStringLiteral("组价内容")), 1);
        QCOMPARE(tabs.currentPage(), a);
        tabs.setCurrentPage(b);
        QCOMPARE(tabs.currentIndex(), 1);
        QCOMPARE(tabs.tabBar()->currentIndex(), 1);
        tabs.setCurrentIndex(7);
        QCOMPARE(tabs.currentIndex(), 1);
        tabs.setTabText(0, QStringLiteral("工程内容"));
        QCOMPARE(tabs.tabText(0), QStringLiteral("工程内容"));
        // A click on the tab bar switches the page as well.
        tabs.tabBar()->setCurrentIndex(0);
        QCOMPARE(tabs.currentPage(), a);
        QCOMPARE(changed.count(), 3);
        QPointer<QWidget> gone(a);
        tabs.removePage(0);
        QVERIFY(gone.isNull());
        QCOMPARE(tabs.count(), 1);
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
        QVERIFY(label.text() != name);
        QVERIFY(label.text().endsWith(QChar(0x2026)));
        QCOMPARE(label.toolTip(), name);
        QSignalSpy clicked(&label, &zBaseLabel::labelClicked);
        QTest::mouseClick(&label, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1);
    }
};

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
