// The host business calls around matching: the exact requests they send and
// how they read replies, against the scripted channel.
#include "hostfixture.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudparams.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>

#include <QJsonArray>
#include <QtConcurrent>
#include <QtTest>

#include <memory>

class TestCloudBusiness : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<BaseDataItem> bill;

    static QJsonObject envelope(const QString &token, const QJsonObject &data)
    {
        return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                           {QStringLiteral("app_type"), 16},
                           {QStringLiteral("orgin_token"), token},
                           {QStringLiteral("data"), data}};
    }

    QJsonObject billJson() const
    {
        return QJsonObject{{QStringLiteral("qdbh"), QStringLiteral("030408001001")},
                           {QStringLiteral("xmmc"), QStringLiteral("电力电缆")},
                           {QStringLiteral("jldw"), QStringLiteral("m")},
                           {QStringLiteral("xmtz"), QStringLiteral("1.名称:电力电缆\n2.型号:YJV-4×25")},
                           {QStringLiteral("gznr"), QStringLiteral("1.电缆敷设")}};
    }

private slots:
    void init()
    {
        fx = std::make_unique<HostFixture>();
        bill = std::make_unique<BaseDataItem>(42, BaseDataItem::BillKind);
        bill->setData(BaseDataItem::CodeRole, QStringLiteral("030408001001"));
        bill->setData(BaseDataItem::NameRole, QStringLiteral("电力电缆"));
        bill->setData(BaseDataItem::UnitRole, QStringLiteral("m"));
        bill->setData(BaseDataItem::FeaturesRole, QStringLiteral("1.名称:电力电缆\n2.型号:YJV-4×25"));
        bill->setData(BaseDataItem::WorkContentRole, QStringLiteral("1.电缆敷设"));
    }
    void cleanup()
    {
        bill.reset();
        fx.reset();
    }

    void matchQdtzRequestPerTier_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<int>("qyid");
        QTest::addColumn<int>("qiyeID");
        QTest::addColumn<int>("usetype");
        QTest::newRow("personal") << KvTokenUser << 0 << -1 << 1;
        QTest::newRow("korvane") << KvToken << 0 << 0 << 3;
        QTest::newRow("enterprise") << QStringLiteral("ent-session-7") << 7 << 7 << 2;
    }

    void matchQdtzRequestPerTier()
    {
        QFETCH(QString, token);
        QFETCH(int, qyid);
        QFETCH(int, qiyeID);
        QFETCH(int, usetype);
        LtdInfo server(QStringLiteral("服务器"), token, 1, qyid, true);
        CloudParams params;
        params.setSearchText(QStringLiteral("电缆"));
        params.setPage(2);
        QJsonObject cloudReply{{QStringLiteral("code"), 0}, {QStringLiteral("allCount"), 25},
                               {QStringLiteral("pageRowCount"), 10},
                               {QStringLiteral("data"), QJsonObject{{QStringLiteral("bzqds"), QJsonArray()}}}};
        fx->channel().reply(cloudReply);
        QJsonObject reply;
        QVERIFY(CloudBusiness::MatchQdtz(bill.get(), params, &server, reply, 3,
                                         {QStringLiteral("p1"), QStringLiteral("p2")}));
        QCOMPARE(reply, cloudReply);

        QJsonObject data = billJson();
        data.insert(QStringLiteral("method"), QStringLiteral("matchqdtz"));
        data.insert(QStringLiteral("qiyeID"), qiyeID);
        data.insert(QStringLiteral("usetype"), usetype);
        data.insert(QStringLiteral("params"), params.toJson());
        data.insert(QStringLiteral("sourceMask"), 3);
        data.insert(QStringLiteral("gcids"), QJsonArray{QStringLiteral("p1"), QStringLiteral("p2")});
        QCOMPARE(fx->channel().lastRequest(), envelope(token, data));
    }

    void matchQdtzUnansweredAndMissingInputs()
    {
        LtdInfo server(QStringLiteral("个人云"), KvTokenUser, 1, 0, true);
        QJsonObject reply{{QStringLiteral("stale"), 1}};
        fx->channel().replyBytes("not json");
        QVERIFY(!CloudBusiness::MatchQdtz(bill.get(), CloudParams(), &server, reply, 1, {}));
        QVERIFY(reply.isEmpty());
        QVERIFY(!CloudBusiness::MatchQdtz(nullptr, CloudParams(), &server, reply, 1, {}));
        QVERIFY(!CloudBusiness::MatchQdtz(bill.get(), CloudParams(), nullptr, reply, 1, {}));
        QCOMPARE(fx->channel().requests().size(), 1);
    }

    void matchQdtzFromWorkerThread()
    {
        LtdInfo server(QStringLiteral("个人云"), KvTokenUser, 1, 0, true);
        fx->channel().replyOk(QJsonObject{{QStringLiteral("bzqds"), QJsonArray()}});
        BaseDataItem *item = bill.get();
        QFuture<bool> f = QtConcurrent::run([item, &server] {
            QJsonObject reply;
            return CloudBusiness::MatchQdtz(item, CloudParams(), &server, reply, 1, {});
        });
        f.waitForFinished();
        QVERIFY(f.result());
    }

    void requestGcslData()
    {
        LtdInfo server(QStringLiteral("Korvane云"), KvToken, 1, 0, true);
        QString id = QStringLiteral("b-17");
        fx->channel().replyOk(QJsonObject{{QStringLiteral("xmmc"), QStringLiteral("某住宅楼")}});
        QJsonObject reply;
        QVERIFY(CloudBusiness::RequestGcslData(&server, id, reply));
        QCOMPARE(reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("xmmc")).toString(),
                 QStringLiteral("某住宅楼"));
        QCOMPARE(fx->channel().lastRequest(),
                 envelope(KvToken, QJsonObject{{QStringLiteral("method"), QStringLiteral("getgcsldata")},
                                               {QStringLiteral("qiyeID"), 0},
                                               {QStringLiteral("usetype"), 3},
                                               {QStringLiteral("id"), id}}));

        fx->channel().replyError(5, QStringLiteral("清单不存在"));
        QVERIFY(!CloudBusiness::RequestGcslData(&server, id, reply));
        QCOMPARE(reply.value(QStringLiteral("msg")).toString(), QStringLiteral("清单不存在"));
        QString empty;
        QVERIFY(!CloudBusiness::RequestGcslData(&server, empty, reply));
        QCOMPARE(fx->channel().requests().size(), 2);
    }

    void similarBillPricesAreCloudZjBeanStrings()
    {
        LtdInfo server(QStringLiteral("个人云"), KvTokenUser, 1, 0, true);
        const QJsonObject cloudBill{{QStringLiteral("id"), 9},
                                    {QStringLiteral("qdly"), QStringLiteral("2")},
                                    {QStringLiteral("qdbh"), QStringLiteral("030408001001")},
                                    {QStringLiteral("xmmc"), QStringLiteral("电力电缆")},
                                    {QStringLiteral("jldw"), QStringLiteral("m")},
                                    {QStringLiteral("zhdj"), 58.37},
                                    {QStringLiteral("zjnr"), QStringLiteral("{\"zjnr\":[]}")}};
        fx->channel().replyOk(QJsonArray{cloudBill});
        QStringList bills;
        QVERIFY(CloudBusiness::RequestSimilarBillPrices(bill.get(), &server, 3, bills));
        QCOMPARE(bills.size(), 1);
        const CloudZjBean bean(bills.first());
        QCOMPARE(bean.getId(), 9);
        QCOMPARE(bean.getXmmc(), QStringLiteral("电力电缆"));
        QCOMPARE(bean.getZhdj(), 58.37);
        QCOMPARE(fx->channel().lastRequest().value(QStringLiteral("data")).toObject().value(QStringLiteral("matchNum")).toInt(), 3);

        QString error;
        fx->channel().replyError(3, QStringLiteral("您没有该企业的权限"));
        QVERIFY(!CloudBusiness::RequestSimilarBillPrices(bill.get(), &server, 1, bills, &error));
        QVERIFY(bills.isEmpty());
        QCOMPARE(error, QStringLiteral("您没有该企业的权限"));
    }
};

QTEST_MAIN(TestCloudBusiness)
#include "tst_cloudbusiness.moc"
