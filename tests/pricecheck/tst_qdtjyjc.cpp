#include "loginanswers.h"
#include "hostfixture.h"

#include <cloud/tqdtjyjc_yxys.h>
#include <pricecheck/tinitial.h>
#include <pricecheck/tnextstep.h>
#include <pricecheck/tqdtjyjc.h>

#include <hostapi/cloudservercombox.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/serverregistry.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/users.h>
#include <hostapi/zbasecombox.h>
#include <hostapi/ztabcontent.h>

#include <QCheckBox>
#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace loginanswers;

class TestQdtjyjc : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<TQdtjyjc> dlg;

    // The wizard as the host opens it; with `korvane` the user is logged in
    // to the Korvane cloud, so the personal cloud is chosen at start.
    void open(bool korvane = true)
    {
        if (korvane)
            Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-1"));
        fx->channel().replyOk(serverList());
        dlg = std::make_unique<TQdtjyjc>();
        dlg->CreateUI();
    }
    void toSecondStep()
    {
        dlg->nextButton()->click();
        QCOMPARE(dlg->currentStep(), short(1));
    }
    int listRequests() const
    {
        int n = 0;
        for (const QJsonObject &r : fx->channel().requests())
            if (QJsonDocument(r).toJson().contains("erver"))
                ++n;
        return n;
    }
    QLabel *label(const QString &name) const { return dlg->findChild<QLabel *>(name); }

