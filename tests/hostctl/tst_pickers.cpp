#include "hostfixture.h"

#include <hostapi/modalrun.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/textpathwidget.h>
#include <hostapi/xmgktime.h>

#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {
// A two-level place dictionary as an owner would answer doRequestNextTab.
QStringList childrenOf(const QString &name)
{
    if (name == QStringLiteral("四川省"))
        return {QStringLiteral("成都市"), QStringLiteral("绵阳市")};
    if (name == QStringLiteral("成都市"))
        return {QStringLiteral("金牛区"), QStringLiteral("武侯区")};
    if (name == QStringLiteral("重庆市"))
        return {QStringLiteral("渝中区")};
    return {};
}

void connectDictionary(TextPathDlg &dlg, QList<int> *asked = nullptr)
{
    QObject::connect(&dlg, &TextPathDlg::doRequestNextTab,
                     [asked](int tab, const QString &item, TextPathWidget *, QStringList *next) {
                         if (asked)
                             *asked << tab;
                         *next = childrenOf(item);
                     });
}
}

class TestPickers : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void monthRoundTrip_data()
    {
        QTest::addColumn<QString>("primed");
        QTest::addColumn<int>("shownYear");
        QTest::addColumn<int>("shownMonth");
        QTest::newRow("host form") << QStringLiteral("2023年05月") << 2023 << 5;
        QTest::newRow("short month") << QStringLiteral("2021年9月") << 2021 << 9;
        QTest::newRow("dashed") << QStringLiteral("2019-11") << 2019 << 11;
        QTest::newRow("date") << QStringLiteral("2020-02-29") << 2020 << 2;
    }

    void monthRoundTrip()
    {
        QFETCH(QString, primed);
        QFETCH(int, shownYear);
        QFETCH(int, shownMonth);
        XmgkTime picker;
        picker.SetTimeData(primed);
        QCOMPARE(picker.shownYear(), shownYear);
        QCOMPARE(picker.shownMonth(), shownMonth);
        // Nothing chosen yet: the primed text comes back unchanged.
        QCOMPARE(picker.GetTimeData(), primed);
        fx->answerNextModal([](QDialog *d) {
            auto *p = qobject_cast<XmgkTime *>(d);
            p->chooseMonth(2024, 3);
            return p->result();
        });
        QCOMPARE(picker.ShowModal(), int(XmgkTime::Chosen));
        QCOMPARE(picker.GetTimeData(), QStringLiteral("2024年03月"));
    }

    void monthPickerUserFlow()
    {
        XmgkTime picker;
        picker.SetTimeData(QStringLiteral("2023年05月"));
        picker.show();
        QTest::mouseClick(picker.findChild<QPushButton *>(QStringLiteral("btnPrevYear")), Qt::LeftButton);
        QTest::mouseClick(picker.findChild<QPushButton *>(QStringLiteral("btnMonth12")), Qt::LeftButton);
        QCOMPARE(picker.GetTimeData(), QStringLiteral("2023年05月"));
        QTest::mouseClick(picker.findChild<QPushButton *>(QStringLiteral("btnOk")), Qt::LeftButton);
        QCOMPARE(picker.result(), int(XmgkTime::Chosen));
        QCOMPARE(picker.GetTimeData(), QStringLiteral("2022年12月"));
    }

    void cancelKeepsPrimedText()
    {
        XmgkTime picker;
        picker.SetTimeData(QStringLiteral("2023年05月"));
        picker.show();
        QTest::mouseClick(picker.findChild<QPushButton *>(QStringLiteral("btnMonth1")), Qt::LeftButton);
        QTest::mouseClick(picker.findChild<QPushButton *>(QStringLiteral("btnCancel")), Qt::LeftButton);
        QCOMPARE(picker.result(), int(XmgkTime::Cancelled));
        QCOMPARE(picker.GetTimeData(), QStringLiteral("2023年05月"));
    }

    void unreadableTimeShowsCurrentMonth()
    {
        XmgkTime picker;
        picker.SetTimeData(QStringLiteral("无"));
        QCOMPARE(picker.shownYear(), QDate::currentDate().year());
        QCOMPARE(picker.shownMonth(), QDate::currentDate().month());
        QCOMPARE(picker.GetTimeData(), QStringLiteral("无"));
        QVERIFY(!XmgkTime::parseMonth(QStringLiteral("2023年13月")).isValid());
    }

    void pathGrowsTabByTab()
    {
        TextPathDlg dlg(QStringLiteral("工程地点选择"));
        QList<int> asked;
        connectDictionary(dlg, &asked);
        const QStringList top{QStringLiteral("四川省"), QStringLiteral("重庆市")};
        dlg.addFirstTabData(top.first(), top);
        dlg.addTabData(QStringLiteral("类别1"), childrenOf(top.first()));
        TextPathWidget *w = dlg.pathWidget();
        QCOMPARE(dlg.caption(), QStringLiteral("工程地点选择"));
        QCOMPARE(dlg.getSelectedPath(), (QStringList{QStringLiteral("四川省"), QStringLiteral("类别1")}));

        QVERIFY(w->chooseItem(1, QStringLiteral("成都市")));
        QCOMPARE(w->tabCount(), 3);
        QCOMPARE(w->tabTitle(2), QStringLiteral("类别2"));
        QCOMPARE(w->tabItems(2), childrenOf(QStringLiteral("成都市")));
        QCOMPARE(w->currentTab(), 2);
        QVERIFY(w->chooseItem(2, QStringLiteral("武侯区")));
        QCOMPARE(w->tabCount(), 3);
        QCOMPARE(dlg.getSelectedPath(),
                 (QStringList{QStringLiteral("四川省"), QStringLiteral("成都市"), QStringLiteral("武侯区")}));
        QCOMPARE(asked, (QList<int>{1, 2}));

        // Choosing again on the first tab drops the deeper levels.
        QVERIFY(w->chooseItem(0, QStringLiteral("重庆市")));
        QCOMPARE(dlg.getSelectedPath(), (QStringList{QStringLiteral("重庆市"), QStringLiteral("类别1")}));
        QCOMPARE(w->tabItems(1), QStringList{QStringLiteral("渝中区")});
        QVERIFY(!w->chooseItem(1, QStringLiteral("金牛区")));
        QVERIFY(!w->chooseItem(5, QStringLiteral("渝中区")));
    }

    void clickOnItemChoosesIt()
    {
        TextPathDlg dlg;
        connectDictionary(dlg);
        dlg.addFirstTabData(QStringLiteral("四川省"), {QStringLiteral("四川省"), QStringLiteral("重庆市")});
        dlg.show();
        auto *list = qobject_cast<QListWidget *>(dlg.findChildren<QListWidget *>().value(0));
        QVERIFY(list);
        QListWidgetItem *item = list->findItems(QStringLiteral("四川省"), Qt::MatchExactly).value(0);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(item).center());
        QCOMPARE(dlg.pathWidget()->tabCount(), 2);
        QCOMPARE(dlg.pathWidget()->tabItems(1), childrenOf(QStringLiteral("四川省")));
    }

    void maxTabCountStopsGrowth()
    {
        TextPathDlg dlg;
        QList<int> asked;
        connectDictionary(dlg, &asked);
        dlg.pathWidget()->setMaxTabCount(2);
        dlg.addFirstTabData(QStringLiteral("四川省"), {QStringLiteral("四川省")});
        QVERIFY(dlg.pathWidget()->chooseItem(0, QStringLiteral("四川省")));
        QVERIFY(dlg.pathWidget()->chooseItem(1, QStringLiteral("成都市")));
        QCOMPARE(dlg.pathWidget()->tabCount(), 2);
        QCOMPARE(asked, QList<int>{0});
    }

    void modalRunAcceptsWithPath()
    {
        TextPathDlg dlg(QStringLiteral("工程地点选择"));
        connectDictionary(dlg);
        dlg.addFirstTabData(QStringLiteral("四川省"), {QStringLiteral("四川省"), QStringLiteral("重庆市")});
        dlg.addTabData(QStringLiteral("类别1"), childrenOf(QStringLiteral("四川省")));
        fx->answerNextModal([](QDialog *d) {
            auto *p = qobject_cast<TextPathDlg *>(d);
            p->pathWidget()->chooseItem(1, QStringLiteral("绵阳市"));
            return 1;
        });
        QCOMPARE(ModalRun::exec(&dlg), 1);
        QCOMPARE(dlg.getSelectedPath(), (QStringList{QStringLiteral("四川省"), QStringLiteral("绵阳市")}));
    }

    void leafChoiceAcceptsVisibleDialog()
    {
        TextPathDlg dlg;
        connectDictionary(dlg);
        dlg.addFirstTabData(QStringLiteral("重庆市"), {QStringLiteral("重庆市")});
        dlg.show();
        dlg.pathWidget()->chooseItem(0, QStringLiteral("重庆市"));
        QVERIFY(dlg.isVisible());
        dlg.pathWidget()->chooseItem(1, QStringLiteral("渝中区"));
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
        QVERIFY(!dlg.isVisible());
    }
};

QTEST_MAIN(TestPickers)
#include "tst_pickers.moc"
