#include "channelsetup.h"

#include <hostapi/apppaths.h>
#include <hostapi/hostconfig.h>
#include <hostapi/httpcloudchannel.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>

#include <QDir>

#include <memory>

namespace {
QString s_firstRunNote;
}

QString ChannelSetup::embeddedDataDir()
{
    return GetAppPath() + QStringLiteral("Cloud/");
}

QString ChannelSetup::install()
{
    const QString url = HostConfig::value(QStringLiteral("CloudUrl"));
    if (HostConfig::value(QStringLiteral("CloudChannel")) == QLatin1String("http") && !url.isEmpty()) {
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(url));
        return QStringLiteral("云服务器 %1").arg(url);
    }
    QDir().mkpath(embeddedDataDir());
    auto service = std::make_shared<CloudService>(embeddedDataDir());
    if (!service->openError().isEmpty()) {
        s_firstRunNote = service->openError();
        ServicesUtil::setChannel(nullptr);
        return QString();
    }
    s_firstRunNote = service->firstRunNotice();
    ServicesUtil::setChannel(std::make_shared<EmbeddedChannel>(service));
    return QStringLiteral("嵌入式云服务");
}

QString ChannelSetup::firstRunNote()
{
    return s_firstRunNote;
}

QString ChannelSetup::signInDemo()
{
    ServerRegistry *registry = ServerRegistry::instance();
    const QString failure = registry->loginKorvane(ServiceSeed::DemoUser, ServiceSeed::DemoPassword);
    if (!failure.isEmpty())
        return failure;
    if (!registry->refresh())
        return QStringLiteral("服务器列表获取失败");
    const QList<LtdInfo *> servers = registry->servers();
    for (int i = 0; i < servers.size(); ++i) {
        if (servers[i]->kind() == QLatin1String("pri"))
            return registry->loginEnterprise(i, ServiceSeed::DemoUser, ServiceSeed::DemoPassword);
    }
    return QString();
}
