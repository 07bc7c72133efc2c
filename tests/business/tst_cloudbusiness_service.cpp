// The host business calls against the real embedded cloud service with its
// full seed: a feature match pages through standard and accumulated bills,
// project information follows a match, and similar bills come back priced
// with their compositions.
#include "hostfixture.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudparams.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class TestCloudBusinessService : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir cloudDir;
    std::shared_ptr<CloudService> service;
    std::unique_ptr<HostFixture> fx;
    std::unique_ptr<BaseDataItem> bill;
    LtdInfo personal{QStringLiteral("个人云"), KvTokenUser, 1, 0, true};
    LtdInfo korvane{QStringLiteral("Korvane云"), KvToken, 1, 0, true};

    void login()
    {
        QJsonObject request{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                            {QStringLiteral("app_type"), 16},
                            {QStringLiteral("orgin_token"), QString()},
                            {QStringLiteral("data"), QJsonObject{{QStringLiteral("method"), QStringLiteral("login")},
                                                                 {QStringLiteral("username"), ServiceSeed::DemoUser},
                                                                 {QStringLiteral("password"), ServiceSeed::DemoPassword}}}};
        const QJsonObject reply = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(request)).object();
        const QJsonObject data = reply.value(QStringLiteral("data")).toObject();
        QVERIFY2(reply.value(QStringLiteral("code")).toInt() == 0, qPrintable(reply.value(QStringLiteral("msg")).toString()));
        Users::Instance()->Kvy()->setLogin(data.value(QStringLiteral("userid")).toVariant().toString(),
                                           data.value(QStringLiteral("username")).toString(),
                                           data.value(QStringLiteral("session")).toString());
    }

private slots:
    void initTestCase()
    {
        QVERIFY(cloudDir.isValid());
        service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Full);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
    }

    void init()
    {
        fx = std::make_unique<HostFixture>();
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        login();
        // A real bill of an installation project: copper wiring in conduit.
        bill = std::make_unique<BaseDataItem>(1, BaseDataItem::BillKind);
        bill->setData(BaseDataItem::CodeRole, QStringLiteral("030411004001"));
        bill->setData(BaseDataItem::NameRole, QStringLiteral("配线"));
        bill->setData(BaseDataItem::UnitRole, QStringLiteral("m"));
        bill->setData(BaseDataItem::FeaturesRole, QStringLiteral("规格：BYJ2.5mm2\n配线线制：管内穿线"));
    }

    void cleanup()
    {
        bill.reset();
        fx.reset();
    }

    void featureMatchPagesThroughBothSources()
    {
        CloudParams params;
        params.setPageSize(10);
        QJsonObject first;
        QVERIFY(CloudBusiness::MatchQdtz(bill.get(), params, &korvane, first, 3, {}));
        QCOMPARE(first.value(QStringLiteral("code")).toInt(), 0);
        const int all = first.value(QStringLiteral("allCount")).toInt();
        QCOMPARE(first.value(QStringLiteral("pageRowCount")).toInt(), 10);
        QVERIFY2(all > 10, qPrintable(QString::number(all)));
        const QJsonObject data = first.value(QStringLiteral("data")).toObject();
        const int onPage = data.value(QStringLiteral("bzqds")).toArray().size()
                           + data.value(QStringLiteral("jlqds")).toArray().size();
        QCOMPARE(onPage, 10);
        QVERIFY(!data.value(QStringLiteral("jlqds")).toArray().isEmpty());

        // Standard bills only: no accumulated ones, and the same name first.
        QJsonObject standard;
        QVERIFY(CloudBusiness::MatchQdtz(bill.get(), params, &korvane, standard, 1, {}));
        const QJsonObject sdata = standard.value(QStringLiteral("data")).toObject();
        QVERIFY(sdata.value(QStringLiteral("jlqds")).toArray().isEmpty());
        QVERIFY(!sdata.value(QStringLiteral("bzqds")).toArray().isEmpty());
        QCOMPARE(sdata.value(QStringLiteral("bzqds")).toArray().first().toObject().value(QStringLiteral("qdbh")).toString().left(9),
                 QStringLiteral("030411004"));

        // Project information of the best accumulated match.
        QString id = data.value(QStringLiteral("jlqds")).toArray().first().toObject().value(QStringLiteral("guida")).toVariant().toString();
        QJsonObject info;
        QVERIFY(CloudBusiness::RequestGcslData(&korvane, id, info));
        QVERIFY(!info.value(QStringLiteral("data")).toObject().value(QStringLiteral("xmmc")).toString().isEmpty());
    }

    void similarBillsArePricedWithCompositions()
    {
        QStringList bills;
        QString error;
        QVERIFY2(CloudBusiness::RequestSimilarBillPrices(bill.get(), &korvane, 3, bills, &error), qPrintable(error));
        QVERIFY(!bills.isEmpty() && bills.size() <= 3);
        const CloudZjBean best(bills.first());
        QVERIFY(best.getZhdj() > 0);
        QVERIFY(!best.getZjnrlist().isEmpty());
    }

    void withoutLoginNothingIsAnsweredAsSuccess()
    {
        Users::Instance()->Kvy()->setLogout();
        QJsonObject reply;
        CloudBusiness::MatchQdtz(bill.get(), CloudParams(), &personal, reply, 3, {});
        QVERIFY(reply.value(QStringLiteral("code")).toInt() != 0);
        QVERIFY(!reply.value(QStringLiteral("msg")).toString().isEmpty());
    }
};

QTEST_MAIN(TestCloudBusinessService)
#include "tst_cloudbusiness_service.moc"
