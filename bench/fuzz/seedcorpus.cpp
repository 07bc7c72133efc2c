// Writes the seed corpora: drives the host layer against the embedded
// service with the Full demo data and keeps what crossed the channel.
// Usage: fuzz_seedcorpus CORPUS_DIR
#include <cloud/cloudexchange.h>
#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudenvelope.h>
#include <hostapi/cloudparams.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <pricecheck/pricecheckdetails.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>
#include <service/serviceseed.h>
#include <storage/storagerequests.h>

#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

namespace {
QString s_corpus;

void write(const QString &target, const QByteArray &bytes)
{
    QDir().mkpath(s_corpus + QLatin1Char('/') + target);
    const QByteArray name = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1).toHex();
    QFile file(s_corpus + QLatin1Char('/') + target + QLatin1Char('/') + QString::fromLatin1(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

// Passes calls on to the embedded service and keeps every request (a
// service seed) and reply (an envelope seed); the last reply is kept for
// the target that parses it.
class RecordingChannel : public CloudChannel
{
public:
    explicit RecordingChannel(const QString &dataDir) : m_inner(dataDir) {}
    CloudCall *start(const QJsonObject &request, const QString &session) override
    {
        write(QStringLiteral("service"), QJsonDocument(request).toJson(QJsonDocument::Compact));
        CloudCall *call = m_inner.start(request, session);
        QObject::connect(call, &CloudCall::finished, [this](const QByteArray &reply) {
            write(QStringLiteral("reply"), reply);
            last = reply;
        });
        return call;
    }
    QString name() const override { return m_inner.name(); }
    QByteArray last;

private:
    EmbeddedChannel m_inner;
};

void keepLast(const RecordingChannel &channel, const QString &target)
{
    write(target, channel.last);
}

LtdInfo *personalCloud()
{
    for (LtdInfo *server : ServerRegistry::instance()->servers())
        if (server->getToken() == QLatin1String("kv_token_user"))
            return server;
    return nullptr;
}

BaseDataItem *bill(const char *code, const char *name, const char *unit)
{
    auto *item = new BaseDataItem(1);
    item->setData(BaseDataItem::CodeRole, QString::fromUtf8(code));
    item->setData(BaseDataItem::NameRole, QString::fromUtf8(name));
    item->setData(BaseDataItem::UnitRole, QString::fromUtf8(unit));
    return item;
}

void seedStorage(RecordingChannel &channel, LtdInfo *server)
{
    const CloudReply libraries = CloudExchange::send(StorageRequests::libraryList(server));
    keepLast(channel, QStringLiteral("chapters"));
    for (const QJsonValue &library : libraries.dataArray()) {
        const QString id = library.toObject().value(QStringLiteral("id")).toVariant().toString();
        const CloudReply top = CloudExchange::send(StorageRequests::chapterTree(server, id, QString()));
        keepLast(channel, QStringLiteral("chapters"));
        for (const QJsonValue &chapter : top.dataArray()) {
            const QString zjid = chapter.toObject().value(QStringLiteral("_id")).toVariant().toString();
            CloudExchange::send(StorageRequests::chapterTree(server, id, zjid));
            keepLast(channel, QStringLiteral("chapters"));
        }
    }
}

void seedBills(RecordingChannel &channel, LtdInfo *server)
{
    const char *bills[][3] = {{"010101001", "平整场地", "m2"},
                              {"010401001", "砖基础", "m3"},
                              {"010502001", "矩形柱", "m3"},
                              {"010515001", "现浇构件钢筋", "t"}};
    for (const auto &b : bills) {
        std::unique_ptr<BaseDataItem> item(bill(b[0], b[1], b[2]));
        QJsonObject reply;
        CloudBusiness::MatchQdtz(item.get(), CloudParams(), server, reply, 3, QStringList());
        keepLast(channel, QStringLiteral("features"));
        QStringList prices;
        CloudBusiness::RequestSimilarBillPrices(item.get(), server, 5, prices);
        keepLast(channel, QStringLiteral("prices"));
        for (const QString &text : prices) {
            write(QStringLiteral("composition"), text.toUtf8());
            CloudExchange::send(PriceCheckDetails::projectInfoRequest(server, CloudZjBean(text)));
            keepLast(channel, QStringLiteral("projectinfo"));
        }
    }
}

void seedMaterials(RecordingChannel &channel, LtdInfo *server)
{
    QJsonArray materials;
    materials << QJsonObject{{QStringLiteral("guid"), 1}, {QStringLiteral("clmc"), QStringLiteral("普通硅酸盐水泥")},
                             {QStringLiteral("ggxh"), QStringLiteral("P.O 42.5")}, {QStringLiteral("dw"), QStringLiteral("t")}}
              << QJsonObject{{QStringLiteral("guid"), 2}, {QStringLiteral("clmc"), QStringLiteral("热轧带肋钢筋")},
                             {QStringLiteral("ggxh"), QString()}, {QStringLiteral("dw"), QStringLiteral("t")}};
    const QJsonObject params{{QStringLiteral("isAlgc"), true}, {QStringLiteral("hsbz"), 1}};
    CloudEnvelope::send(CloudEnvelope::tiered(
        QStringLiteral("getmaterialcheckrecords"), *server,
        QJsonObject{{QStringLiteral("params"), params},
                    {QStringLiteral("materials"), materials}}));
    keepLast(channel, QStringLiteral("prices"));
}
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc < 2)
        return 2;
    s_corpus = QString::fromLocal8Bit(argv[1]);
    QTemporaryDir data;
    auto channel = std::make_shared<RecordingChannel>(data.path());
    ServicesUtil::setChannel(channel);
    ServerRegistry *registry = ServerRegistry::instance();
    registry->refresh();
    keepLast(*channel, QStringLiteral("serverlist"));
    registry->loginKorvane(ServiceSeed::DemoUser, ServiceSeed::DemoPassword);
    registry->refresh();
    keepLast(*channel, QStringLiteral("serverlist"));
    LtdInfo *server = personalCloud();
    if (!server)
        return 1;
    seedStorage(*channel, server);
    seedBills(*channel, server);
    seedMaterials(*channel, server);
    ServicesUtil::setChannel(nullptr);
    return 0;
}
