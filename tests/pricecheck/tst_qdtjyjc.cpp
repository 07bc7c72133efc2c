#include "hosttestcase.h"
#include "loginanswers.h"

#include <dialogregistry.h>
#include <hostcontext.h>
#include <pricecheckhost.h>

#include <cloud/tqdtjyjc_yxys.h>
#include <pricecheck/pricecheckinputs.h>
#include <pricecheck/tinitial.h>
#include <pricecheck/tnextstep.h>
#include <pricecheck/tqdtjyjc.h>

#include <hostapi/cloudchannel.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/users.h>
#include <hostapi/zbasecombox.h>
#include <hostapi/ztabcontent.h>

#include <QCheckBox>
#include <QDate>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QUndoStack>
#include <QtTest>

using namespace loginanswers;

class TestQdtjyjc : public HostTestCase
{
    Q_OBJECT
private:
    std::unique_ptr<TQdtjyjc> dlg;
    HostContext host;

    // The wizard as the host opens it on the project's settings (time, place,
    // altitude); with `korvane` the user is logged in to the Korvane cloud, so
    // the personal cloud is chosen at start.
    void open(bool korvane = true, const QStringList &settings = {"2023年05月", "新疆维吾尔自治区石河子市", "50m"})
    {
        if (korvane)
            Users::Instance()->Kvy()->setLogin(QStringLiteral("u1"), QStringLiteral("张三"), QStringLiteral("sess-1"));
        ProjectSettingsInfo info;
        info.time = settings.at(0);
        info.place = settings.at(1);
        info.placeCode = QStringLiteral("659001");
        info.altitude = settings.at(2);
        ProjectSettingHelper::SetProjectSettingsInfo(info);
        fx->channel().replyOk(serverList());
        dlg = std::make_unique<TQdtjyjc>();
        PriceCheckHost::prepare(*dlg, host);
    }
    static QStringList settings()
    {
        const ProjectSettingsInfo now = ProjectSettingHelper::GetProjectSettingsInfo();
        return {now.time, now.place, now.placeCode};
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
        RURecordControl::undoStack()->clear();
    }
    void cleanup()
    {
        dlg.reset();
        RURecordControl::undoStack()->clear();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void opensOnTheFirstPage_data()
    {
        QTest::addColumn<QStringList>("settings"); // time, place, altitude
        QTest::addColumn<QStringList>("shown");    // time, place, altitude labels, then getSJ() and getDD()
        const QString month = QDate::currentDate().toString(QStringLiteral("yyyy年MM月"));
        QTest::newRow("project settings") << QStringList{"2020-2023年05月", "新疆维吾尔自治区石河子市", "500m"}
                                          << QStringList{"2020-2023年05月", "新疆维吾尔自治区石河子\n市", "500m",
                                                         "2023年05月", "新疆维吾尔自治区石河子\n市"};
        QTest::newRow("nothing set") << QStringList{"", "", ""} << QStringList{month, "无", "<2.0km", month, "无"};
    }
    void opensOnTheFirstPage()
    {
        QFETCH(QStringList, settings);
        QCOMPARE(DialogRegistry::find(QStringLiteral("pricecheck"))->title, QStringLiteral("清单单价云检查"));
        open(true, settings);
        QCOMPARE(dlg->size(), QSize(600, 430));
        QCOMPARE(dlg->caption(), QStringLiteral("Velora"));
        QStringList texts;
        for (const char *name : {"lblTitle", "lblDescribe", "lblYxys", "lblSj", "lblDd", "lblHb", "lblYyfw", "lblDjly"})
            texts << label(QString::fromLatin1(name))->text();
        for (QPushButton *b : {dlg->nextButton(), dlg->previousButton(), dlg->okButton(), dlg->closeButton()})
            texts << b->text();
        QCOMPARE(texts, (QStringList{"清单单价云检查",
                                     "根据清单信息在积累数据库中进行匹配，对当前单位工程的清单单价进行对比检查。",
                                     "影响因素：", "时间：", "地点:", "海拔:", "应用范围:", "单价来源:", "下一步", "上一步",
                                     "确定", "关闭"}));
        TInitial *page = dlg->initialPage();
        QTEST((QStringList{page->timeLabel()->text(), page->placeLabel()->text(), page->altitudeLabel()->text(),
                           dlg->getSJ(), dlg->getDD()}),
              "shown");
        QVERIFY(onFirstPage());
        QVERIFY(!dlg->nextPage());
        // The page asked for the server list and chose the first logged-in entry.
        QCOMPARE(page->getCurrServer()->getServerName(), QStringLiteral("个人云"));
    }

    // "下一步" needs a logged-in server; "确定" closes, then reports the server
    // and the count. Going back keeps the second page and its choices.
    void steps_data()
    {
        QTest::addColumn<int>("login"); // 0 none chosen, 1 chosen but logged out, 2 logged in
        QTest::addColumn<bool>("mostSimilar");
        QTest::addColumn<int>("comboIndex");
        QTest::addColumn<int>("matchNum");
        QTest::addColumn<QStringList>("messages");
        QTest::newRow("no server chosen") << 0 << true << 0 << 0 << QStringList{"请选择服务器"};
        QTest::newRow("server logged out") << 1 << true << 0 << 0 << QStringList{"请登录服务器"};
        QTest::newRow("most similar whatever the combo shows") << 2 << true << 1 << 1 << QStringList();
        QTest::newRow("average of 3") << 2 << false << 0 << 3 << QStringList();
        QTest::newRow("average of 5") << 2 << false << 1 << 5 << QStringList();
    }
    void steps()
    {
        QFETCH(int, login);
        QFETCH(bool, mostSimilar);
        QFETCH(int, comboIndex);
        QFETCH(int, matchNum);
        QFETCH(QStringList, messages);
        open(login > 0);
        dlg->show();
        if (login == 1)
            dlg->initialPage()->getCurrServer()->setServerLogin(false);
        QTest::keyClick(dlg.get(), Qt::Key_Return); // Enter is each page's forward button
        QCOMPARE(fx->messageTexts(), messages);
        if (!messages.isEmpty()) {
            QCOMPARE(fx->messages().first().parent.data(), static_cast<QWidget *>(dlg.get()));
            QVERIFY(onFirstPage());
            QVERIFY(!dlg->nextPage());
            return;
        }
        QVERIFY(dlg->nextButton()->isHidden() && !dlg->previousButton()->isHidden() && !dlg->okButton()->isHidden());
        TNextstep *second = dlg->nextPage();
        QCOMPARE(dlg->pages()->currentPage(), static_cast<QWidget *>(second));
        QCOMPARE((QStringList{second->getcomPjzChecked(), second->comPjz()->itemText(0), second->comPjz()->itemText(1)}),
                 (QStringList{"1", "3", "5"}));
        (mostSimilar ? second->radQd() : second->radXs())->setChecked(true);
        second->comPjz()->setCurrentIndex(comboIndex);
        dlg->previousButton()->click();
        QVERIFY(onFirstPage());
        toSecondStep();
        QCOMPARE(dlg->nextPage(), second);
        QCOMPARE(dlg->pages()->count(), 2);
        LtdInfo *server = dlg->initialPage()->getCurrServer();
        bool visibleAtSignal = true;
        QList<QPair<LtdInfo *, int>> got;
        connect(dlg.get(), &TQdtjyjc::signalQdButtonClicked, this, [&](LtdInfo *s, int n) {
            visibleAtSignal = dlg->isVisible();
            got << qMakePair(s, n);
        });
        QTest::keyClick(dlg.get(), Qt::Key_Return);
        QCOMPARE(got, (QList<QPair<LtdInfo *, int>>{qMakePair(server, matchNum)}));
        QVERIFY(!visibleAtSignal);
    }

    // The input rules alone, no window: time as shown, the check's time, the
    // place label, the place handed on.
    void inputs_data()
    {
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QStringList>("expected");
        const QString month = QDate::currentDate().toString(QStringLiteral("yyyy年MM月"));
        const QString may = QStringLiteral("2023年05月");
        QTest::newRow("nothing: this month, 无") << "" << "" << QStringList{month, month, "无", ""};
        QTest::newRow("11 characters stay on one line")
            << may << "新疆维吾尔自治区石河子" << QStringList{may, may, "新疆维吾尔自治区石河子", "新疆维吾尔自治区石河子"};
        QTest::newRow("12 characters break after the 11th")
            << may << "新疆维吾尔自治区石河子市" << QStringList{may, may, "新疆维吾尔自治区石河子\n市", "新疆维吾尔自治区石河子市"};
        QTest::newRow("a label's text reads back")
            << may << "新疆维吾尔自治区石河子\n市" << QStringList{may, may, "新疆维吾尔自治区石河子\n市", "新疆维吾尔自治区石河子市"};
        QTest::newRow("无 is none") << may << "无" << QStringList{may, may, "无", ""};
        QTest::newRow("a time with a dash gives its second piece")
            << "2020-2023年05月" << "四川省" << QStringList{"2020-2023年05月", may, "四川省", "四川省"};
    }
    void inputs()
    {
        QFETCH(QString, time);
        QFETCH(QString, place);
        PriceCheckInputs in;
        in.setTime(PriceCheckInputs::timeOrThisMonth(time));
        in.setPlace(place);
        QTEST((QStringList{in.time(), in.checkTime(), in.placeLabel(), in.place()}), "expected");
        QCOMPARE(in.placeText(), QString(in.placeLabel()).remove(QLatin1Char('\n')));
        for (const auto &count : {qMakePair(1, 0), qMakePair(3, 1), qMakePair(5, 2), qMakePair(4, 0)}) {
            in.setMatchNum(count.first);
            QCOMPARE(in.matchIndex(), count.second);
        }
    }

    // The influence factors: the labels follow the dialog at once; a synced
    // choice goes back to the project as one undo step.
    void modify_data()
    {
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("place"); // "" clears it
        QTest::addColumn<bool>("sync");
        QTest::addColumn<bool>("afterStepTwo");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QStringList>("settings"); // time, place, place code afterwards
        const QStringList before{"2023年05月", "新疆维吾尔自治区石河子市", "659001"};
        QTest::newRow("synced") << "2024年01月" << "四川省成都市金牛区" << true << false << "四川省成都市金牛区"
                                << QStringList{"2024年01月", "四川省成都市金牛区", "510106"};
        QTest::newRow("cleared, synced") << "2023年05月" << "" << true << false << "无"
                                         << QStringList{"2023年05月", "", ""};
        QTest::newRow("long place, not synced") << "2024年01月" << "四川省成都市金牛区西华街道办事处" << false << false
                                                << "四川省成都市金牛区西华\n街道办事处" << before;
        QTest::newRow("unchanged, synced") << "2023年05月" << "新疆维吾尔自治区石河子市" << true << false
                                           << "新疆维吾尔自治区石河子\n市" << before;
        // Time and place are fixed once the second step was shown.
        QTest::newRow("synced after step two") << "2024年01月" << "四川省成都市金牛区" << true << true
                                               << "四川省成都市金牛区" << before;
    }
    void modify()
    {
        QFETCH(QString, time);
        QFETCH(QString, place);
        QFETCH(bool, sync);
        QFETCH(bool, afterStepTwo);
        QFETCH(QString, label);
        QFETCH(QStringList, settings);
        open();
        const QStringList before = this->settings();
        if (afterStepTwo) {
            toSecondStep();
            dlg->previousButton()->click();
        }
        QSignalSpy fromPage(dlg->initialPage(), &TInitial::signalYxysChanged);
        QStringList seen;
        fx->answerNextModal([&](QDialog *d) {
            auto *yxys = qobject_cast<TQdtjyjc_Yxys *>(d);
            seen << yxys->timeField()->text() << yxys->placeField()->text();
            yxys->syncBox()->setChecked(sync);
            yxys->timeField()->setText(time);
            if (place.isEmpty())
                yxys->clearButton()->click();
            else
                yxys->placeField()->setText(place);
            yxys->confirmButton()->click();
            seen << dlg->initialPage()->placeLabel()->text();
            return d->result();
        });
        dlg->initialPage()->modifyButton()->click();
        QCOMPARE(seen, (QStringList{"2023年05月", "新疆维吾尔自治区石河子市", label}));
        QCOMPARE(fromPage.count(), sync ? 1 : 0);
        if (sync)
            QCOMPARE((QStringList{fromPage.at(0).at(0).toString(), fromPage.at(0).at(1).toString()}),
                     (QStringList{time, place}));
        QCOMPARE(this->settings(), settings);
        QUndoStack *stack = RURecordControl::undoStack();
        QCOMPARE(stack->count(), settings == before ? 0 : 1);
        if (stack->count()) {
            QCOMPARE(stack->undoText(), QStringLiteral("修改工程设置"));
            stack->undo();
            QCOMPARE(this->settings(), before);
            stack->redo();
            QCOMPARE(this->settings(), settings);
        }
        QCOMPARE(dlg->initialPage()->findChildren<TQdtjyjc_Yxys *>().size(), 0);
    }

    // Logins elsewhere bring the wizard back to page one with a fresh list,
    // until it closes; closing sends no result.
    void brokerSignals_data()
    {
        QTest::addColumn<int>("closeBy"); // -1 open, 0 "关闭", 1 caption button, 2 Esc
        QTest::addColumn<int>("signal");  // kvyForceExit, priForceExit, priLogin
        QTest::newRow("kvyForceExit") << -1 << 0;
        QTest::newRow("priForceExit") << -1 << 1;
        QTest::newRow("priLogin elsewhere") << -1 << 2;
        QTest::newRow("closed by 关闭") << 0 << 0;
        QTest::newRow("closed by the caption button") << 1 << 1;
        QTest::newRow("closed by Esc") << 2 << 2;
    }
    void brokerSignals()
    {
        QFETCH(int, closeBy);
        QFETCH(int, signal);
        open();
        dlg->show();
        toSecondStep();
        QSignalSpy results(dlg.get(), &TQdtjyjc::signalQdButtonClicked);
        if (closeBy == 0)
            dlg->closeButton()->click();
        else if (closeBy == 1)
            dlg->titleBar()->findChild<QPushButton *>(QStringLiteral("btnClose"))->click();
        else if (closeBy == 2)
            QTest::keyClick(dlg.get(), Qt::Key_Escape);
        QCOMPARE(dlg->isVisible(), closeBy < 0);
        const int before = listRequests();
        fx->channel().replyOk(serverList());
        staticPriLoginObj *broker = staticPriLoginObj::GetInstance();
        if (signal == 0)
            emit broker->kvyForceExit();
        else if (signal == 1)
            emit broker->priForceExit(QStringLiteral("华东企业"));
        else
            emit broker->priLogin(QStringLiteral("华东企业"));
        QCOMPARE(listRequests(), closeBy < 0 ? before + 1 : before);
        QCOMPARE(onFirstPage(), closeBy < 0);
        QCOMPARE(results.count(), 0);
    }

    void failedReloadIsReportedUnderTheWizard()
    {
        open();
        fx->channel().failWith("down");
        emit staticPriLoginObj::GetInstance()->kvyForceExit();
        QCOMPARE(fx->exceptionReports().size(), 1);
        QVERIFY2(fx->exceptionReports().first().contains(
                     QRegularExpression(R"(down \(Qddjyjc:\d+ TInitial::requestServerList\)$)")),
                 qPrintable(fx->exceptionReports().first()));
    }
};

QTEST_MAIN(TestQdtjyjc)
#include "tst_qdtjyjc.moc"
