// The host business calls against the real embedded cloud service with its
// full seed: a feature match pages through standard and accumulated bills,
// project information follows a match, and similar bills come back priced
// with their compositions.
#include "cloudjson.h"
#include "hosttestcase.h"

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

#include <QTemporaryDir>
#include <QtTest>

using namespace cloudjson;

class TestCloudBusinessService : public HostTestCase
{
    Q_OBJECT
    QTemporaryDir cloudDir;
    std::shared_ptr<CloudService> service;
    std::unique_ptr<BaseDataItem> bill;
    LtdInfo personal{"个人云", KvTokenUser, 1, 0, true};
    LtdInfo korvane{"Korvane云", KvToken, 1, 0, true};

    static QJsonArray bills(const QJsonObject &reply, const QString &source) { return object(reply).value(source).toArray(); }

private slots:
    void initTestCase()
    {
        service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Full);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
    }

    void init()
    {
        HostTestCase::init();
        ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
        const QJsonObject login = envelope(KvToken, {{"method", "login"}, {"username", ServiceSeed::DemoUser},
                                               {"password", ServiceSeed::DemoPassword}}, 16);
        const QJsonObject data = object(exchange(login));
        QVERIFY(!data.value("session").toString().isEmpty());
        Users::Instance()->Kvy()->setLogin(data.value("userid").toVariant().toString(), data.value("username").toString(),
                                           data.value("session").toString());
        // A real bill of an installation project: copper wiring in conduit.
        bill = std::make_unique<BaseDataItem>(1, BaseDataItem::BillKind);
        bill->setData(BaseDataItem::CodeRole, "030411004001");
        bill->setData(BaseDataItem::NameRole, "配线");
        bill->setData(BaseDataItem::UnitRole, "m");
        bill->setData(BaseDataItem::FeaturesRole, "规格：BYJ2.5mm2\n配线线制：管内穿线");
    }

    void featureMatchPagesThroughBothSources()
    {
        CloudParams params;
        params.setPageSize(10);
        QJsonObject first;
        QVERIFY(CloudBusiness::MatchQdtz(bill.get(), params, &korvane, first, 3, {}));
        QCOMPARE(code(first), 0);
        QCOMPARE(first.value("pageRowCount").toInt(), 10);
        QVERIFY2(first.value("allCount").toInt() > 10, qPrintable(QString::number(first.value("allCount").toInt())));
        QCOMPARE(bills(first, "bzqds").size() + bills(first, "jlqds").size(), 10);
        QVERIFY(!bills(first, "jlqds").isEmpty());

        // Standard bills only: no accumulated ones, and the same name first.
        QJsonObject standard;
        QVERIFY(CloudBusiness::MatchQdtz(bill.get(), params, &korvane, standard, 1, {}));
        QVERIFY(bills(standard, "jlqds").isEmpty());
        QVERIFY(!bills(standard, "bzqds").isEmpty());
        QCOMPARE(bills(standard, "bzqds").first().toObject().value("qdbh").toString().left(9), QStringLiteral("030411004"));

        // Project information of the best accumulated match.
        QString id = bills(first, "jlqds").first().toObject().value("guida").toVariant().toString();
        QJsonObject info;
        QVERIFY(CloudBusiness::RequestGcslData(&korvane, id, info));
        QVERIFY(!object(info).value("xmmc").toString().isEmpty());
    }

    void similarBillsArePricedWithCompositions()
    {
        QStringList found;
        QString error;
        QVERIFY2(CloudBusiness::RequestSimilarBillPrices(bill.get(), &korvane, 3, found, &error), qPrintable(error));
        QVERIFY(!found.isEmpty() && found.size() <= 3);
        const CloudZjBean best(found.first());
        QVERIFY(best.getZhdj() > 0);
        QVERIFY(!best.getZjnrlist().isEmpty());
    }

    void withoutLoginNothingIsAnsweredAsSuccess()
    {
        Users::Instance()->Kvy()->setLogout();
        QJsonObject reply;
        CloudBusiness::MatchQdtz(bill.get(), CloudParams(), &personal, reply, 3, {});
        QVERIFY(code(reply) != 0);
        QVERIFY(!msg(reply).isEmpty());
    }
};

QTEST_MAIN(TestCloudBusinessService)
#include "tst_cloudbusiness_service.moc"
