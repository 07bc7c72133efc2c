#include "benchsetup.h"

#include <channelsetup.h>
#include <latencychannel.h>
#include <projectdocument.h>

#include <hostapi/apppaths.h>
#include <hostapi/servicesutil.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <ctime>

QByteArray BenchSetup::generatedProject(int count)
{
    QFile file(ProjectDocument::samplePath());
    file.open(QIODevice::ReadOnly);
    QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    QJsonArray source;
    for (const QJsonValue &table : root.value("tables").toArray())
        for (const QJsonValue &section : table.toObject().value("items").toArray())
            for (const QJsonValue &bill : section.toObject().value("children").toArray())
                if (bill.toObject().value("kind").toInt() == 4)
                    source.append(bill);
    QJsonArray bills;
    for (int i = 0; i < count; ++i) {
        QJsonObject bill = source.at(i % source.size()).toObject();
        bill.insert("id", 100000 + i);
        bills.append(bill);
    }
    root.insert("tables", QJsonArray{QJsonObject{{"kind", 3001}, {"name", "分部分项工程"}, {"items", bills}}});
    return QJsonDocument(root).toJson();
}

std::shared_ptr<LatencyChannel> BenchSetup::installCloud(const QString &appDir, QString *error)
{
    SetAppPath(appDir);
    auto service = std::make_shared<CloudService>(appDir + "/Cloud", CloudService::Seed::Full);
    auto channel = std::make_shared<LatencyChannel>(std::make_shared<EmbeddedChannel>(service), 0);
    ServicesUtil::setChannel(channel);
    *error = ChannelSetup::signInDemo();
    return error->isEmpty() ? channel : nullptr;
}

double BenchSetup::cpuMs()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

QString BenchSetup::loadAverage()
{
    QFile file("/proc/loadavg");
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromLatin1(file.readAll()).section(' ', 0, 2);
}
