#include "hosttestcase.h"
#include "loginanswers.h"

#include <cloud/cloudserverchoice.h>
#include <cloud/cloudsourcerules.h>
#include <cloud/cloudsources.h>

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/apptype.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/serverregistry.h>
#include <hostapi/users.h>

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

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

class TestCloudSources : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<QWidget> dialog;
    CloudServerCombox *combo = nullptr;
    CloudServerChoice *servers = nullptr;
    QStringList offered;

    CloudSources *make(const CloudSourcesOptions &o = CloudSourcesOptions())
    {
        auto *sources = new CloudSources(o, dialog.get());
        sources->follow(servers);
        return sources;
    }
    void start()
    {
        fx->channel().replyOk(serverList());
        servers->start();
    }

private slots:
    void init()
    {
        HostTestCase::init();
        dialog = std::make_unique<QWidget>();
        combo = new CloudServerCombox(dialog.get());
        servers = new CloudServerChoice(combo, GuardSite("Znyzj", dialog.get()));
    }
    void cleanup()
    {
        dialog.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
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
        CloudSources *sources = make(options);
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
        CloudSources *sources = make();
        start(); // nobody logged in: no server
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
        QCOMPARE(fx->channel().lastRequest(),
                 (QJsonObject{{"cmd", "cloudSoft"}, {"app_type", AppType()}, {"orgin_token", "kv_token"},
                              {"data", QJsonObject{{"method", "getaccumulatedprojects"}, {"qiyeID", 0}, {"usetype", 3}}}}));
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

QTEST_MAIN(TestCloudSources)
#include "tst_cloudsources.moc"
