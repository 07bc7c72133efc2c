#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudserverchoice.h>
#include <cloud/cloudsourcerules.h>
#include <cloud/cloudsources.h>

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/apptype.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/cloudservercombox.h>
#include <hostapi/hostconfig.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/serverregistry.h>
#include <hostapi/users.h>
#include <hostapi/ztablemodel.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

using namespace loginanswers;
using Storage = CloudSourcesOptions::CheckStorage;
using Projects = QList<QMap<QString, QVariant>>;
Q_DECLARE_METATYPE(CloudSourcesOptions::CheckStorage)

namespace {
QMap<QString, QVariant> project(const QString &tid, const QString &name)
{
    return {{"tid", tid}, {"xmmc", name}, {"dq", "四川省成都市"}};
}

void storeChecks(int mode)
{
    GlobalSettingsInfo info = ProjectSettingHelper::GetGlobalSettingsInfo();
    info.bzqdChecked = CloudSourceRules::hasStandard(mode);
    info.jlqdChecked = CloudSourceRules::hasAccumulated(mode);
    ProjectSettingHelper::SetGlobalSettingsInfo(info);
}

int storedChecks()
{
    const GlobalSettingsInfo info = ProjectSettingHelper::GetGlobalSettingsInfo();
    return CloudSourceRules::mode(info.bzqdChecked, info.jlqdChecked);
}

QJsonArray storedSelection(const QString &key)
{
    return ProjectSettingHelper::GetGlobalSettingsInfo().projectSelection(key);
}

// The filter emits `projects` as if the user had chosen them, and accepts.
std::function<int(QDialog *)> choose(const Projects &projects, QStringList *offered = nullptr)
{
    return [projects, offered](QDialog *d) {
        auto *filter = qobject_cast<CloudProCheck *>(d);
        if (offered)
            *offered = AccumulatedProjectQuery::choiceIds(filter->checkedChoices()) << filter->sjkm();
        emit filter->signalCheckGcMaps(projects);
        return int(QDialog::Accepted);
    };
}
}

class TestCloudSources : public HostTestCase
{
    Q_OBJECT
private:
    std::unique_ptr<QWidget> dialog;
    CloudServerCombox *combo = nullptr;
    CloudServerChoice *servers = nullptr;

