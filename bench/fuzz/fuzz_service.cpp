// The service's request handling, on a data folder of its own: the bytes are
// a request body as the HTTP front end receives it, sent in the demo
// account's session so that the methods behind the login are reached too.
#include "fuzzsupport.h"

#include <hostapi/jsonnesting.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QJsonDocument>
#include <QTemporaryDir>

namespace {
QString logIn(CloudService &service)
{
    const QJsonObject request{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                              {QStringLiteral("data"),
                               QJsonObject{{QStringLiteral("method"), QStringLiteral("login")},
                                           {QStringLiteral("username"), ServiceSeed::DemoUser},
                                           {QStringLiteral("password"), ServiceSeed::DemoPassword}}}};
    const QJsonObject reply = service.handle(request, QString());
    return reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("session")).toString();
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static QTemporaryDir folder;
    static CloudService service(folder.path(), CloudService::Seed::Minimal);
    static const QString session = logIn(service);
    const QJsonObject request = JsonNesting::parse(FuzzSupport::bytes(data, size)).object();
    const QJsonObject reply = service.handle(request, session);
    // Every answer must survive the trip back as JSON text.
    if (!reply.contains(QStringLiteral("code")) || QJsonDocument(reply).toJson().isEmpty())
        __builtin_trap();
    return 0;
}
