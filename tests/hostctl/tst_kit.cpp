#include "hosttestcase.h"

#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/wizardsteps.h>
#include <hostapi/ztabcontent.h>
#include <hostapi/ztitlemodal.h>

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QtTest>

namespace {
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
}

class TestKit : public HostTestCase
{
    Q_OBJECT
private slots:
    void buttonRowAndFactoryLayOutWhatTheyAreGiven()
    {
        QDialog dialog;
        auto *row = new ButtonRow(&dialog);
        row->addLeading(WidgetFactory::label(QStringLiteral("已选0个工程"), QStringLiteral("lblCount"), &dialog, 150, 24));
        row->setButtonSize(60, 24);
        row->addOkCancel(&dialog, 5);
        row->addButton(QStringLiteral("关闭"), QStringLiteral("btnGb"));
        QStringList items;
        for (int i = 0; i < row->count(); ++i)
            items << describe(row->itemAt(i));
        QCOMPARE(items, (QStringList{"lblCount 已选0个工程 150x24", "stretch", "btnOk 确定 60x24", "gap 5",
                                     "btnCancel 取消 60x24", "btnGb 关闭 60x24"}));
        QCOMPARE(row->okButton()->parent(), &dialog);
        QLabel *rule = WidgetFactory::rule(QStringLiteral("lblLine1"), &dialog, 564, QStringLiteral("#DCDFE6"));
        QCOMPARE(rule->maximumSize(), QSize(564, 1));
        QCOMPARE(rule->styleSheet(), QStringLiteral("background:#DCDFE6;"));
        QCOMPARE(WidgetFactory::label("", "lblError", &dialog, QStringLiteral("color: red;"))->styleSheet(),
                 QStringLiteral("color: red;"));
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
        QFETCH(int, result);
        QFETCH(int, oks);
        CountingModal modal;
        QDialog plain;
        QDialog *dialog = titled ? &modal : static_cast<QDialog *>(&plain);
        ButtonRow row(dialog);
        row.addOkCancel(dialog);
        dialog->setResult(-1);
        (ok ? row.okButton() : row.cancelButton())->click();
        QCOMPARE(dialog->result(), result);
        QCOMPARE(modal.oks, oks);
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
        QFETCH(int, result);
        QFETCH(bool, read);
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
        QCOMPARE(ChildDialog::run(owner, child, [&](int) { wasRead = child && owner; }), result);
        QCOMPARE(wasRead, read);
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
};

QTEST_MAIN(TestKit)
#include "tst_kit.moc"
