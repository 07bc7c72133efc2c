#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudserverchoice.h>

#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/logindialog.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/userlogin.h>
#include <hostapi/users.h>
#include <hostapi/usersyylogin.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QComboBox>
#include <QJsonDocument>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using namespace loginanswers;

namespace {
ServerRegistry *reg()
{
    return ServerRegistry::instance();
}

// Names of the entries, "*" after those logged in.
QStringList entries(const QList<LtdInfo *> &list = reg()->servers())
{
    QStringList out;
    for (const LtdInfo *e : list)
        out << e->getServerName() + (e->getServerLogin() ? QStringLiteral("*") : QString());
    return out;
}

QStringList texts(const CloudServerCombox &combo)
{
    QStringList out;
    for (int i = 0; i < combo.comboBox()->count(); ++i)
        out << combo.comboBox()->itemText(i);
    return out;
}

QJsonObject sentData(HostFixture &fx)
{
    return fx.channel().lastRequest().value("data").toObject();
}
}

class TestServerRegistry : public HostTestCase
{
    Q_OBJECT
private:
    QTemporaryDir cloudDir; // outlives the service, which the channel holds until cleanup

    void loadList()
    {
        fx->channel().replyOk(serverList());
        QVERIFY(reg()->refresh());
    }

private slots:
    void init() { HostTestCase::init(); reg()->reset(); }
    void cleanup() { reg()->reset(); HostTestCase::cleanup(); }

