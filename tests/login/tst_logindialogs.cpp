#include "hostfixture.h"
#include "loginanswers.h"

#include <hostapi/serverregistry.h>
#include <hostapi/userlogin.h>
#include <hostapi/users.h>
#include <hostapi/usersyylogin.h>

#include <QtTest>

#include <memory>

using namespace loginanswers;

class TestLoginDialogs : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    int successes = 0;
    int closes = 0;

    template <typename Login>
    void track(Login &login)
    {
        login.SetKvyLoginSueecss([this] { ++successes; });
        login.SetKvyClose([this] { ++closes; });
    }

private slots:
    void init()
    {
        fx = std::make_unique<HostFixture>();
        ServerRegistry::instance()->reset();
        fx->channel().replyOk(serverList());
        QVERIFY(ServerRegistry::instance()->refresh());
        successes = closes = 0;
    }
    void cleanup()
    {
        ServerRegistry::instance()->reset();
        fx.reset();
    }

    void korvaneLoginSucceeds()
    {
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin(QStringLiteral("zhang"), QStringLiteral("pw"), seen));
        fx->channel().reply(loginReply());
        userLogin login;
        track(login);
        QCOMPARE(login.KvyExec(), int(QDialog::Accepted));
        QCOMPARE(successes, 1);
        QCOMPARE(closes, 0);
        QCOMPARE(seen->server, QStringLiteral("Korvane云"));
        QCOMPARE(seen->error, QString());
        QVERIFY(Users::Instance()->Kvy()->IsLogin());
        QCOMPARE(fx->modalRuns(), QStringList{QStringLiteral("LoginDialog")});
    }

    void refusedLoginShowsTheCloudMessageThenCloses()
    {
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin(QStringLiteral("zhang"), QStringLiteral("bad"), seen));
        fx->channel().replyError(401, QStringLiteral("用户名或密码错误 ！"));
        userLogin login;
        track(login);
        QCOMPARE(login.KvyExec(), int(QDialog::Rejected));
        QCOMPARE(seen->error, QStringLiteral("用户名或密码错误 ！"));
        QCOMPARE(successes, 0);
        QCOMPARE(closes, 1);
        QVERIFY(!Users::Instance()->Kvy()->IsLogin());
        QVERIFY(fx->messages().isEmpty());
    }

    void missingFieldsAreCheckedBeforeAnyRequest_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("error");
        QTest::newRow("no user") << "  " << "pw" << "请输入用户名";
        QTest::newRow("no password") << "zhang" << "" << "请输入密码";
    }

    void missingFieldsAreCheckedBeforeAnyRequest()
    {
        QFETCH(QString, user);
        QFETCH(QString, password);
        QFETCH(QString, error);
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin(user, password, seen));
        const int before = fx->channel().requests().size();
        userLogin login;
        track(login);
        login.KvyExec();
        QCOMPARE(seen->error, error);
        QCOMPARE(fx->channel().requests().size(), before);
        QCOMPARE(closes, 1);
    }

    void cancelRunsTheCloseCallback()
    {
        fx->answerNextModal(cancelLogin());
        userSyyLogin login(3);
        track(login);
        QCOMPARE(login.SyyExec(), int(QDialog::Rejected));
        QCOMPARE(closes, 1);
        QCOMPARE(successes, 0);
        QCOMPARE(fx->channel().requests().size(), 1); // only the list
    }

    void answererCannotFakeASuccess()
    {
        fx->answerNextModal([](QDialog *) { return int(QDialog::Accepted); });
        userLogin login;
        track(login);
        QCOMPARE(login.KvyExec(), int(QDialog::Rejected));
        QCOMPARE(successes, 0);
        QCOMPARE(closes, 1);
    }

    void enterpriseLoginUsesTheHostIndex()
    {
        auto seen = std::make_shared<FormSeen>();
        fx->answerNextModal(fillLogin(QStringLiteral("li"), QStringLiteral("pw"), seen));
        fx->channel().reply(enterpriseLoginReply(QStringLiteral("s12")));
        userSyyLogin login(4);
        track(login);
        QCOMPARE(login.SyyExec(), int(QDialog::Accepted));
        QCOMPARE(seen->server, QStringLiteral("华南企业"));
        QCOMPARE(fx->channel().lastRequest().value("data").toObject().value("qyid").toInt(), 12);
        QCOMPARE(successes, 1);
        QVERIFY(ServerRegistry::instance()->servers().at(4)->getServerLogin());
    }
};

QTEST_MAIN(TestLoginDialogs)
#include "tst_logindialogs.moc"