    CloudSources *make(const CloudSourcesOptions &options = CloudSourcesOptions())
    {
        auto *sources = new CloudSources(options, dialog.get());
        sources->follow(servers);
        return sources;
    }
    // The dialog's start with `saved` as the remembered server.
    void start(const QString &saved = QString())
    {
        auto s = HostConfig::openSysSet();
        s->setValue("CloudApp/CurrServer_all", saved);
        s->sync();
        fx->channel().replyOk(serverList());
        servers->start();
    }

private slots:
    void init()
    {
        HostTestCase::init();
        ServerRegistry::instance()->reset();
        dialog = std::make_unique<QWidget>();
        combo = new CloudServerCombox(dialog.get());
        servers = new CloudServerChoice(combo, dialog.get());
    }
    void cleanup()
    {
        dialog.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void checks_data()
    {
        QTest::addColumn<Storage>("storage");
        QTest::addColumn<int>("initialMode");
        QTest::addColumn<bool>("hideLink");
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("linkEnabled");
        QTest::addColumn<bool>("linkHidden");
        QTest::addColumn<int>("storedAfterClick"); // "标准清单" clicked once
        QTest::newRow("both") << Storage::ReadWrite << 0 << false << 3 << 3 << true << false << 2;
        QTest::newRow("standard only") << Storage::ReadWrite << 0 << false << 1 << 1 << false << false << 0;
        QTest::newRow("accumulated only") << Storage::ReadWrite << 0 << false << 2 << 2 << true << false << 3;
        QTest::newRow("none") << Storage::ReadWrite << 0 << false << 0 << 0 << false << false << 1;
        QTest::newRow("none, link hidden") << Storage::ReadWrite << 0 << true << 0 << 0 << false << true << 1;
        QTest::newRow("standard, link kept") << Storage::ReadWrite << 0 << true << 1 << 1 << false << false << 0;
        QTest::newRow("read only") << Storage::ReadOnly << 0 << false << 2 << 2 << true << false << 2;
        QTest::newRow("not stored from 3") << Storage::None << 3 << false << 0 << 3 << true << false << 0;
        QTest::newRow("not stored from 0") << Storage::None << 0 << false << 3 << 0 << false << false << 3;
    }

    void checks()
    {
        QFETCH(Storage, storage);
        QFETCH(int, initialMode);
        QFETCH(bool, hideLink);
        QFETCH(int, stored);
        QFETCH(int, mode);
        QFETCH(bool, linkEnabled);
        QFETCH(bool, linkHidden);
        QFETCH(int, storedAfterClick);
        storeChecks(stored);
        CloudSourcesOptions options;
        options.checkStorage = storage;
        options.initialMode = initialMode;
        options.hideLinkWithoutSource = hideLink;
        CloudSources *sources = make(options);
        QCOMPARE(sources->mode(), mode);
        QCOMPARE(sources->filterLink()->isEnabled(), linkEnabled);
        QCOMPARE(sources->filterLink()->isHidden(), linkHidden);
        QVERIFY(sources->selectionRow()->isHidden());
        sources->standardBox()->click();
        QCOMPARE(sources->mode(), mode ^ 1);
        QCOMPARE(storedChecks(), storedAfterClick);
    }

    void captionAndKey_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("token");
        QTest::addColumn<int>("qyid");
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
        if (!user.isEmpty())
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
        QTest::addColumn<QString>("text"); // empty: elided
        const QString longName = QString("万科城住宅小区一期工程").repeated(3);
        QTest::newRow("none") << QStringList() << 400 << "";
        QTest::newRow("one") << QStringList{"万科城一期"} << 400 << "万科城一期";
        QTest::newRow("several") << QStringList{"A", "B", "C"} << 400 << "A等3个工程";
        QTest::newRow("one, narrow") << QStringList{longName} << 120 << "";
        QTest::newRow("several, narrow") << QStringList{longName, "B"} << 160 << "";
    }

    void selectionText()
    {
        QFETCH(QStringList, names);
        QFETCH(int, width);
        QFETCH(QString, text);
        const QFontMetrics metrics{QFont()};
        const QString shown = CloudSourceRules::selectionText(names, metrics, width);
        if (!text.isEmpty() || names.isEmpty())
            QCOMPARE(shown, text);
        else {
            const QString suffix = names.size() > 1 ? QString("等%1个工程").arg(names.size()) : QString();
            QVERIFY2(shown.endsWith(QStringLiteral("…") + suffix), qPrintable(shown));
            QVERIFY(shown.startsWith(names.first().left(2)));
            QVERIFY(metrics.horizontalAdvance(shown) <= width);
        }
    }

