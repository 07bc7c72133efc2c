#include "cloudjson.h"
#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudserverchoice.h>
#include <cloud/cloudsourcerules.h>
#include <cloud/cloudsources.h>

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/apptype.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/communication.h>
#include <hostapi/hostconfig.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/serverregistry.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/users.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QWidget>
#include <QtTest>

#include <stdexcept>

using namespace loginanswers;
using Storage = CloudSourcesOptions::CheckStorage;
Q_DECLARE_METATYPE(CloudSourcesOptions)

namespace {
CloudSourcesOptions options(Storage storage, int initialMode = 0, bool hideLink = false)
{
    CloudSourcesOptions o;
    o.checkStorage = storage;
    o.initialMode = initialMode;
    o.hideLinkWithoutSource = hideLink;
    return o;
}

QMap<QString, QVariant> project(const QString &tid, const QString &name)
{
    return {{"tid", tid}, {"xmmc", name}, {"dq", "四川省成都市"}};
}

GlobalSettingsInfo stored() { return ProjectSettingHelper::GetGlobalSettingsInfo(); }

// The filter hands `projects` back as if the user had chosen them; `offered`
// gets the ids it started with and the subject code it was given.
std::function<int(QDialog *)> choose(const QList<QMap<QString, QVariant>> &projects, QStringList *offered)
{
    return [projects, offered](QDialog *d) {
        auto *filter = qobject_cast<CloudProCheck *>(d);
        *offered = AccumulatedProjectQuery::choiceIds(filter->checkedChoices()) << filter->sjkm();
        emit filter->signalCheckGcMaps(projects);
        return int(QDialog::Accepted);
    };
}
}

// The server choice, and the list sources that follow it.
class TestCloudServerChoice : public HostTestCase
{
    Q_OBJECT
private:
    std::unique_ptr<QWidget> dialog;
    CloudServerCombox *combo = nullptr;
    CloudServerChoice *choice = nullptr;
    QStringList offered;

