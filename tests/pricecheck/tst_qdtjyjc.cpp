#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/tqdtjyjc_yxys.h>
#include <pricecheck/pricecheckinputs.h>
#include <pricecheck/tinitial.h>
#include <pricecheck/tnextstep.h>
#include <pricecheck/tqdtjyjc.h>

#include <hostapi/cloudchannel.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
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

#include <stdexcept>

using namespace loginanswers;

class TestQdtjyjc : public HostTestCase
{
    Q_OBJECT
private:
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
    bool onFirstPage() const
    {
        return dlg->currentStep() == 0 && dlg->pages()->currentPage() == dlg->initialPage()
               && dlg->previousButton()->isHidden() && dlg->okButton()->isHidden() && !dlg->nextButton()->isHidden();
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
        HostTestCase::init();
        ServerRegistry::instance()->reset();
    }
    void cleanup()
    {
        dlg.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void opensOnTheFirstPage()
    {
        open();
        QCOMPARE(dlg->size(), QSize(600, 430));
        QCOMPARE(dlg->caption(), QStringLiteral("Velora"));
        QStringList texts;
        for (const char *name : {"lblTitle", "lblDescribe", "lblYxys", "lblSj", "lblDd", "lblHb", "lblHbsz", "lblYyfw",
                                 "lblDjly"})
            texts << label(QString::fromLatin1(name))->text();
        for (QPushButton *b : {dlg->nextButton(), dlg->previousButton(), dlg->okButton(), dlg->closeButton()})
            texts << b->text();
        QCOMPARE(texts, (QStringList{"清单单价云检查",
                                     "根据清单信息在积累数据库中进行匹配，对当前单位工程的清单单价进行对比检查。",
                                     "影响因素：", "时间：", "地点:", "海拔:", "<2.0km", "应用范围:", "单价来源:",
                                     "下一步", "上一步", "确定", "关闭"}));
        QVERIFY(onFirstPage());
        QVERIFY(!dlg->nextPage());
        TInitial *page = dlg->initialPage();
        QCOMPARE(page->modifyButton()->width(), 33);
        QCOMPARE(page->serverCombo()->size(), QSize(220, 38));
        // The page asked for the server list and chose the first logged-in entry.
        QCOMPARE(page->getCurrServer()->getServerName(), QStringLiteral("个人云"));
    }

    void nextStepNeedsALoggedInServer_data()
    {
        QTest::addColumn<bool>("korvane");
        QTest::addColumn<QString>("message");
        QTest::newRow("none chosen") << false << "请选择服务器";
        QTest::newRow("chosen, logged out") << true << "请登录服务器";
    }
    void nextStepNeedsALoggedInServer()
    {
        QFETCH(bool, korvane);
        QFETCH(QString, message);
        open(korvane);
        if (LtdInfo *server = dlg->initialPage()->getCurrServer())
            server->setServerLogin(false);
        else
            QCOMPARE(dlg->initialPage()->serverCombo()->currentText(), QStringLiteral("请选择服务器"));
        dlg->nextButton()->click();
        QCOMPARE(fx->messageTexts(), QStringList{message});
        QCOMPARE(fx->messages().first().parent.data(), static_cast<QWidget *>(dlg.get()));
        QVERIFY(onFirstPage());
        QVERIFY(!dlg->nextPage());
    }

    void goingBackKeepsTheSecondPage()
    {
        open();
        toSecondStep();
        QVERIFY(dlg->nextButton()->isHidden() && !dlg->previousButton()->isHidden() && !dlg->okButton()->isHidden());
        TNextstep *second = dlg->nextPage();
        QCOMPARE(dlg->pages()->currentPage(), static_cast<QWidget *>(second));
        QVERIFY(second->getradQdChecked());
        QCOMPARE(second->comPjz()->currentText(), QStringLiteral("3"));
        QCOMPARE(second->comPjz()->itemText(1), QStringLiteral("5"));
        second->radXs()->setChecked(true);
        second->comPjz()->setCurrentIndex(1);

        dlg->previousButton()->click();
        QVERIFY(onFirstPage());
        toSecondStep();
        QCOMPARE(dlg->nextPage(), second);
        QCOMPARE(dlg->pages()->count(), 2);
        QVERIFY(second->getradChecked() && !second->getradQdChecked());
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
        QCOMPARE(got, (QList<QPair<LtdInfo *, int>>{qMakePair(server, matchNum)}));
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

    // The input rules alone, no window.
    void inputs_data()
    {
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("shownTime");
        QTest::addColumn<QString>("checkTime");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("handedOn");
        const QString month = QDate::currentDate().toString(QStringLiteral("yyyy年MM月"));
        QTest::newRow("nothing: this month, 无") << "" << "" << month << month << "无" << "";
        QTest::newRow("11 characters stay on one line")
            << "2023年05月" << "新疆维吾尔自治区石河子" << "2023年05月" << "2023年05月" << "新疆维吾尔自治区石河子"
            << "新疆维吾尔自治区石河子";
        QTest::newRow("12 characters break after the 11th")
            << "2023年05月" << "新疆维吾尔自治区石河子市" << "2023年05月" << "2023年05月"
            << "新疆维吾尔自治区石河子\n市" << "新疆维吾尔自治区石河子市";
        QTest::newRow("a label's text reads back") << "2023年05月" << "新疆维吾尔自治区石河子\n市" << "2023年05月"
                                                  << "2023年05月" << "新疆维吾尔自治区石河子\n市"
                                                  << "新疆维吾尔自治区石河子市";
        QTest::newRow("无 is none") << "2023年05月" << "无" << "2023年05月" << "2023年05月" << "无" << "";
        QTest::newRow("a time with a dash gives its second piece")
            << "2020-2023年05月" << "四川省" << "2020-2023年05月" << "2023年05月" << "四川省" << "四川省";
    }
    void inputs()
    {
        QFETCH(QString, time);
        QFETCH(QString, place);
        QFETCH(QString, shownTime);
        QFETCH(QString, checkTime);
        QFETCH(QString, label);
        QFETCH(QString, handedOn);
        PriceCheckInputs in;
        in.setTime(PriceCheckInputs::timeOrThisMonth(time));
        in.setPlace(place);
        QCOMPARE(in.time(), shownTime);
        QCOMPARE(in.checkTime(), checkTime);
        QCOMPARE(in.placeLabel(), label);
        QCOMPARE(in.placeText(), QString(label).remove(QLatin1Char('\n')));
        QCOMPARE(in.place(), handedOn);
        for (const auto &count : {qMakePair(1, 0), qMakePair(3, 1), qMakePair(5, 2), qMakePair(4, 0)}) {
            in.setMatchNum(count.first);
            QCOMPARE(in.matchIndex(), count.second);
        }
    }

    void pageShowsTheHostsValues()
    {
        open();
        QString sj = QStringLiteral("2020-2023年05月"), dd = QStringLiteral("新疆维吾尔自治区石河子市"),
                hb = QStringLiteral("2.0km-3.0km");
        dlg->setSjDdHb(sj, dd, hb);
        dlg->setYyfwText(QStringLiteral("当前单位工程"));
        TInitial *page = dlg->initialPage();
        QCOMPARE((QStringList{page->timeLabel()->text(), page->placeLabel()->text(), page->altitudeLabel()->text(),
                              page->scopeLabel()->text(), dlg->getSJ(), dlg->getDD()}),
                 (QStringList{sj, "新疆维吾尔自治区石河子\n市", hb, "当前单位工程", "2023年05月",
                              "新疆维吾尔自治区石河子\n市"}));
    }

    void modify_data()
    {
        QTest::addColumn<QString>("chosen"); // "" clears the place
        QTest::addColumn<bool>("sync");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QStringList>("reported");
        QTest::newRow("long place, synced") << "四川省成都市金牛区西华街道办事处" << true << "四川省成都市金牛区西华\n街道办事处"
                                            << QStringList{"2023年05月", "四川省成都市金牛区西华街道办事处"};
        QTest::newRow("cleared, synced") << "" << true << "无" << QStringList{"2023年05月", ""};
        QTest::newRow("not synced") << "四川省" << false << "四川省" << QStringList();
    }
    void modify()
    {
        QFETCH(QString, chosen);
        QFETCH(bool, sync);
        QFETCH(QString, label);
        QFETCH(QStringList, reported);
        open();
        QString sj = QStringLiteral("2023年05月"), dd = QStringLiteral("新疆维吾尔自治区石河子市"), hb;
        dlg->setSjDdHb(sj, dd, hb);
        QSignalSpy forwarded(dlg.get(), &TQdtjyjc::signalYxysChanged);
        QStringList seen;
        fx->answerNextModal([&](QDialog *d) {
            auto *yxys = qobject_cast<TQdtjyjc_Yxys *>(d);
            seen << yxys->timeField()->text() << yxys->placeField()->text();
            yxys->syncBox()->setChecked(sync);
            if (chosen.isEmpty())
                yxys->clearButton()->click();
            else
                yxys->placeField()->setText(chosen);
            yxys->confirmButton()->click();
            seen << dlg->initialPage()->placeLabel()->text();
            return d->result();
        });
        dlg->initialPage()->modifyButton()->click();
        QCOMPARE(seen, (QStringList{"2023年05月", "新疆维吾尔自治区石河子市", label}));
        QCOMPARE(forwarded.count(), reported.isEmpty() ? 0 : 1);
        if (!reported.isEmpty())
            QCOMPARE((QStringList{forwarded.at(0).at(0).toString(), forwarded.at(0).at(1).toString()}), reported);
        QCOMPARE(dlg->initialPage()->findChildren<TQdtjyjc_Yxys *>().size(), 0);
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

    void loginElsewhereReturnsToTheFirstPage_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("kvyForceExit") << 0;
        QTest::newRow("priForceExit") << 1;
        QTest::newRow("priLogin elsewhere") << 2;
    }
    void loginElsewhereReturnsToTheFirstPage()
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
        QVERIFY(onFirstPage());
    }

    void failedReloadIsReportedUnderTheWizard()
    {
        struct Down : CloudChannel
        {
            CloudCall *start(const QJsonObject &, const QString &) override { throw std::runtime_error("down"); }
            QString name() const override { return QStringLiteral("down"); }
        };
        open();
        ServicesUtil::setChannel(std::make_shared<Down>());
        emit staticPriLoginObj::GetInstance()->kvyForceExit();
        QCOMPARE(fx->exceptionReports().size(), 1);
        QVERIFY2(fx->exceptionReports().first().contains(
                     QRegularExpression(R"(down \(Qddjyjc:\d+ TInitial::requestServerList\)$)")),
                 qPrintable(fx->exceptionReports().first()));
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
