#include "hosttestcase.h"

#include <channelsetup.h>

#include <hostapi/hostconfig.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>

#include <QDir>
#include <QtTest>

class TestChannelSetup : public HostTestCase
{
    Q_OBJECT
private slots:
    void cleanup()
    {
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void httpWhenConfigured()
    {
        HostConfig::setValue("CloudChannel", "http");
        HostConfig::setValue("CloudUrl", "http://127.0.0.1:9");
        QCOMPARE(ChannelSetup::install(), QStringLiteral("云服务器 http://127.0.0.1:9"));
        QCOMPARE(ServicesUtil::channel()->name(), QStringLiteral("http"));
        QVERIFY(!QDir(ChannelSetup::embeddedDataDir()).exists());
    }

    void embeddedByDefaultWithDemoLogin()
    {
        // "http" without a URL is no usable configuration: the embedded cloud.
        HostConfig::setValue("CloudChannel", "http");
        QCOMPARE(ChannelSetup::install(), QStringLiteral("嵌入式云服务"));
        QCOMPARE(ServicesUtil::channel()->name(), QStringLiteral("embedded"));
        QVERIFY(ChannelSetup::embeddedDataDir().startsWith(fx->appDir()));
        QVERIFY(ChannelSetup::firstRunNote().contains(QStringLiteral("demo")));
        QCOMPARE(ChannelSetup::signInDemo(), QString());
        QVERIFY(Users::Instance()->Kvy()->IsLogin());
        bool enterprise = false;
        for (LtdInfo *s : ServerRegistry::instance()->servers())
            enterprise = enterprise || (s->kind() == QLatin1String("pri") && s->getServerLogin());
        QVERIFY(enterprise);
        // A second start on the same folder creates nothing new.
        ServicesUtil::setChannel(nullptr);
        ChannelSetup::install();
        QCOMPARE(ChannelSetup::firstRunNote(), QString());
    }
};

QTEST_MAIN(TestChannelSetup)
#include "tst_channelsetup.moc"
