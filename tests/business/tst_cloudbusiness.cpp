// The host business calls around matching: the exact requests they send and
// how they read replies, against the scripted channel.
#include "cloudjson.h"
#include "hosttestcase.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudparams.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>

#include <QtTest>

using namespace cloudjson;

class TestCloudBusiness : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<BaseDataItem> bill;
    LtdInfo personal{"个人云", KvTokenUser, 1, 0, true};
    LtdInfo korvane{"Korvane云", KvToken, 1, 0, true};

private slots:
    void init()
    {
        HostTestCase::init();
        bill = std::make_unique<BaseDataItem>(42, BaseDataItem::BillKind);
        bill->setData(BaseDataItem::CodeRole, "030408001001");
        bill->setData(BaseDataItem::NameRole, "电力电缆");
        bill->setData(BaseDataItem::UnitRole, "m");
        bill->setData(BaseDataItem::FeaturesRole, "1.名称:电力电缆\n2.型号:YJV-4×25");
        bill->setData(BaseDataItem::WorkContentRole, "1.电缆敷设");
    }

    // The personal request is checked as the feature guide sends it, the tier
    // fields by the tier rule; here an enterprise with chosen projects.
    void matchQdtzRequest()
    {
        LtdInfo server("服务器", "ent-session-7", 1, 7, true);
        CloudParams params;
        params.setSearchText("电缆");
        params.setPage(2);
        const QJsonObject cloudReply{{"code", 0}, {"allCount", 25}, {"pageRowCount", 10}, {"data", QJsonObject{{"bzqds", QJsonArray()}}}};
        fx->channel().reply(cloudReply);
        QJsonObject reply;
        QVERIFY(CloudBusiness::MatchQdtz(bill.get(), params, &server, reply, 3, {"p1", "p2"}));
        QCOMPARE(reply, cloudReply);
        const QJsonObject data{{"method", "matchqdtz"}, {"qdbh", "030408001001"}, {"xmmc", "电力电缆"}, {"jldw", "m"},
                               {"xmtz", "1.名称:电力电缆\n2.型号:YJV-4×25"}, {"gznr", "1.电缆敷设"}, {"qiyeID", 7},
                               {"usetype", 2}, {"params", params.toJson()}, {"sourceMask", 3},
                               {"gcids", QJsonArray{"p1", "p2"}}};
        QCOMPARE(fx->channel().lastRequest(), envelope("ent-session-7", data, 16));
    }

    void matchQdtzUnansweredAndMissingInputs()
    {
        QJsonObject reply{{"stale", 1}};
        fx->channel().replyBytes("not json");
        QVERIFY(!CloudBusiness::MatchQdtz(bill.get(), CloudParams(), &personal, reply, 1, {}));
        QVERIFY(reply.isEmpty());
        QVERIFY(!CloudBusiness::MatchQdtz(nullptr, CloudParams(), &personal, reply, 1, {}));
        QVERIFY(!CloudBusiness::MatchQdtz(bill.get(), CloudParams(), nullptr, reply, 1, {}));
        QCOMPARE(fx->channel().requests().size(), 1);
    }

    void requestGcslData()
    {
        QString id = "b-17";
        fx->channel().replyOk(QJsonObject{{"xmmc", "某住宅楼"}});
        QJsonObject reply;
        QVERIFY(CloudBusiness::RequestGcslData(&korvane, id, reply));
        QCOMPARE(object(reply).value("xmmc").toString(), QStringLiteral("某住宅楼"));
        QCOMPARE(fx->channel().lastRequest(),
                 envelope(KvToken, {{"method", "getgcsldata"}, {"qiyeID", 0}, {"usetype", 3}, {"id", id}}, 16));

        fx->channel().replyError(5, "清单不存在");
        QVERIFY(!CloudBusiness::RequestGcslData(&korvane, id, reply));
        QCOMPARE(msg(reply), QStringLiteral("清单不存在"));
        QString empty;
        QVERIFY(!CloudBusiness::RequestGcslData(&korvane, empty, reply));
        QCOMPARE(fx->channel().requests().size(), 2);
    }

    void similarBillPricesAreCloudZjBeanStrings()
    {
        fx->channel().replyOk(QJsonArray{QJsonObject{{"id", 9}, {"qdly", "2"}, {"qdbh", "030408001001"}, {"xmmc", "电力电缆"},
                                                     {"jldw", "m"}, {"zhdj", 58.37}, {"zjnr", "{\"zjnr\":[]}"}}});
        QStringList bills;
        QVERIFY(CloudBusiness::RequestSimilarBillPrices(bill.get(), &personal, 3, bills));
        QCOMPARE(bills.size(), 1);
        const CloudZjBean bean(bills.first());
        QCOMPARE(bean.getId(), 9);
        QCOMPARE(bean.getXmmc(), QStringLiteral("电力电缆"));
        QCOMPARE(bean.getZhdj(), 58.37);
        QCOMPARE(fx->channel().lastRequest().value("data").toObject().value("matchNum").toInt(), 3);

        QString error;
        fx->channel().replyError(3, "您没有该企业的权限");
        QVERIFY(!CloudBusiness::RequestSimilarBillPrices(bill.get(), &personal, 1, bills, &error));
        QVERIFY(bills.isEmpty());
        QCOMPARE(error, QStringLiteral("您没有该企业的权限"));
    }
};

QTEST_MAIN(TestCloudBusiness)
#include "tst_cloudbusiness.moc"
