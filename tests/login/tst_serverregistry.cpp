#include "hostfixture.h"
#include "loginanswers.h"

#include <hostapi/cloudbusiness.h>
#include <hostapi/serverregistry.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/users.h>

#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace loginanswers;

class TestServerRegistry : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    ServerRegistry *reg() { return ServerRegistry::instance(); }

    static QStringList names(const QList<LtdInfo *> &list)
    {
        QStringList out;
        for (const LtdInfo *e : list)
            out << e->getServerName();
        return out;
    }
    static QList<bool> logins(const QList<LtdInfo *> &list)
    {
        QList<bool> out;
        for (const LtdInfo *e : list)
            out << e->getServerLogin();
        return out;
    }
    void loadList()
    {
        fx->channel().replyOk(serverList());
        QVERIFY(reg()->refresh());
    }

private slots:
    void init()
    {
        fx = std::make_unique<HostFixture>();
        ServerRegistry::instance()->reset();
    }
    void cleanup()
    {
        ServerRegistry::instance()->reset();
        fx.reset();
    }

    void refreshAsksTheCloudAndKeepsItsOrder()
    {
        loadList();
        const QJsonObject sent = fx->channel().lastRequest();
        QCOMPARE(sent.value("cmd").toString(), QStringLiteral("cloudSoft"));
        QVERIFY(sent.contains("app_type"));
        QCOMPARE(sent.value("data").toObject(), (QJsonObject{{"method", "getserverlist"}}));
        QCOMPARE(names(reg()->servers()),
                 (QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业", "华南企业", "华东企业材价库"}));
        const LtdInfo *ent = reg()->servers().at(3);
        QCOMPARE(ent->getToken(), QStringLiteral("ent_11"));
        QCOMPARE(ent->getType(), 1);
        QCOMPARE(ent->getQyid(), 11);
        QCOMPARE(ent->kind(), QStringLiteral("pri"));
        // The price server is open as the cloud says; enterprises need a login.
        QCOMPARE(logins(reg()->servers()), (QList<bool>{false, false, false, false, false, true}));
    }

    void refreshKeepsPointersAndDropsVanishedEntries()
    {
        loadList();
        LtdInfo *ent = reg()->servers().at(3);
        QJsonArray shorter = serverList();
        shorter.removeAt(4);
        fx->channel().replyOk(shorter);
        QVERIFY(reg()->refresh());
        QCOMPARE(reg()->servers().at(3), ent);
        QVERIFY(!names(reg()->servers()).contains(QStringLiteral("华南企业")));
    }

    void failedRefresh_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("no reply") << QByteArray();
        QTest::newRow("garbage") << QByteArray("oops");
        QTest::newRow("refused") << QByteArray(R"({"code":1,"msg":"会话已过期"})");
    }

    void failedRefresh()
    {
        QFETCH(QByteArray, bytes);
        loadList();
        fx->channel().replyBytes(bytes);
        QList<LtdInfo *> list{nullptr};
        QVERIFY(!CloudBusiness::requestServerList(list, QString()));
        QVERIFY(list.isEmpty());
        QCOMPARE(reg()->servers().size(), 6); // the last good list stays
    }

    void requestServerListFilters_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("bill servers") << QString()
                                      << QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业", "华南企业"};
        QTest::newRow("material servers") << QStringLiteral("cj")
                                          << QStringList{"个人云", "Korvane云", "Korvane大数据", "华东企业材价库"};
    }

    void requestServerListFilters()
    {
        QFETCH(QString, filter);
        QFETCH(QStringList, expected);
        fx->channel().replyOk(serverList());
        QList<LtdInfo *> list;
        QVERIFY(CloudBusiness::requestServerList(list, filter));
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(), (QJsonObject{{"method", "getserverlist"}}));
        QCOMPARE(names(list), expected);
        QCOMPARE(CloudBusiness::hasPriServer(list), filter.isEmpty());
        // Enterprise entries keep their host index in the bill list.
        for (int i = 0; i < list.size(); ++i)
            if (list.at(i)->kind() == QLatin1String("pri"))
                QCOMPARE(reg()->servers().indexOf(list.at(i)), i);
    }

    void enterpriseLoginTheCloudRemembers()
    {
        QJsonArray list = serverList();
        list.replace(4, entry("华南企业", "ent-session-12", 2, 12, "pri", true));
        fx->channel().replyOk(list);
        QVERIFY(reg()->refresh());
        QVERIFY(reg()->servers().at(4)->getServerLogin());
        QCOMPARE(reg()->servers().at(4)->getToken(), QStringLiteral("ent-session-12"));
        QVERIFY(!reg()->servers().at(3)->getServerLogin());
    }

    void korvaneLoginLogsInTheKorvaneEntries()
    {
        loadList();
        QSignalSpy kvLogin(staticPriLoginObj::GetInstance(), &staticPriLoginObj::kvyLogin);
        fx->channel().reply(loginReply());
        QCOMPARE(reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("pw")), QString());
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(),
                 (QJsonObject{{"method", "login"}, {"username", "zhang"}, {"password", "pw"}}));
        QVERIFY(Users::Instance()->Kvy()->IsLogin());
        QCOMPARE(Users::Instance()->Kvy()->UserID(), QStringLiteral("u1"));
        QCOMPARE(kvLogin.size(), 1);
        QCOMPARE(logins(reg()->servers()), (QList<bool>{true, true, true, false, false, true}));
        // The session now travels beside every request.
        loadList();
        QCOMPARE(fx->channel().sessions().last(), QStringLiteral("sess-1"));
    }

    void korvaneLoginRefused()
    {
        loadList();
        QSignalSpy kvLogin(staticPriLoginObj::GetInstance(), &staticPriLoginObj::kvyLogin);
        fx->channel().replyError(401, QStringLiteral("用户名或密码错误"));
        QCOMPARE(reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("bad")),
                 QStringLiteral("用户名或密码错误"));
        QVERIFY(!Users::Instance()->Kvy()->IsLogin());
        QCOMPARE(kvLogin.size(), 0);
        QVERIFY(!reg()->loginKorvane(QStringLiteral("zhang"), QStringLiteral("pw")).isEmpty()); // no reply
    }

    void enterpriseLoginSetsTheEntryToken()
    {
        loadList();
        QSignalSpy priLogin(staticPriLoginObj::GetInstance(), &staticPriLoginObj::priLogin);
        fx->channel().reply(enterpriseLoginReply(QStringLiteral("ent-session-11")));
        QCOMPARE(reg()->loginEnterprise(3, QStringLiteral("li"), QStringLiteral("pw")), QString());
        const QJsonObject sent = fx->channel().lastRequest();
        QCOMPARE(sent.value("orgin_token").toString(), QStringLiteral("ent_11"));
        QCOMPARE(sent.value("data").toObject(),
                 (QJsonObject{{"method", "enterpriselogin"}, {"qyid", 11}, {"username", "li"}, {"password", "pw"}}));
        LtdInfo *ent = reg()->servers().at(3);
        QVERIFY(ent->getServerLogin());
        QCOMPARE(ent->getToken(), QStringLiteral("ent-session-11"));
        QCOMPARE(priLogin.size(), 1);
        QCOMPARE(priLogin.first().first().toString(), QStringLiteral("华东企业"));
        // A later list from the cloud does not lose the login.
        loadList();
        QVERIFY(ent->getServerLogin());
        QCOMPARE(ent->getToken(), QStringLiteral("ent-session-11"));
        QVERIFY(!reg()->servers().at(4)->getServerLogin());
    }

    void enterpriseLoginBadIndex()
    {
        loadList();
        QVERIFY(!reg()->loginEnterprise(9, QStringLiteral("li"), QStringLiteral("pw")).isEmpty());
        QCOMPARE(fx->channel().requests().size(), 1);
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
        QCOMPARE(priForce.size(), 1);
        QCOMPARE(priForce.first().first().toString(), QStringLiteral("华东企业"));
        QVERIFY(!reg()->servers().at(3)->getServerLogin());
        reg()->logoutEnterprise(QStringLiteral("华东企业"), false); // not logged in: nothing
        QCOMPARE(priExit.size(), 0);

        fx->channel().replyOk();
        reg()->logoutKorvane(false);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject(), (QJsonObject{{"method", "logout"}}));
        QCOMPARE(kvExit.size(), 1);
        QCOMPARE(kvForce.size(), 0);
        QVERIFY(!Users::Instance()->Kvy()->IsLogin());
        QCOMPARE(logins(reg()->servers()), (QList<bool>{false, false, false, false, false, false}));
    }
};

QTEST_MAIN(TestServerRegistry)
#include "tst_serverregistry.moc"