private slots:
    void initTestCase() { qRegisterMetaType<LtdInfo *>("LtdInfo*"); }
    void init()
    {
        fx = std::make_unique<HostFixture>();
        ServerRegistry::instance()->reset();
    }
    void cleanup()
    {
        dlg.reset();
        ServerRegistry::instance()->reset();
        fx.reset();
    }

    void opensOnTheFirstPage()
    {
        open();
        QCOMPARE(dlg->size(), QSize(600, 430));
        QCOMPARE(dlg->caption(), QStringLiteral("Velora"));
        QCOMPARE(label(QStringLiteral("lblTitle"))->text(), QStringLiteral("清单单价云检查"));
        QCOMPARE(label(QStringLiteral("lblTitle"))->font().pixelSize(), 13);
        QCOMPARE(label(QStringLiteral("lblDescribe"))->text(),
                 QStringLiteral("根据清单信息在积累数据库中进行匹配，对当前单位工程的清单单价进行对比检查。"));
        QCOMPARE(dlg->nextButton()->text(), QStringLiteral("下一步"));
        QCOMPARE(dlg->previousButton()->text(), QStringLiteral("上一步"));
        QCOMPARE(dlg->okButton()->text(), QStringLiteral("确定"));
        QCOMPARE(dlg->closeButton()->text(), QStringLiteral("关闭"));
        QVERIFY(dlg->previousButton()->isHidden());
        QVERIFY(dlg->okButton()->isHidden());
        QVERIFY(!dlg->nextButton()->isHidden());
        QCOMPARE(dlg->currentStep(), short(0));
        QVERIFY(dlg->initialPage());
        QVERIFY(!dlg->nextPage());
        QCOMPARE(dlg->pages()->currentPage(), static_cast<QWidget *>(dlg->initialPage()));

        TInitial *page = dlg->initialPage();
        QStringList captions;
        for (const char *name : {"lblYxys", "lblSj", "lblDd", "lblHb", "lblYyfw", "lblDjly"})
            captions << page->findChild<QLabel *>(QString::fromLatin1(name))->text();
        QCOMPARE(captions, (QStringList{QStringLiteral("影响因素："), QStringLiteral("时间："), QStringLiteral("地点:"),
                                        QStringLiteral("海拔:"), QStringLiteral("应用范围:"), QStringLiteral("单价来源:")}));
        QCOMPARE(page->altitudeLabel()->text(), QStringLiteral("<2.0km"));
        QCOMPARE(page->modifyButton()->width(), 33);
        QCOMPARE(page->serverCombo()->size(), QSize(220, 38));
        // The page asked for the server list and chose the first logged-in entry.
        QCOMPARE(page->getCurrServer()->getServerName(), QStringLiteral("个人云"));
    }

    void noServerChosen()
    {
        open(false);
        QVERIFY(!dlg->initialPage()->getCurrServer());
        QCOMPARE(dlg->initialPage()->serverCombo()->currentText(), QStringLiteral("请选择服务器"));
        dlg->nextButton()->click();
        QCOMPARE(fx->messageTexts(), QStringList{QStringLiteral("请选择服务器")});
        QCOMPARE(fx->messages().first().parent.data(), static_cast<QWidget *>(dlg.get()));
        QCOMPARE(dlg->currentStep(), short(0));
        QVERIFY(!dlg->nextPage());
        QVERIFY(!dlg->nextButton()->isHidden());
    }

    void serverNotLoggedIn()
    {
        open();
        dlg->initialPage()->getCurrServer()->setServerLogin(false);
        dlg->nextButton()->click();
        QCOMPARE(fx->messageTexts(), QStringList{QStringLiteral("请登录服务器")});
        QCOMPARE(dlg->currentStep(), short(0));
        QVERIFY(!dlg->nextPage());
    }

    void goingBackKeepsTheSecondPage()
    {
        open();
        toSecondStep();
        QVERIFY(dlg->nextButton()->isHidden());
        QVERIFY(!dlg->previousButton()->isHidden());
        QVERIFY(!dlg->okButton()->isHidden());
        TNextstep *second = dlg->nextPage();
        QCOMPARE(dlg->pages()->currentPage(), static_cast<QWidget *>(second));
        QVERIFY(second->getradQdChecked());
        QCOMPARE(second->comPjz()->currentText(), QStringLiteral("3"));
        QCOMPARE(second->comPjz()->count(), 2);
        QCOMPARE(second->comPjz()->itemText(1), QStringLiteral("5"));
        second->radXs()->setChecked(true);
        second->comPjz()->setCurrentIndex(1);

        dlg->previousButton()->click();
        QCOMPARE(dlg->currentStep(), short(0));
        QVERIFY(dlg->previousButton()->isHidden() && dlg->okButton()->isHidden());
        QVERIFY(!dlg->nextButton()->isHidden());
        QCOMPARE(dlg->pages()->currentPage(), static_cast<QWidget *>(dlg->initialPage()));

        toSecondStep();
        QCOMPARE(dlg->nextPage(), second);
        QCOMPARE(dlg->pages()->count(), 2);
        QVERIFY(second->getradChecked());
        QVERIFY(!second->getradQdChecked());
        QCOMPARE(second->getcomPjzChecked(), QStringLiteral("5"));
    }

    void confirmClosesThenReportsServerAndCount_data()
    {
        QTest::addColumn<bool>("mostSimilar");
        QTest::addColumn<int>("comboIndex");
        QTest::addColumn<int>("matchNum");
        QTest::newRow("most similar whatever the combo shows") << true << 1 << 1;
        QTest::newRow("average of 3") << false << 0 << 3;
        QTest::newRow("average of 5") << false << 1 << 5;
    }
    void confirmClosesThenReportsServerAndCount()
    {
        QFETCH(bool, mostSimilar);
        QFETCH(int, comboIndex);
        QFETCH(int, matchNum);
        open();
        dlg->show();
        toSecondStep();
        TNextstep *second = dlg->nextPage();
        (mostSimilar ? second->radQd() : second->radXs())->setChecked(true);
        second->comPjz()->setCurrentIndex(comboIndex);
        LtdInfo *server = dlg->initialPage()->getCurrServer();
        bool visibleAtSignal = true;
        QList<QPair<LtdInfo *, int>> got;
        connect(dlg.get(), &TQdtjyjc::signalQdButtonClicked, this, [&](LtdInfo *s, int n) {
            visibleAtSignal = dlg->isVisible();
            got << qMakePair(s, n);
        });
        dlg->okButton()->click();
        QCOMPARE(got.size(), 1);
        QCOMPARE(got.first().first, server);
        QCOMPARE(got.first().second, matchNum);
        QVERIFY(!visibleAtSignal);
    }

    void closingSendsNothing()
    {
        open();
        dlg->show();
        toSecondStep();
        QSignalSpy spy(dlg.get(), &TQdtjyjc::signalQdButtonClicked);
        dlg->closeButton()->click();
        QVERIFY(!dlg->isVisible());
        dlg->show();
        dlg->titleBar()->findChild<QPushButton *>(QStringLiteral("btnClose"))->click();
        QVERIFY(!dlg->isVisible());
        QCOMPARE(spy.count(), 0);
    }

    void settersBeforeTheFirstPageDoNothing()
    {
        TQdtjyjc bare;
        QString sj = QStringLiteral("2024年03月"), dd = QStringLiteral("四川省"), hb = QStringLiteral("<2.0km");
        bare.setSjDdHb(sj, dd, hb);
        bare.setYyfwText(QStringLiteral("当前单位工程"));
        QCOMPARE(bare.getSJ(), QString());
        QCOMPARE(bare.getDD(), QString());
        QVERIFY(fx->exceptionReports().isEmpty());
    }

    void timePlaceAltitudeAndScope_data()
    {
        QTest::addColumn<QString>("sj");
        QTest::addColumn<QString>("dd");
        QTest::addColumn<QString>("shownSj");
        QTest::addColumn<QString>("shownDd");
        QTest::addColumn<QString>("getSj");
        const QString month = QDate::currentDate().toString(QStringLiteral("yyyy年MM月"));
        QTest::newRow("empty time is this month, empty place 无") << QString() << QString() << month
                                                               << QStringLiteral("无") << month;
        QTest::newRow("11 characters stay on one line")
            << QStringLiteral("2023年05月") << QStringLiteral("新疆维吾尔自治区石河子") << QStringLiteral("2023年05月")
            << QStringLiteral("新疆维吾尔自治区石河子") << QStringLiteral("2023年05月");
        QTest::newRow("12 characters break after the 11th")
            << QStringLiteral("2023年05月") << QStringLiteral("新疆维吾尔自治区石河子市") << QStringLiteral("2023年05月")
            << QStringLiteral("新疆维吾尔自治区石河子\n市") << QStringLiteral("2023年05月");
        QTest::newRow("time with a dash gives its second piece")
            << QStringLiteral("2020-2023年05月") << QStringLiteral("四川省") << QStringLiteral("2020-2023年05月")
            << QStringLiteral("四川省") << QStringLiteral("2023年05月");
    }
    void timePlaceAltitudeAndScope()
    {
        QFETCH(QString, sj);
        QFETCH(QString, dd);
        QFETCH(QString, shownSj);
        QFETCH(QString, shownDd);
        QFETCH(QString, getSj);
        open();
        QString hb = QStringLiteral("2.0km-3.0km");
        dlg->setSjDdHb(sj, dd, hb);
        dlg->setYyfwText(QStringLiteral("当前单位工程"));
        TInitial *page = dlg->initialPage();
        QCOMPARE(page->timeLabel()->text(), shownSj);
        QCOMPARE(page->placeLabel()->text(), shownDd);
        QCOMPARE(page->altitudeLabel()->text(), hb);
        QCOMPARE(page->scopeLabel()->text(), QStringLiteral("当前单位工程"));
        QCOMPARE(dlg->getSJ(), getSj);
        QCOMPARE(dlg->getDD(), shownDd);
    }

    void modifyFollowsTheDialogAndReportsWithoutBreaks()
    {
        open();
        QString sj = QStringLiteral("2023年05月"), dd = QStringLiteral("新疆维吾尔自治区石河子市"), hb;
        dlg->setSjDdHb(sj, dd, hb);
        QSignalSpy forwarded(dlg.get(), &TQdtjyjc::signalYxysChanged);
        QString seenTime, seenPlace, labelDuringRun;
        fx->answerNextModal([&](QDialog *d) {
            auto *yxys = qobject_cast<TQdtjyjc_Yxys *>(d);
            if (!yxys)
                return 0;
            seenTime = yxys->timeField()->text();
            seenPlace = yxys->placeField()->text();
            yxys->placeField()->setText(QStringLiteral("四川省成都市金牛区西华街道办事处"));
            yxys->confirmButton()->click();
            labelDuringRun = dlg->initialPage()->placeLabel()->text();
            return d->result();
        });
        dlg->initialPage()->modifyButton()->click();
        QCOMPARE(seenTime, QStringLiteral("2023年05月"));
        QCOMPARE(seenPlace, QStringLiteral("新疆维吾尔自治区石河子市"));
        QCOMPARE(labelDuringRun, QStringLiteral("四川省成都市金牛区西华\n街道办事处"));
        QCOMPARE(forwarded.count(), 1);
        QCOMPARE(forwarded.at(0).at(0).toString(), QStringLiteral("2023年05月"));
        QCOMPARE(forwarded.at(0).at(1).toString(), QStringLiteral("四川省成都市金牛区西华街道办事处"));
        QCOMPARE(dlg->initialPage()->findChildren<TQdtjyjc_Yxys *>().size(), 0);
    }

    void modifyReportsAnEmptyPlaceForNone()
    {
        open();
        QString sj = QStringLiteral("2023年05月"), dd = QStringLiteral("四川省"), hb;
        dlg->setSjDdHb(sj, dd, hb);
        QSignalSpy forwarded(dlg.get(), &TQdtjyjc::signalYxysChanged);
        fx->answerNextModal([](QDialog *d) {
            auto *yxys = qobject_cast<TQdtjyjc_Yxys *>(d);
            yxys->clearButton()->click();
            yxys->confirmButton()->click();
            return d->result();
        });
        dlg->initialPage()->modifyButton()->click();
        QCOMPARE(dlg->initialPage()->placeLabel()->text(), QStringLiteral("无"));
        QCOMPARE(forwarded.count(), 1);
        QCOMPARE(forwarded.at(0).at(1).toString(), QString());
    }

    void modifyWithoutSyncReportsNothing()
    {
        open();
        QSignalSpy forwarded(dlg.get(), &TQdtjyjc::signalYxysChanged);
        fx->answerNextModal([](QDialog *d) {
            auto *yxys = qobject_cast<TQdtjyjc_Yxys *>(d);
            yxys->syncBox()->setChecked(false);
            yxys->placeField()->setText(QStringLiteral("四川省"));
            yxys->confirmButton()->click();
            return d->result();
        });
        dlg->initialPage()->modifyButton()->click();
        QCOMPARE(dlg->initialPage()->placeLabel()->text(), QStringLiteral("四川省"));
        QCOMPARE(forwarded.count(), 0);
    }

    void forwardingEndsWithTheSecondStep()
    {
        open();
        QSignalSpy forwarded(dlg.get(), &TQdtjyjc::signalYxysChanged);
        QSignalSpy fromPage(dlg->initialPage(), &TInitial::signalYxysChanged);
        toSecondStep();
        dlg->previousButton()->click();
        fx->answerNextModal([](QDialog *d) {
            qobject_cast<TQdtjyjc_Yxys *>(d)->confirmButton()->click();
            return d->result();
        });
        dlg->initialPage()->modifyButton()->click();
        QCOMPARE(fromPage.count(), 1);
        QCOMPARE(forwarded.count(), 0);
    }

    void forcedLogoutReturnsToTheFirstPage_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("kvyForceExit") << 0;
        QTest::newRow("priForceExit") << 1;
        QTest::newRow("priLogin elsewhere") << 2;
    }
    void forcedLogoutReturnsToTheFirstPage()
    {
        QFETCH(int, kind);
        open();
        toSecondStep();
        const int before = listRequests();
        fx->channel().replyOk(serverList());
        staticPriLoginObj *broker = staticPriLoginObj::GetInstance();
        if (kind == 0)
            emit broker->kvyForceExit();
        else if (kind == 1)
            emit broker->priForceExit(QStringLiteral("华东企业"));
        else
            emit broker->priLogin(QStringLiteral("华东企业"));
        QCOMPARE(listRequests(), before + 1);
        QCOMPARE(dlg->currentStep(), short(0));
        QCOMPARE(dlg->pages()->currentPage(), static_cast<QWidget *>(dlg->initialPage()));
        QVERIFY(dlg->previousButton()->isHidden() && dlg->okButton()->isHidden());
        QVERIFY(!dlg->nextButton()->isHidden());
    }

    void ownLoginIgnoresTheBrokersLogin()
    {
        open();
        const int before = listRequests();
        int duringLogin = -1;
        fx->answerNextModal([&](QDialog *d) {
            emit staticPriLoginObj::GetInstance()->priLogin(QStringLiteral("华东企业"));
            duringLogin = listRequests();
            return cancelLogin()(d);
        });
        // 华东企业 is not logged in: choosing it starts this page's own login.
        emit dlg->initialPage()->serverCombo()->signalCurrentItemChanged(2);
        QCOMPARE(fx->modalRuns().size(), 1);
        QCOMPARE(duringLogin, before);
    }

    void brokerIsLeftAloneAfterClosing()
    {
        open();
        dlg->show();
        toSecondStep();
        dlg->closeButton()->click();
        const int before = listRequests();
        emit staticPriLoginObj::GetInstance()->kvyForceExit();
        emit staticPriLoginObj::GetInstance()->priForceExit(QStringLiteral("华东企业"));
        QCOMPARE(listRequests(), before);
        QCOMPARE(dlg->currentStep(), short(1));
    }
};

QTEST_MAIN(TestQdtjyjc)
#include "tst_qdtjyjc.moc"