    void refreshAsksTheCloudAndKeepsItsOrder()
    {
        loadList();
        QCOMPARE(sentData(*fx), (QJsonObject{{"method", "getserverlist"}}));
        // The price server is open as the cloud says; enterprises need a login.
        QCOMPARE(entries(), (QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业", "华南企业", "华东企业材价库*"}));
        const LtdInfo *ent = reg()->servers().at(3);
        const QString fields = QStringLiteral("%1 %2 %3 ").arg(ent->getToken()).arg(ent->getType()).arg(ent->getQyid());
        QCOMPARE(fields + ent->kind(), QStringLiteral("ent_11 1 11 pri"));
        // A shorter list keeps the pointers of the entries that stay.
        QJsonArray shorter = serverList();
        shorter.removeAt(4);
        fx->channel().replyOk(shorter);
        QVERIFY(reg()->refresh());
        QCOMPARE(reg()->servers().at(3), ent);
        QVERIFY(!entries().contains(QStringLiteral("华南企业")));
    }

    void serverListRequests_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("expected"); // empty: the request fails
        const QByteArray list = QJsonDocument(QJsonObject{{"code", 0}, {"msg", ""}, {"data", serverList()}}).toJson();
        QTest::newRow("bill servers") << "" << list << QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业", "华南企业"};
        QTest::newRow("material servers") << "cj" << list << QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业材价库*"};
        QJsonArray remembered = serverList();
        remembered.replace(4, entry("华南企业", "ent-session-12", 2, 12, "pri", true));
        QTest::newRow("a login the cloud remembers")
            << "" << QJsonDocument(QJsonObject{{"code", 0}, {"data", remembered}}).toJson()
            << QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业", "华南企业*"};
        QTest::newRow("no reply") << "" << QByteArray() << QStringList();
        QTest::newRow("garbage") << "" << QByteArray("oops") << QStringList();
        QTest::newRow("refused") << "" << QByteArray(R"({"code":1,"msg":"会话已过期"})") << QStringList();
    }
    void serverListRequests()
    {
        QFETCH(QString, filter);
        QFETCH(QByteArray, reply);
        QFETCH(QStringList, expected);
        loadList();
        fx->channel().replyBytes(reply);
        QList<LtdInfo *> list{nullptr};
        QCOMPARE(CloudBusiness::requestServerList(list, filter), !expected.isEmpty());
        QCOMPARE(sentData(*fx), (QJsonObject{{"method", "getserverlist"}}));
        QCOMPARE(entries(list), expected);
        QCOMPARE(reg()->servers().size(), 6); // a failure keeps the last good list
        QCOMPARE(CloudBusiness::hasPriServer(list), filter.isEmpty() && !expected.isEmpty());
        // Enterprise entries keep their host index in the bill list.
        for (int i = 0; i < list.size(); ++i)
            if (list.at(i)->kind() == QLatin1String("pri"))
                QCOMPARE(reg()->servers().indexOf(list.at(i)), i);
    }

    void korvaneLogin()
    {
        loadList();
        QSignalSpy kvLogin(staticPriLoginObj::GetInstance(), &staticPriLoginObj::kvyLogin);
        fx->channel().replyError(401, QStringLiteral("用户名或密码错误"));
        QCOMPARE(reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("bad")), QStringLiteral("用户名或密码错误"));
        QVERIFY(!reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("pw")).isEmpty()); // no reply
        QCOMPARE(kvLogin.size(), 0);
        fx->channel().reply(loginReply());
        QCOMPARE(reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("pw")), QString());
        QCOMPARE(sentData(*fx), (QJsonObject{{"method", "login"}, {"username", "zhang"}, {"password", "pw"}}));
        QCOMPARE(Users::Instance()->Kvy()->UserID(), QStringLiteral("u1"));
        QCOMPARE(kvLogin.size(), 1);
        QCOMPARE(entries(), (QStringList{"个人云*", "Korvane云*", "Korvane大数据*", "华东企业", "华南企业", "华东企业材价库*"}));
        // The session now travels beside every request.
        loadList();
        QCOMPARE(fx->channel().sessions().last(), QStringLiteral("sess-1"));
        // The form offers the name typed, not the display name, also after a logout.
        reg()->logoutKorvane(true);
        QCOMPARE(LoginDialog("登录", "Korvane云", nullptr).findChild<QLineEdit *>("editUser")->text(), QStringLiteral("zhang"));
    }

    void enterpriseLoginSetsTheEntryToken()
    {
        loadList();
        QVERIFY(!reg()->loginEnterprise(9, QStringLiteral("li"), QStringLiteral("pw")).isEmpty());
        QCOMPARE(fx->channel().requests().size(), 1);
        QSignalSpy priLogin(staticPriLoginObj::GetInstance(), &staticPriLoginObj::priLogin);
        fx->channel().reply(enterpriseLoginReply(QStringLiteral("ent-session-11")));
        QCOMPARE(reg()->loginEnterprise(3, QStringLiteral("li"), QStringLiteral("pw")), QString());
        QCOMPARE(fx->channel().lastRequest().value("orgin_token").toString(), QStringLiteral("ent_11"));
        QCOMPARE(sentData(*fx),
                 (QJsonObject{{"method", "enterpriselogin"}, {"qyid", 11}, {"username", "li"}, {"password", "pw"}}));
        QCOMPARE(priLogin.value(0).value(0).toString(), QStringLiteral("华东企业"));
        // A later list from the cloud does not lose the login.
        loadList();
        QCOMPARE(entries().mid(3, 2), (QStringList{"华东企业*", "华南企业"}));
        QCOMPARE(reg()->servers().at(3)->getToken(), QStringLiteral("ent-session-11"));
    }

    void logoutsAnnounceOnTheBroker()
    {
        loadList();
        fx->channel().reply(loginReply());
        reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("pw"));
        fx->channel().reply(enterpriseLoginReply(QStringLiteral("s11")));
        reg()->loginEnterprise(3, QStringLiteral("li"), QStringLiteral("pw"));
        staticPriLoginObj *broker = staticPriLoginObj::GetInstance();
        QSignalSpy priForce(broker, &staticPriLoginObj::priForceExit);
        QSignalSpy priExit(broker, &staticPriLoginObj::priExit);
        QSignalSpy kvForce(broker, &staticPriLoginObj::kvyForceExit);
        QSignalSpy kvExit(broker, &staticPriLoginObj::kvyExit);
        reg()->logoutEnterprise(QStringLiteral("华东企业"), true);
        QCOMPARE(priForce.value(0).value(0).toString(), QStringLiteral("华东企业"));
        reg()->logoutEnterprise(QStringLiteral("华东企业"), false); // not logged in: nothing
        QCOMPARE(priExit.size(), 0);
        fx->channel().replyOk();
        reg()->logoutKorvane(false);
        QCOMPARE(sentData(*fx), (QJsonObject{{"method", "logout"}}));
        QCOMPARE(kvExit.size(), 1);
        QCOMPARE(kvForce.size(), 0);
        QVERIFY(!Users::Instance()->Kvy()->IsLogin());
        QCOMPARE(entries().join(QString()).count(QLatin1Char('*')), 0);
    }

    void loginForms_data()
    {
        QTest::addColumn<int>("server"); // -1: the Korvane form, else the host index of an enterprise
        QTest::addColumn<QString>("user"); // typed into the form; "cancel" and "fake" answer otherwise
        QTest::addColumn<QString>("password");
        QTest::addColumn<QJsonObject>("reply");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("shown"); // server name, then the form's error line
        const QJsonObject none;
        const QJsonObject refused{{"code", 401}, {"msg", "用户名或密码错误 ！"}};
        QTest::newRow("korvane") << -1 << "zhang" << "pw" << loginReply() << 1 << "Korvane云|";
        QTest::newRow("refused: the cloud's message") << -1 << "zhang" << "pw" << refused << 0
                                                      << "Korvane云|用户名或密码错误 ！";
        QTest::newRow("no user") << -1 << "  " << "pw" << none << 0 << "Korvane云|请输入用户名";
        QTest::newRow("no password") << -1 << "zhang" << "" << none << 0 << "Korvane云|请输入密码";
        QTest::newRow("enterprise by host index") << 4 << "zhang" << "pw" << enterpriseLoginReply("s12") << 1
                                                  << "华南企业|";
        QTest::newRow("cancelled") << 3 << "cancel" << "" << none << 0 << "|";
        QTest::newRow("an answerer cannot fake a success") << -1 << "fake" << "" << none << 0 << "|";
    }
    void loginForms()
    {
        QFETCH(int, server);
        QFETCH(QString, user);
        QFETCH(QString, password);
        QFETCH(QJsonObject, reply);
        QFETCH(int, result);
        loadList();
        auto seen = std::make_shared<FormSeen>();
        if (user == QLatin1String("cancel"))
            fx->answerNextModal(cancelLogin());
        else if (user == QLatin1String("fake"))
            fx->answerNextModal([](QDialog *) { return int(QDialog::Accepted); });
        else
            fx->answerNextModal(fillLogin(user, password, seen));
        if (!reply.isEmpty())
            fx->channel().reply(reply);
        QString callbacks;
        userLogin korvane;
        userSyyLogin enterprise(server);
        LoginFormRun &login = server < 0 ? static_cast<LoginFormRun &>(korvane) : enterprise;
        login.SetKvyLoginSueecss([&] { callbacks += "success"; });
        login.SetKvyClose([&] { callbacks += "close"; });
        QCOMPARE(server < 0 ? korvane.KvyExec() : enterprise.SyyExec(), result);
        QCOMPARE(callbacks, QString(result ? "success" : "close"));
        QTEST(QString(seen->server + QLatin1Char('|') + seen->error), "shown");
        QCOMPARE(fx->channel().requests().size(), reply.isEmpty() ? 1 : 2); // the list, then the login
        LtdInfo *picked = server < 0 ? nullptr : reg()->servers().at(server);
        const bool in = picked ? picked->getServerLogin() : Users::Instance()->Kvy()->IsLogin();
        QCOMPARE(in, bool(result));
        QCOMPARE(fx->modalRuns(), QStringList{QStringLiteral("LoginDialog")});
        QVERIFY(fx->messages().isEmpty());
    }

    // The login path against the real embedded cloud service: the server
    // list, the Korvane login and an enterprise login, through answered forms.
    void loginKorvaneThenEnterprise()
    {
        auto service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Minimal);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        QWidget dialog;
        auto *combo = new CloudServerCombox(&dialog);
        auto *choice = new CloudServerChoice(combo, GuardSite("Xmytz", &dialog));
        choice->start();
        fx->answerNextModal(fillLogin(ServiceSeed::DemoUser, ServiceSeed::DemoPassword));
        emit combo->signalCurrentItemChanged(1);
        QVERIFY(choice->getCurrServer()->getServerLogin());
        // The account's enterprises appear after the Korvane login; the big
        // data entry stays out of the list.
        QCOMPARE(texts(*combo), (QStringList{"个人云", "Korvane云", "华东建设集团有限公司", "蜀川造价咨询有限公司"}));
        QCOMPARE(choice->removedBigDataIndex(), 2);
        // The form for entry 2 must name the same enterprise: the host index
        // skips the removed big data entry.
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin(ServiceSeed::DemoUser, ServiceSeed::DemoPassword, seen));
        emit combo->signalCurrentItemChanged(2);
        QCOMPARE(seen->server + seen->error, QStringLiteral("华东建设集团有限公司"));
        LtdInfo *east = choice->getCurrServer();
        QCOMPARE(east->getQyid(), ServiceSeed::EastEnterprise);
        QVERIFY(east->getServerLogin());
        QVERIFY(east->getToken() != QStringLiteral("ent_%1").arg(ServiceSeed::EastEnterprise));
        const QString token = east->getToken();
        // The cloud knows the session: a fresh list keeps the entry logged in.
        QList<LtdInfo *> again;
        QVERIFY(CloudBusiness::requestServerList(again, QString()));
        QVERIFY(again.contains(east) && east->getServerLogin() && !again.at(4)->getServerLogin());
        QCOMPARE(east->getToken(), token);
    }
};

QTEST_MAIN(TestServerRegistry)
#include "tst_serverregistry.moc"
