// The service's request handling: the bytes are a request body as the HTTP
// front end receives it, sent in the demo account's session so that the
// methods behind the login are reached too. One service serves the whole run
// on a data folder in memory; it is put back to its first state when an input
// ended the session (a logout, a password change, a throttled login) and every
// so many inputs, so that what inputs store does not pile up.
#include "fuzzsupport.h"

#include <hostapi/jsonnesting.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <memory>

namespace {
constexpr int kNotLoggedIn = 2;
constexpr int kRestoreEvery = 100000;

QJsonObject request(const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")}, {QStringLiteral("data"), data}};
}

class FuzzedService
{
public:
    FuzzedService()
        : m_root(QDir(QStringLiteral("/dev/shm")).exists() ? QStringLiteral("/dev/shm/velora-fuzz-XXXXXX")
                                                           : QDir::tempPath() + QStringLiteral("/velora-fuzz-XXXXXX"))
    {
        // Inputs log in too; the deployment's hash strength would make each
        // such input cost a tenth of a second.
        qputenv("VELORA_CLOUD_PASSWORD_COST", "minimum");
        CloudService seeded(pristine(), CloudService::Seed::Minimal);
    }

    QJsonObject handle(const QJsonObject &input)
    {
        if (!m_service || ++m_count % kRestoreEvery == 0)
            restore();
        const QJsonObject reply = m_service->handle(input, m_session);
        if (reply.value(QStringLiteral("code")).toInt() == kNotLoggedIn && !loggedIn())
            m_service.reset();
        return reply;
    }

private:
    QString pristine() const { return m_root.filePath(QStringLiteral("pristine")); }
    QString live() const { return m_root.filePath(QStringLiteral("live")); }

    void restore()
    {
        m_service.reset();
        QDir(live()).removeRecursively();
        QDir().mkpath(live());
        for (const QString &name : QDir(pristine()).entryList(QDir::Files))
            QFile::copy(QDir(pristine()).filePath(name), QDir(live()).filePath(name));
        m_service = std::make_unique<CloudService>(live(), CloudService::Seed::Minimal);
        const QJsonObject reply = m_service->handle(
            request(QJsonObject{{QStringLiteral("method"), QStringLiteral("login")},
                                {QStringLiteral("username"), ServiceSeed::DemoUser},
                                {QStringLiteral("password"), ServiceSeed::DemoPassword}}),
            QString());
        m_session = reply.value(QStringLiteral("data")).toObject().value(QStringLiteral("session")).toString();
        if (m_session.isEmpty())
            __builtin_trap();
    }

    // The Korvane entries of the server list show whether the session lives.
    bool loggedIn()
    {
        const QJsonObject reply =
            m_service->handle(request(QJsonObject{{QStringLiteral("method"), QStringLiteral("getserverlist")}}),
                              m_session);
        const QJsonArray list = reply.value(QStringLiteral("data")).toArray();
        return !list.isEmpty() && list.first().toObject().value(QStringLiteral("login")).toBool();
    }

    QTemporaryDir m_root;
    std::unique_ptr<CloudService> m_service;
    QString m_session;
    int m_count = 0;
};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FuzzedService service;
    const QJsonObject reply = service.handle(JsonNesting::parse(FuzzSupport::bytes(data, size)).object());
    // Every answer must survive the trip back as JSON text, as the HTTP front
    // end writes it.
    if (!reply.contains(QStringLiteral("code")) || QJsonDocument(reply).toJson(QJsonDocument::Compact).isEmpty())
        __builtin_trap();
    return 0;
}