    void filterChoiceIsStoredPerServer()
    {
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        CloudSources *sources = make();
        start("Korvane云");
        sources->setSjkm("建筑");
        QStringList offered;
        fx->channel().replyOk(QJsonArray());
        fx->answerNextModal(choose({project("11", "万科城住宅小区一期工程"), project("12", "万科城二期"), project("13", "C")}));
        sources->filterLink()->click();
        QCOMPARE(fx->channel().lastRequest(),
                 (QJsonObject{{"cmd", "cloudSoft"}, {"app_type", AppType()}, {"orgin_token", "kv_token"},
                              {"data", QJsonObject{{"method", "getaccumulatedprojects"}, {"qiyeID", 0}, {"usetype", 3}}}}));
        const QString key = "u1 kv_token 0";
        QCOMPARE(storedSelection(key).size(), 3);
        QCOMPARE(storedSelection(key).at(1).toObject(), (QJsonObject{{"tid", "12"}, {"xmmc", "万科城二期"}}));
        QCOMPARE(sources->projectIds(), (QStringList{"11", "12", "13"}));
        QVERIFY(!sources->selectionRow()->isHidden());

        // The names are elided to the row and follow its width.
        auto *layout = new QVBoxLayout(dialog.get());
        layout->addWidget(sources->selectionRow());
        dialog->resize(900, 60);
        dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
        QCOMPARE(sources->namesLabel()->text(), QStringLiteral("万科城住宅小区一期工程等3个工程"));
        QCOMPARE(sources->namesLabel()->toolTip(), QStringLiteral("万科城住宅小区一期工程、万科城二期、C"));
        dialog->resize(300, 60);
        QTRY_VERIFY(sources->namesLabel()->text().endsWith(QStringLiteral("…等3个工程")));

        // A new choice replaces the old one; the filter starts from the old one.
        fx->channel().replyOk(QJsonArray());
        fx->answerNextModal(choose({project("12", "万科城二期")}, &offered));
        sources->filterLink()->click();
        QCOMPARE(offered, (QStringList{"11", "12", "13", "建筑"}));
        QCOMPARE(sources->selection().names(), QStringList{"万科城二期"});
        QCOMPARE(storedSelection(key).size(), 1);

        // Unchecking the accumulated source puts the selection out of force.
        sources->accumulatedBox()->click();
        QVERIFY(sources->selectionRow()->isHidden());
        QVERIFY(sources->projectIds().isEmpty());
        sources->accumulatedBox()->click();
        QCOMPARE(sources->projectIds(), QStringList{"12"});

        // Another block on the same server reads it back; clearing removes it.
        CloudSources *reopened = make();
        reopened->serverChanged();
        QCOMPARE(reopened->projectIds(), QStringList{"12"});
        reopened->clearButton()->click();
        QVERIFY(reopened->selectionRow()->isHidden());
        QVERIFY(reopened->projectIds().isEmpty());
        QVERIFY(!ProjectSettingHelper::GetGlobalSettingsInfo().projectSelections().contains(key));
        QVERIFY(fx->messages().isEmpty());
    }

    void serverChangeAndLoginRefresh()
    {
        GlobalSettingsInfo info = ProjectSettingHelper::GetGlobalSettingsInfo();
        info.setProjectSelection("u1 kv_token 0", QJsonArray{QJsonObject{{"tid", 7}, {"xmmc", "案例一"}}});
        ProjectSettingHelper::SetGlobalSettingsInfo(info);
        CloudSources *sources = make();
        start(); // nobody logged in: no server
        QCOMPARE(sources->accumulatedBox()->text(), QStringLiteral("积累工程清单"));
        QVERIFY(sources->selectionRow()->isHidden());

        fx->answerNextModal(fillLogin("zhang", "pw"));
        fx->channel().reply(loginReply());
        fx->channel().replyOk(serverList());
        emit combo->signalCurrentItemChanged(1); // Korvane云, logged in through the form
        QCOMPARE(sources->accumulatedBox()->text(), QStringLiteral("案例工程清单"));
        QCOMPARE(sources->projectIds(), QStringList{"7"});
        QVERIFY(!sources->selectionRow()->isHidden());

        emit combo->signalCurrentItemChanged(0); // 个人云: a key with nothing stored
        QCOMPARE(sources->accumulatedBox()->text(), QStringLiteral("积累工程清单"));
        QVERIFY(sources->selection().isEmpty());
        QVERIFY(sources->selectionRow()->isHidden());
    }

    void refusals()
    {
        storeChecks(2);
        CloudSources *sources = make();
        start(); // no server
        sources->filterLink()->click();
        QVERIFY(fx->modalRuns().isEmpty());
        QCOMPARE(fx->channel().requests().size(), 1); // the server list only
        QVERIFY(sources->checkSource());
        sources->accumulatedBox()->click();
        QVERIFY(!sources->checkSource());
        QCOMPARE(fx->messageTexts(), (QStringList{"请选择服务器", "请勾选清单方案来源"}));
        QCOMPARE(fx->messages().last().parent.data(), dialog.get());
    }

    void dialogDiesDuringFilter()
    {
        Users::Instance()->Kvy()->setLogin("u1", "张三", "sess-1");
        CloudSources *sources = make();
        start();
        fx->channel().replyOk(QJsonArray());
        fx->answerNextModal([this](QDialog *) {
            dialog.reset();
            return int(QDialog::Accepted);
        });
        sources->filterLink()->click();
        QVERIFY(!dialog);
        QVERIFY(fx->exceptionReports().isEmpty());
    }
};

QTEST_MAIN(TestCloudSources)
#include "tst_cloudsources.moc"
