#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudserverchoice.h>

#include <hostapi/cloudservercombox.h>
#include <hostapi/communication.h>
#include <hostapi/hostconfig.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/serverregistry.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/users.h>

#include <QComboBox>
#include <QLabel>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QWidget>
#include <QtTest>

#include <stdexcept>

using namespace loginanswers;

class TestCloudServerChoice : public HostTestCase
{
    Q_OBJECT
private:
    std::unique_ptr<QWidget> dialog;
    CloudServerCombox *combo = nullptr;
    CloudServerChoice *choice = nullptr;

    static void loginKorvaneDirectly() { Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1"); }
    static void saveSetting(const QString &name)
    {
        auto s = HostConfig::openSysSet();
        s->setValue("CloudApp/CurrServer_all", name);
        s->sync();
    }
    static QString savedSetting() { return HostConfig::openSysSet()->value("CloudApp/CurrServer_all").toString(); }
    QStringList comboTexts() const
    {
        QStringList out;
        for (int i = 0; i < combo->comboBox()->count(); ++i)
            out << combo->comboBox()->itemText(i);
        return out;
    }
    // start() with the cloud answering `list` (once per list request).
    void startWith(const QJsonArray &list = serverList())
    {
        fx->channel().replyOk(list);
        choice->start();
    }

private slots:
    void init()
    {
        HostTestCase::init();
        ServerRegistry::instance()->reset();
        dialog = std::make_unique<QWidget>();
        combo = new CloudServerCombox(dialog.get());
        choice = new CloudServerChoice(combo, GuardSite("Xmytz", dialog.get()));
    }
    void cleanup()
    {
        dialog.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void startRemovesBigDataUnlessKept_data()
    {
        QTest::addColumn<QString>("saveBzQd");
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<int>("removedAt");
        QTest::addColumn<int>("current");
        const QStringList without{"个人云", "Korvane云", "华东企业", "华南企业"};
        QTest::newRow("unset") << QString() << "" << without << 2 << -1;
        QTest::newRow("false") << "false" << "" << without << 2 << -1;
        QTest::newRow("TRUE is not true") << "TRUE" << "" << without << 2 << -1;
        QTest::newRow("true") << "true" << "" << QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业", "华南企业"}
                              << -1 << -1;
        // The material price servers ignore "SaveBzQd"; the open one is logged in.
        QTest::newRow("material servers") << "true" << "cj" << QStringList{"个人云", "Korvane云", "华东企业材价库"} << 2
                                          << 2;
    }
    void startRemovesBigDataUnlessKept()
    {
        QFETCH(QString, saveBzQd);
        QFETCH(QString, kind);
        QFETCH(QStringList, shown);
        QFETCH(int, removedAt);
        QFETCH(int, current);
        HostConfig::setValue("SaveBzQd", saveBzQd);
        choice->setServerKind(kind);
        choice->setHonourSaveBzQd(kind.isEmpty());
        QSignalSpy reload(choice, &CloudServerChoice::signalReloadData);
        startWith();
        QCOMPARE(comboTexts(), shown);
        QCOMPARE(choice->removedBigDataIndex(), removedAt);
        QCOMPARE(choice->currentIndex(), current);
        if (current < 0) { // nothing chosen: the combo shows its placeholder
            QCOMPARE(choice->getCurrServer(), nullptr);
            QCOMPARE(combo->currentText(), QStringLiteral("请选择服务器"));
        }
        QCOMPARE(reload.size(), 1);
        QCOMPARE(fx->channel().requests().size(), 1); // the config query stays local
    }

    void readSetting_data()
    {
        QTest::addColumn<QString>("saved");
        QTest::addColumn<int>("index");
        QTest::newRow("saved and logged in") << "Korvane云" << 2;
        QTest::newRow("saved but logged out") << "华东企业" << 0;
        QTest::newRow("unknown name") << "旧服务器" << 0;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("placeholder means none") << "请选择服务器" << 0;
    }
    void readSetting()
    {
        QFETCH(QString, saved);
        QFETCH(int, index);
        loginKorvaneDirectly();
        saveSetting(saved);
        // An entry literally named like the placeholder shows that the saved
        // placeholder is never looked up.
        QJsonArray list = serverList();
        list.insert(1, entry("请选择服务器", "kv_token", 0, 0, "kv"));
        startWith(list);
        QCOMPARE(choice->currentIndex(), index);
        QCOMPARE(combo->currentIndex(), choice->currentIndex());
    }

    void throwingLoginLeavesNoOwnLogin()
    {
        startWith();
        fx->answerNextModal([](QDialog *) -> int { throw std::runtime_error("form died"); });
        emit combo->signalCurrentItemChanged(1);
        QVERIFY(!choice->getOwnerLogin());
        QCOMPARE(fx->exceptionReports().size(), 1);
        QVERIFY2(fx->exceptionReports().first().contains(
                     QRegularExpression(R"(form died \(Xmytz:\d+ QWidget::slotSaveCurrServer\)$)")),
                 qPrintable(fx->exceptionReports().first()));
    }

    // A pick is saved at once; an entry not logged in opens the host's login
    // form (enterprise servers by their index in the host's full list, which
    // counts "Korvane大数据" while the Korvane cloud is logged in); cancelling
    // goes back to the previous entry if it is logged in, else to none.
    void pick_data()
    {
        QTest::addColumn<QString>("saveBzQd");
        QTest::addColumn<bool>("korvane");
        QTest::addColumn<int>("pick");
        QTest::addColumn<QString>("formServer"); // empty: no form
        QTest::addColumn<int>("current");
        QTest::newRow("removed, korvane in: shifted") << "" << true << 2 << "华东企业" << 1;
        QTest::newRow("removed, second enterprise") << "" << true << 3 << "华南企业" << 1;
        QTest::newRow("kept: no shift") << "true" << true << 3 << "华东企业" << 1;
        QTest::newRow("removed, korvane out: no shift") << "" << false << 2 << "Korvane大数据" << -1;
        QTest::newRow("logged in: no form") << "" << true << 0 << "" << 0;
    }
    void pick()
    {
        QFETCH(QString, saveBzQd);
        QFETCH(bool, korvane);
        QFETCH(int, pick);
        QFETCH(QString, formServer);
        QFETCH(int, current);
        HostConfig::setValue("SaveBzQd", saveBzQd);
        if (korvane)
            loginKorvaneDirectly();
        saveSetting("Korvane云");
        startWith();
        QCOMPARE(choice->currentIndex(), korvane ? 1 : -1);
        QSignalSpy reload(choice, &CloudServerChoice::signalReloadData);
        QStringList seen;
        fx->answerNextModal([&](QDialog *d) {
            seen << d->findChild<QLabel *>("lblServer")->text() << savedSetting()
                 << (choice->getOwnerLogin() ? "own login" : "");
            return cancelLogin()(d);
        });
        emit combo->signalCurrentItemChanged(pick);
        const QString picked = comboTexts().value(pick);
        QCOMPARE(seen, (formServer.isEmpty() ? QStringList() : QStringList{formServer, picked, "own login"}));
        QVERIFY(!choice->getOwnerLogin());
        QCOMPARE(choice->currentIndex(), current);
        QCOMPARE(savedSetting(), picked); // the file keeps the pick
        QCOMPARE(reload.size(), 1);
    }

    void loginThroughTheForm_data()
    {
        QTest::addColumn<int>("pick");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QJsonObject>("sent"); // part of the login request's "data"
        QTest::addColumn<int>("current");
        QTest::newRow("Korvane cloud") << 0 << true << QJsonObject{{"method", "login"}} << 0;
        QTest::newRow("Korvane cloud, refused") << 0 << false << QJsonObject{{"method", "login"}} << -1;
        QTest::newRow("enterprise") << 2 << true << QJsonObject{{"method", "enterpriselogin"}, {"qyid", 11}} << 2;
    }
    void loginThroughTheForm()
    {
        QFETCH(int, pick);
        QFETCH(bool, accepted);
        QFETCH(QJsonObject, sent);
        QFETCH(int, current);
        const bool enterprise = pick == 2;
        if (enterprise)
            loginKorvaneDirectly();
        startWith();
        QSignalSpy reset(choice, &CloudServerChoice::signalServersReset);
        QSignalSpy messages(Communication::GetInstance(), &Communication::messageSent);
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin("zhang", "pw", seen));
        if (accepted) {
            fx->channel().reply(enterprise ? enterpriseLoginReply("s11") : loginReply());
            fx->channel().replyOk(serverList()); // the success callback lists again
        } else {
            fx->channel().replyError(401, "密码错误");
        }
        emit combo->signalCurrentItemChanged(pick); // 个人云 rides on the Korvane login
        const QJsonObject data = fx->channel().requests().at(1).value("data").toObject();
        for (auto it = sent.constBegin(); it != sent.constEnd(); ++it)
            QCOMPARE(data.value(it.key()), it.value());
        QCOMPARE(seen->error, accepted ? QString() : QStringLiteral("密码错误"));
        QCOMPARE(choice->currentIndex(), current);
        QCOMPARE(combo->currentIndex(), current);
        QCOMPARE(savedSetting(), serverList().at(enterprise ? 3 : 0).toObject().value("name").toString());
        if (enterprise)
            QCOMPARE(choice->getCurrServer()->getToken(), QStringLiteral("s11"));
        // The broker's priLogin of our own login is left to the callback.
        QCOMPARE(reset.size(), 0);
        // The host hears of a Korvane login: (4, 63, no value).
        QCOMPARE(messages.size(), accepted && !enterprise ? 1 : 0);
        if (!messages.isEmpty()) {
            QCOMPARE((QList<int>{messages.first().at(0).toInt(), messages.first().at(1).toInt()}), (QList<int>{4, 63}));
            QVERIFY(!messages.first().at(2).value<QVariant>().isValid());
        }
    }

    void loginSuccessPriNeverAdoptsIndexZero()
    {
        QJsonArray list{entry("华东企业", "ent_11", 1, 11, "pri"), entry("华南企业", "ent_12", 2, 12, "pri"),
                        entry("华北企业", "ent_13", 2, 13, "pri")};
        startWith(list);
        dialog->close(); // logins below are made here, not elsewhere
        fx->channel().reply(enterpriseLoginReply("s11"));
        QVERIFY(ServerRegistry::instance()->loginEnterprise(0, "li", "pw").isEmpty());
        fx->channel().replyOk(list);
        choice->loginSuccessPri();
        QCOMPARE(choice->currentIndex(), -1);
        QCOMPARE(combo->currentIndex(), -1);

        fx->channel().reply(enterpriseLoginReply("s12"));
        QVERIFY(ServerRegistry::instance()->loginEnterprise(1, "li", "pw").isEmpty());
        fx->channel().reply(enterpriseLoginReply("s13"));
        QVERIFY(ServerRegistry::instance()->loginEnterprise(2, "li", "pw").isEmpty());
        fx->channel().replyOk(list);
        choice->loginSuccessPri();
        QCOMPARE(choice->currentIndex(), 2); // the last logged-in entry wins
        QCOMPARE(combo->currentIndex(), 2);
    }

    void followsTheBrokerUntilItsWindowCloses()
    {
        QVERIFY(!choice->followsBroker());
        loginKorvaneDirectly();
        startWith();
        QVERIFY(choice->followsBroker());
        QSignalSpy reset(choice, &CloudServerChoice::signalServersReset);
        QSignalSpy cleared(choice, &CloudServerChoice::signalClearData);
        staticPriLoginObj *broker = staticPriLoginObj::GetInstance();
        Users::Instance()->Kvy()->setLogout();
        QJsonArray shorter = serverList();
        shorter.removeAt(4);
        fx->channel().replyOk(shorter);
        emit broker->kvyForceExit();
        QCOMPARE(comboTexts(), (QStringList{"个人云", "Korvane云", "华东企业"})); // rebuilt, nothing logged in
        QCOMPARE(choice->currentIndex(), -1);
        QCOMPARE(combo->currentText(), QStringLiteral("请选择服务器"));
        fx->channel().replyOk(serverList());
        emit broker->priForceExit("华东企业");
        fx->channel().replyOk(serverList());
        emit broker->priLogin("华南企业");
        emit broker->kvyLogin(); // signals this module does not follow
        emit broker->priExit("华南企业");
        QCOMPARE(reset.size(), 3);
        QCOMPARE(cleared.size(), 3);

        dialog->show();
        dialog->close();
        QVERIFY(!choice->followsBroker());
        emit broker->priForceExit("华东企业");
        emit broker->kvyForceExit();
        QCOMPARE(reset.size(), 3);
        QCOMPARE(fx->channel().requests().size(), 4);
    }
};

QTEST_MAIN(TestCloudServerChoice)
#include "tst_cloudserverchoice.moc"
