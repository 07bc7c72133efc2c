#include "cloudhttpserver.h"
#include "serveroptions.h"
#include "shutdownsignals.h"

#include <service/cloudservice.h>
#include <service/passwordhash.h>
#include <service/servicedialect.h>
#include <service/serviceerror.h>

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

#ifdef __GLIBC__
#include <malloc.h>
#endif

// A body that is not JSON is refused like any other malformed request.
static_assert(CloudHttpServer::BadRequestCode == ServiceError::BadRequest, "bad-request codes differ");

namespace {

CloudService::Seed seedKind(const QString &name)
{
    if (name == QLatin1String("minimal"))
        return CloudService::Seed::Minimal;
    if (name == QLatin1String("none"))
        return CloudService::Seed::None;
    return CloudService::Seed::Full;
}

void say(const QString &line)
{
    std::fprintf(stdout, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stdout);
}

void complain(const QString &line)
{
    std::fprintf(stderr, "velora-cloud: %s\n", line.toLocal8Bit().constData());
}

} // namespace

int main(int argc, char *argv[])
{
#ifdef __GLIBC__
    // glibc gives each thread that allocates an arena of its own, up to
    // eight per core, and seldom returns their memory: with dozens of
    // connection threads that multiplies the heap. A few arenas suffice.
    mallopt(M_ARENA_MAX, 4);
#endif
    // Before any thread exists, so that every worker inherits the mask.
    ShutdownSignals::block();
    QCoreApplication app(argc, argv);
    ServerOptions options;
    QString error;
    if (!options.parse(app.arguments().mid(1), &error)) {
        complain(error);
        std::fprintf(stderr, "%s", ServerOptions::usage().toLocal8Bit().constData());
        return 2;
    }
    if (options.help) {
        std::fprintf(stdout, "%s", ServerOptions::usage().toLocal8Bit().constData());
        return 0;
    }
    const QString dataDir = options.dataDir.isEmpty() ? QString() : QDir(options.dataDir).absolutePath();
    if (options.database.isEmpty() && !QDir().mkpath(dataDir)) {
        complain(QStringLiteral("cannot create the data folder %1").arg(dataDir));
        return 1;
    }
    CloudService service(dataDir, seedKind(options.seed), options.database);
    if (!service.openError().isEmpty()) {
        complain(service.openError());
        return 1;
    }
    if (!service.firstRunNotice().isEmpty())
        say(service.firstRunNotice());
    if (PasswordHash::configured().memLimit < PasswordHash::interactive().memLimit)
        complain(QStringLiteral("VELORA_CLOUD_PASSWORD_COST=minimum: password hashes are weak (test setting)"));

    CloudHttpServer::Limits limits;
    limits.threads = options.threads;
    limits.maxBodyBytes = options.maxBodyBytes;
    CloudHttpServer server(CloudHttpServer::ClientHandler(
                               [&service](const QJsonObject &request, const QString &session, const QString &client) {
                                   return service.handle(request, session, client);
                               }),
                           limits);
    if (!server.start(options.listen, &error)) {
        complain(error);
        return 1;
    }
    say(QStringLiteral("velora-cloud: serving %1/cloud with %2 threads, data in %3")
            .arg(server.baseUrl())
            .arg(options.threads)
            .arg(options.database.isEmpty() ? dataDir : ServiceDialect(options.database).displayName()));
    const int signal = ShutdownSignals::wait();
    say(QStringLiteral("velora-cloud: signal %1, stopping").arg(signal));
    server.stop();
    say(QStringLiteral("velora-cloud: stopped after %1 requests").arg(server.requestCount()));
    return 0;
}
