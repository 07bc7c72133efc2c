#include "hostfixture.h"

#include <hostapi/accumulatedprojectquery.h>
#include <hostapi/apptype.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/zfiltersearchbox.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QJsonArray>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {
QJsonObject project(const QString &tid, const QString &name)
{
    return QJsonObject{{QStringLiteral("tid"), tid}, {QStringLiteral("xmmc"), name},
                       {QStringLiteral("dq"), QStringLiteral("四川省成都市")}, {QStringLiteral("sj"), QStringLiteral("2023-05")},
                       {QStringLiteral("gcType"), 1}};
}

QJsonObject envelope(const QString &token, const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), AppType()},
                       {QStringLiteral("orgin_token"), token},
                       {QStringLiteral("data"), data}};
}
}

class TestCloudProCheck : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    LtdInfo personal{QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 1, 0, true};
    LtdInfo korvane{QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 1, 0, true};
    LtdInfo enterprise{QStringLiteral("某某造价公司"), QStringLiteral("ent_session_7"), 2, 7, true};

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void requestByTier_data()
    {
        QTest::addColumn<int>("which");
        QTest::addColumn<bool>("condNull");
        QTest::addColumn<QJsonObject>("data");
        const QString m = QStringLiteral("getaccumulatedprojects");
        QTest::newRow("personal")
            << 0 << false
            << QJsonObject{{QStringLiteral("method"), m}, {QStringLiteral("qiyeID"), -1}, {QStringLiteral("usetype"), 1},
                           {QStringLiteral("gcType"), 2}, {QStringLiteral("keyword"), QStringLiteral("住宅")}};
        QTest::newRow("korvane")
            << 1 << false
            << QJsonObject{{QStringLiteral("method"), m}, {QStringLiteral("qiyeID"), 0}, {QStringLiteral("usetype"), 3},
                           {QStringLiteral("gcType"), 2}, {QStringLiteral("keyword"), QStringLiteral("住宅")}};
        QTest::newRow("enterprise, no conditions")
            << 2 << true
            << QJsonObject{{QStringLiteral("method"), m}, {QStringLiteral("qiyeID"), 7}, {QStringLiteral("usetype"), 2}};
    }

    void requestByTier()
    {
        QFETCH(int, which);
        QFETCH(bool, condNull);
        QFETCH(QJsonObject, data);
        const LtdInfo *server = QList<LtdInfo *>{&personal, &korvane, &enterprise}.at(which);
        QCOMPARE(AccumulatedProjectQuery::buildRequest(*server, 2, QStringLiteral(" 住宅 "), condNull),
                 envelope(server->getToken(), data));
    }

    void initLoadsListWithExactRequest()
    {
        fx->channel().replyOk(QJsonArray{project(QStringLiteral("11"), QStringLiteral("万科城一期")),
                                         QStringLiteral("garbage"),
                                         QJsonObject{{QStringLiteral("xmmc"), QStringLiteral("无编号")}},
                                         project(QStringLiteral("12"), QStringLiteral("万科城二期"))});
        CloudProCheck dlg(QStringList{AccumulatedProjectQuery::choiceText(project(QStringLiteral("12"), QStringLiteral("万科城二期")))},
                          &enterprise, QStringLiteral("建筑"), TQDNodeInfo());
        dlg.setIscondNull(false);
        QVERIFY(dlg.InitGcInfo());
        QCOMPARE(fx->channel().requests(),
                 QList<QJsonObject>{envelope(QStringLiteral("ent_session_7"),
                                             QJsonObject{{QStringLiteral("method"), QStringLiteral("getaccumulatedprojects")},
                                                         {QStringLiteral("qiyeID"), 7},
                                                         {QStringLiteral("usetype"), 2}})});
        zTableModel *model = dlg.tableModel();
        QCOMPARE(model->rowCount(), 2);
        QCOMPARE(model->cellValue(0, QStringLiteral("xmmc")).toString(), QStringLiteral("万科城一期"));
        QCOMPARE(model->cellValue(1, QStringLiteral("dq")).toString(), QStringLiteral("四川省成都市"));
        // A project chosen before shows checked.
        QCOMPARE(model->checkState(0, QStringLiteral("xz")), Qt::Unchecked);
        QCOMPARE(model->checkState(1, QStringLiteral("xz")), Qt::Checked);
        QVERIFY(fx->messageTexts().isEmpty());
    }

    void failuresTellTheUser_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QString>("message");
        QTest::newRow("code") << QByteArray(R"({"code":3,"msg":"企业云未登录","data":null})") << QStringLiteral("企业云未登录");
        QTest::newRow("empty") << QByteArray() << QStringLiteral("无法连接云服务，请稍后重试");
        QTest::newRow("not json") << QByteArray("<html>") << QStringLiteral("无法连接云服务，请稍后重试");
    }

    void failuresTellTheUser()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QString, message);
        fx->channel().replyBytes(reply);
        CloudProCheck dlg({}, &personal, QString(), TQDNodeInfo());
        QVERIFY(!dlg.InitGcInfo());
        QCOMPARE(fx->messageTexts(), QStringList{message});
        QCOMPARE(dlg.tableModel()->rowCount(), 0);
    }

    void noServerSendsNothing()
    {
        CloudProCheck dlg({}, nullptr, QString(), TQDNodeInfo());
        QVERIFY(!dlg.InitGcInfo());
        QVERIFY(fx->channel().requests().isEmpty());
        QCOMPARE(fx->messageTexts(), QStringList{QStringLiteral("请选择服务器")});
    }

    void choicesSurviveSearchAndReachOwner()
    {
        fx->channel().replyOk(QJsonArray{project(QStringLiteral("11"), QStringLiteral("万科城一期")),
                                         project(QStringLiteral("12"), QStringLiteral("万科城二期"))});
        CloudProCheck dlg({}, &korvane, QString(), TQDNodeInfo());
        dlg.setIscondNull(false);
        QVERIFY(dlg.InitGcInfo());
        dlg.resize(640, 460);
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        auto *view = dlg.findChild<zTableView *>(QStringLiteral("gdTableGc"));
        const QModelIndex first = dlg.tableModel()->index(0, 0);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(first).center());
        QCOMPARE(dlg.checkedChoices().size(), 1);

        // A search that hides the chosen project keeps it chosen.
        fx->channel().replyOk(QJsonArray{project(QStringLiteral("12"), QStringLiteral("万科城二期"))});
        dlg.searchBox()->setText(QStringLiteral("二期"));
        dlg.searchBox()->searchButton()->click();
        QCOMPARE(fx->channel().lastRequest().value(QStringLiteral("data")).toObject().value(QStringLiteral("keyword")).toString(),
                 QStringLiteral("二期"));
        QCOMPARE(dlg.tableModel()->rowCount(), 1);
        const QModelIndex second = dlg.tableModel()->index(0, 0);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(second).center());

        QSignalSpy chosen(&dlg, &CloudProCheck::signalCheckGc);
        QSignalSpy maps(&dlg, &CloudProCheck::signalCheckGcMaps);
        dlg.findChild<QPushButton *>(QStringLiteral("btnOk"))->click();
        QCOMPARE(chosen.count(), 1);
        const QStringList choices = chosen.at(0).at(0).toStringList();
        QCOMPARE(AccumulatedProjectQuery::choiceIds(choices), (QStringList{QStringLiteral("11"), QStringLiteral("12")}));
        QCOMPARE(AccumulatedProjectQuery::choiceName(choices.at(0)), QStringLiteral("万科城一期"));
        const auto mapList = maps.at(0).at(0).value<QList<QMap<QString, QVariant>>>();
        QCOMPARE(mapList.value(1).value(QStringLiteral("xmmc")).toString(), QStringLiteral("万科城二期"));
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
    }

    void uncheckRemovesChoice()
    {
        const QString chosen = AccumulatedProjectQuery::choiceText(project(QStringLiteral("11"), QStringLiteral("万科城一期")));
        fx->channel().replyOk(QJsonArray{project(QStringLiteral("11"), QStringLiteral("万科城一期"))});
        CloudProCheck dlg(QStringList{chosen, chosen}, &personal, QString(), TQDNodeInfo());
        QCOMPARE(dlg.checkedChoices(), QStringList{chosen});
        QVERIFY(dlg.InitGcInfo());
        dlg.resize(640, 460);
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        auto *view = dlg.findChild<zTableView *>(QStringLiteral("gdTableGc"));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(dlg.tableModel()->index(0, 0)).center());
        QVERIFY(dlg.checkedChoices().isEmpty());
    }
};

QTEST_MAIN(TestCloudProCheck)
#include "tst_cloudprocheck.moc"