    static void loginKorvaneDirectly() { Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1"); }
    static void saveSetting(const QString &name) { HostConfig::openSysSet()->setValue("CloudApp/CurrServer_all", name); }
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
    CloudSources *makeSources(const CloudSourcesOptions &o = CloudSourcesOptions())
    {
        auto *sources = new CloudSources(o, dialog.get());
        sources->follow(choice);
        return sources;
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
        HostConfig::setValue("SaveBzQd", saveBzQd);
        choice->setServerKind(kind);
        choice->setHonourSaveBzQd(kind.isEmpty());
        QSignalSpy reload(choice, &CloudServerChoice::signalReloadData);
        startWith();
        QTEST(comboTexts(), "shown");
        QTEST(choice->removedBigDataIndex(), "removedAt");
        QTEST(choice->currentIndex(), "current");
        if (choice->currentIndex() < 0) { // nothing chosen: the combo shows its placeholder
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
        loginKorvaneDirectly();
        saveSetting(saved);
        // An entry literally named like the placeholder shows that the saved
        // placeholder is never looked up.
        QJsonArray list = serverList();
        list.insert(1, entry("请选择服务器", "kv_token", 0, 0, "kv"));
        startWith(list);
        QTEST(choice->currentIndex(), "index");
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
    // counts "Korvane大数据" while the Korvane cloud is logged in). A login
    // there chooses the entry; cancelling or a refusal goes back to the
    // previous entry if it is logged in, else to none.
    void pick_data()
    {
        QTest::addColumn<QString>("saveBzQd");
        QTest::addColumn<bool>("korvane");
        QTest::addColumn<int>("pick");
        QTest::addColumn<QJsonObject>("reply");  // to the form's login; empty: cancelled
        QTest::addColumn<QJsonObject>("sent");   // part of the login request's "data"
        QTest::addColumn<QString>("formServer"); // empty: no form
        QTest::addColumn<int>("current");
        const QJsonObject none;
        const QJsonObject login{{"method", "login"}};
        const QJsonObject refused{{"code", 401}, {"msg", "密码错误"}};
        QTest::newRow("removed, korvane in: shifted") << "" << true << 2 << none << none << "华东企业" << 1;
        QTest::newRow("removed, second enterprise") << "" << true << 3 << none << none << "华南企业" << 1;
        QTest::newRow("kept: no shift") << "true" << true << 3 << none << none << "华东企业" << 1;
        QTest::newRow("removed, korvane out: no shift") << "" << false << 2 << none << none << "Korvane大数据" << -1;
        QTest::newRow("logged in: no form") << "" << true << 0 << none << none << "" << 0;
        // 个人云 rides on the Korvane login.
        QTest::newRow("Korvane login") << "" << false << 0 << loginReply() << login << "Korvane云" << 0;
        QTest::newRow("Korvane login refused") << "" << false << 0 << refused << login << "Korvane云" << -1;
        QTest::newRow("enterprise login") << "" << true << 2 << enterpriseLoginReply("s11")
                                          << QJsonObject{{"method", "enterpriselogin"}, {"qyid", 11}} << "华东企业" << 2;
    }
    void pick()
    {
        QFETCH(QString, saveBzQd);
        QFETCH(bool, korvane);
        QFETCH(int, pick);
        QFETCH(QJsonObject, reply);
        QFETCH(QJsonObject, sent);
        QFETCH(QString, formServer);
        HostConfig::setValue("SaveBzQd", saveBzQd);
        if (korvane)
            loginKorvaneDirectly();
        saveSetting("Korvane云");
        startWith();
        QCOMPARE(choice->currentIndex(), korvane ? 1 : -1);
        QSignalSpy reload(choice, &CloudServerChoice::signalReloadData);
        QSignalSpy reset(choice, &CloudServerChoice::signalServersReset);
        QSignalSpy messages(Communication::GetInstance(), &Communication::messageSent);
        QStringList seen;
        QString error;
        fx->answerNextModal([&](QDialog *d) {
            seen << d->findChild<QLabel *>("lblServer")->text() << savedSetting()
                 << (choice->getOwnerLogin() ? "own login" : "");
            if (reply.isEmpty())
                return cancelLogin()(d);
            auto form = std::make_shared<FormSeen>();
            const int result = fillLogin("zhang", "pw", form)(d);
            error = form->error;
            return result;
        });
        if (!reply.isEmpty())
            fx->channel().reply(reply);
        if (!reply.isEmpty() && reply.value("code") == 0)
            fx->channel().replyOk(serverList()); // the success callback lists again
        emit combo->signalCurrentItemChanged(pick);
        const QString picked = comboTexts().value(pick);
        QCOMPARE(seen, (formServer.isEmpty() ? QStringList() : QStringList{formServer, picked, "own login"}));
        const QJsonObject data = fx->channel().requests().value(1).value("data").toObject();
        for (auto it = sent.constBegin(); it != sent.constEnd(); ++it)
            QCOMPARE(data.value(it.key()), it.value());
        QCOMPARE(error, reply.value("msg").toString());
        QVERIFY(!choice->getOwnerLogin());
        QTEST(choice->currentIndex(), "current");
        QCOMPARE(savedSetting(), picked); // the file keeps the pick
        if (reply.isEmpty()) {
            QCOMPARE(reload.size(), 1);
        } else { // the login's answer rebuilt the combo
            QCOMPARE(combo->currentIndex(), choice->currentIndex());
            if (pick == 2)
                QCOMPARE(choice->getCurrServer()->getToken(), QStringLiteral("s11"));
        }
        // The broker's priLogin of our own login is left to the callback.
        QCOMPARE(reset.size(), 0);
        // The host hears of a Korvane login: (4, 63, no value).
        QCOMPARE(messages.size(), reply == loginReply() ? 1 : 0);
        if (!messages.isEmpty()) {
            QCOMPARE((QList<int>{messages.first().at(0).toInt(), messages.first().at(1).toInt()}), (QList<int>{4, 63}));
            QVERIFY(!messages.first().at(2).value<QVariant>().isValid());
        }
    }

    // With only the first entry logged in nothing is adopted; later the last
    // logged-in entry wins.
    void loginSuccessPriNeverAdoptsIndexZero()
    {
        QJsonArray list{entry("华东企业", "ent_11", 1, 11, "pri"), entry("华南企业", "ent_12", 2, 12, "pri"),
                        entry("华北企业", "ent_13", 2, 13, "pri")};
        startWith(list);
        dialog->close(); // logins below are made here, not elsewhere
        for (const QList<int> &logins : {QList<int>{0}, QList<int>{1, 2}}) {
            for (int i : logins) {
                fx->channel().reply(enterpriseLoginReply(QStringLiteral("s1%1").arg(i + 1)));
                QVERIFY(ServerRegistry::instance()->loginEnterprise(i, "li", "pw").isEmpty());
            }
            fx->channel().replyOk(list);
            choice->loginSuccessPri();
            QCOMPARE(choice->currentIndex(), logins.size() > 1 ? 2 : -1);
            QCOMPARE(combo->currentIndex(), choice->currentIndex());
        }
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

    void checks_data()
    {
        QTest::addColumn<CloudSourcesOptions>("options");
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("linkHidden");
        QTest::addColumn<int>("storedAfterClick"); // "标准清单" clicked once
        const CloudSourcesOptions kept = options(Storage::ReadWrite);
        QTest::newRow("both") << kept << 3 << 3 << false << 2;
        QTest::newRow("standard only") << kept << 1 << 1 << false << 0;
        QTest::newRow("accumulated only") << kept << 2 << 2 << false << 3;
        QTest::newRow("none") << kept << 0 << 0 << false << 1;
        QTest::newRow("none, link hidden") << options(Storage::ReadWrite, 0, true) << 0 << 0 << true << 1;
        QTest::newRow("standard, link kept") << options(Storage::ReadWrite, 0, true) << 1 << 1 << false << 0;
        QTest::newRow("read only") << options(Storage::ReadOnly) << 2 << 2 << false << 2;
        QTest::newRow("not stored from 3") << options(Storage::None, 3) << 0 << 3 << false << 0;
        QTest::newRow("not stored from 0") << options(Storage::None) << 3 << 0 << false << 3;
    }

    void checks()
    {
        QFETCH(CloudSourcesOptions, options);
        QFETCH(int, before);
        QFETCH(int, mode);
        GlobalSettingsInfo info;
        info.bzqdChecked = CloudSourceRules::hasStandard(before);
        info.jlqdChecked = CloudSourceRules::hasAccumulated(before);
        ProjectSettingHelper::SetGlobalSettingsInfo(info);
        CloudSources *sources = makeSources(options);
        QCOMPARE(sources->mode(), mode);
        QCOMPARE(sources->filterLink()->isEnabled(), bool(mode & 2));
        QTEST(sources->filterLink()->isHidden(), "linkHidden");
        QCOMPARE(sources->checkSource(), mode != 0);
        QCOMPARE(fx->messageTexts(), mode ? QStringList() : QStringList{"请勾选清单方案来源"});
        sources->standardBox()->click();
        QCOMPARE(sources->mode(), mode ^ 1);
        QTEST(CloudSourceRules::mode(stored().bzqdChecked, stored().jlqdChecked), "storedAfterClick");
    }

    void captionAndKey_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("token");
        QTest::addColumn<int>("qyid"); // -1: no server
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("key");
        QTest::newRow("personal") << "u1" << "kv_token_user" << 0 << "积累工程清单" << "u1 kv_token_user 0";
        QTest::newRow("korvane") << "u1" << "kv_token" << 0 << "案例工程清单" << "u1 kv_token 0";
        QTest::newRow("enterprise") << "u1" << "ent_11" << 11 << "积累工程清单" << "u1 ent_11 11";
        QTest::newRow("kv_token inside") << "u1" << "kv_token_bigdata" << 0 << "积累工程清单" << "u1 kv_token_bigdata 0";
        QTest::newRow("logged out") << "" << "kv_token" << 0 << "案例工程清单" << " kv_token 0";
        QTest::newRow("no server") << "u1" << "" << -1 << "积累工程清单" << "";
    }

    void captionAndKey()
    {
        QFETCH(QString, user);
        QFETCH(QString, token);
        QFETCH(int, qyid);
        Users::Instance()->Kvy()->setLogin(user, "张三", "sess-1");
        const LtdInfo entry("服务器", token, 1, qyid, true);
        const LtdInfo *server = qyid < 0 ? nullptr : &entry;
        QTEST(CloudSourceRules::accumulatedCaption(server), "caption");
        QTEST(CloudSourceRules::selectionKey(server), "key");
    }

    void selectionText_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<int>("width");
        QTest::addColumn<QString>("text"); // "…" at the start: elided, then this tail
        const QString longName = QString("万科城住宅小区一期工程").repeated(3);
        QTest::newRow("one") << QStringList{"万科城一期"} << 400 << "万科城一期";
        QTest::newRow("several") << QStringList{"A", "B", "C"} << 400 << "A等3个工程";
        QTest::newRow("one, narrow") << QStringList{longName} << 120 << "…";
        QTest::newRow("several, narrow") << QStringList{longName, "B"} << 160 << "…等2个工程";
    }

    void selectionText()
    {
        QFETCH(QStringList, names);
        QFETCH(int, width);
        QFETCH(QString, text);
        const QFontMetrics metrics{QFont()};
        const QString shown = CloudSourceRules::selectionText(names, metrics, width);
        const bool elided = text.startsWith("…");
        QVERIFY2(elided ? shown.endsWith(text) && shown.startsWith("万科") && metrics.horizontalAdvance(shown) <= width
                        : shown == text, qPrintable(shown));
    }

    void selectionFollowsServerAndLogin()
    {
        CloudSources *sources = makeSources();
        startWith(); // nobody logged in: no server
        QCOMPARE(sources->accumulatedBox()->text(), QStringLiteral("积累工程清单"));
        sources->filterLink()->click();
        QCOMPARE(fx->messageTexts(), QStringList{"请选择服务器"});
        QCOMPARE(fx->messages().first().parent.data(), dialog.get());
        QCOMPARE(fx->modalRuns(), QStringList());

        fx->answerNextModal(fillLogin("zhang", "pw"));
        fx->channel().reply(loginReply());
        fx->channel().replyOk(serverList());
        emit combo->signalCurrentItemChanged(1); // Korvane云, logged in through the form
        QCOMPARE(sources->accumulatedBox()->text(), QStringLiteral("案例工程清单"));
        sources->setSjkm("建筑");
        fx->channel().replyOk(QJsonArray());
        fx->answerNextModal(choose({project("11", "万科城住宅小区一期工程"), project("12", "二期"), project("13", "C")}, &offered));
        sources->filterLink()->click();
        const QJsonObject query{{"method", "getaccumulatedprojects"}, {"qiyeID", 0}, {"usetype", 3}};
        QCOMPARE(fx->channel().lastRequest(), cloudjson::envelope("kv_token", query, AppType()));
        const QString key = "u1 kv_token 0";
        QCOMPARE(stored().projectSelection(key).size(), 3);
        QCOMPARE(stored().projectSelection(key).at(1).toObject(), (QJsonObject{{"tid", "12"}, {"xmmc", "二期"}}));
        QCOMPARE(sources->projectIds(), (QStringList{"11", "12", "13"}));

        // The names are elided to the row and follow its width.
        (new QVBoxLayout(dialog.get()))->addWidget(sources->selectionRow());
        dialog->resize(900, 60);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        QCOMPARE(sources->namesLabel()->text(), QStringLiteral("万科城住宅小区一期工程等3个工程"));
        QCOMPARE(sources->namesLabel()->toolTip(), QStringLiteral("万科城住宅小区一期工程、二期、C"));
        dialog->resize(300, 60);
        QTRY_VERIFY(sources->namesLabel()->text().endsWith(QStringLiteral("…等3个工程")));

        // A new choice replaces the old one; the filter starts from the old one.
        fx->channel().replyOk(QJsonArray());
        fx->answerNextModal(choose({project("12", "二期")}, &offered));
        sources->filterLink()->click();
        QCOMPARE(offered, (QStringList{"11", "12", "13", "建筑"}));
        QCOMPARE(sources->selection().names(), QStringList{"二期"});
        QCOMPARE(stored().projectSelection(key).size(), 1);

        // Without the accumulated source the selection is not in force.
        sources->accumulatedBox()->click();
        QVERIFY(sources->selectionRow()->isHidden() && sources->projectIds().isEmpty());
        sources->accumulatedBox()->click();

        emit combo->signalCurrentItemChanged(0); // 个人云: nothing stored for it
        QCOMPARE(sources->accumulatedBox()->text(), QStringLiteral("积累工程清单"));
        QVERIFY(sources->selection().isEmpty() && sources->selectionRow()->isHidden());
        emit combo->signalCurrentItemChanged(1); // back: read from the settings again
        QVERIFY(sources->projectIds() == QStringList{"12"} && !sources->selectionRow()->isHidden());

        sources->clearButton()->click();
        QVERIFY(sources->selectionRow()->isHidden() && sources->projectIds().isEmpty());
        QVERIFY(!stored().projectSelections().contains(key));

        fx->channel().replyOk(QJsonArray());
        fx->answerNextModal([this](QDialog *) { dialog.reset(); return int(QDialog::Accepted); });
        sources->filterLink()->click();
        QVERIFY(!dialog);
        QCOMPARE(fx->messageTexts(), QStringList{"请选择服务器"});
        QVERIFY(fx->exceptionReports().isEmpty());
    }
};

QTEST_MAIN(TestCloudServerChoice)
#include "tst_cloudserverchoice.moc"
