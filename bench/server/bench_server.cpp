// Throughput of the cloud service over HTTP on loopback: N client threads,
// each sending requests back to back through HttpCloudChannel and
// ServicesUtil::AsyncReplyLoop, as the host's worker threads do.
//
//   bench_server [--clients 1,2,4,8] [--seconds 3] [--server-threads 16] [--url URL]
//
// Without --url the server runs in-process (civetweb + CloudService on a fresh
// minimal data folder). Two loads: "echo" (HTTP and JSON only, the handler
// returns at once) and "getserverlist" (a logged-in user's server list from
// the service's database).
#include <hostapi/httpcloudchannel.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <server/cloudhttpserver.h>
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

struct Result {
    qint64 ok = 0;
    qint64 failed = 0;
    std::vector<double> latenciesMs;
};

QJsonObject envelope(const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), 1},
                       {QStringLiteral("orgin_token"), QStringLiteral("kv_token")},
                       {QStringLiteral("data"), data}};
}

Result runClient(const QJsonObject &request, qint64 untilMs, const QElapsedTimer &clock)
{
    Result r;
    while (clock.elapsed() < untilMs) {
        QElapsedTimer one;
        one.start();
        QJsonObject copy = request;
        const QJsonObject reply = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(copy)).object();
        const double ms = one.nsecsElapsed() / 1e6;
        if (!reply.isEmpty() && reply.value(QStringLiteral("code")).toInt() == 0) {
            ++r.ok;
            r.latenciesMs.push_back(ms);
        } else {
            ++r.failed;
        }
    }
    return r;
}

double percentile(std::vector<double> &v, double p)
{
    if (v.empty())
        return 0;
    const size_t i = std::min(v.size() - 1, size_t(p * double(v.size())));
    std::nth_element(v.begin(), v.begin() + long(i), v.end());
    return v[i];
}

void measure(const char *label, const QJsonObject &request, int clients, int seconds)
{
    // Warm-up: connections and the first query of each thread.
    std::vector<Result> results;
    results.resize(size_t(clients));
    std::vector<QThread *> threads;
    QElapsedTimer clock;
    const qint64 warmMs = 300;
    clock.start();
    for (int c = 0; c < clients; ++c) {
        threads.push_back(QThread::create([&, c] {
            runClient(request, warmMs, clock);
            results[size_t(c)] = runClient(request, warmMs + seconds * 1000, clock);
        }));
        threads.back()->start();
    }
    for (QThread *t : threads) {
        t->wait();
        delete t;
    }
    Result all;
    for (Result &r : results) {
        all.ok += r.ok;
        all.failed += r.failed;
        all.latenciesMs.insert(all.latenciesMs.end(), r.latenciesMs.begin(), r.latenciesMs.end());
    }
    const double rate = double(all.ok) / seconds;
    std::printf("| %-13s | %7d | %9lld | %9.0f | %7.2f | %7.2f | %6lld |\n", label, clients, all.ok, rate,
                percentile(all.latenciesMs, 0.50), percentile(all.latenciesMs, 0.99), all.failed);
    std::fflush(stdout);
}

QList<int> parseList(const QString &text)
{
    QList<int> out;
    for (const QString &part : text.split(QLatin1Char(','), Qt::SkipEmptyParts))
        out << part.toInt();
    return out;
}

bool login()
{
    QJsonObject request = envelope({{"method", "login"}, {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}});
    const QJsonObject data = QJsonDocument::fromJson(ServicesUtil::AsyncReplyLoop(request)).object().value("data").toObject();
    if (data.value("session").toString().isEmpty())
        return false;
    Users::Instance()->Kvy()->setLogin(data.value("userid").toString(), data.value("username").toString(),
                                       data.value("session").toString());
    return true;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QList<int> clientCounts{1, 2, 4, 8};
    int seconds = 3;
    int serverThreads = 32;
    QString url;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == QLatin1String("--clients"))
            clientCounts = parseList(args[i + 1]);
        else if (args[i] == QLatin1String("--seconds"))
            seconds = qMax(1, args[i + 1].toInt());
        else if (args[i] == QLatin1String("--server-threads"))
            serverThreads = qMax(1, args[i + 1].toInt());
        else if (args[i] == QLatin1String("--url"))
            url = args[i + 1];
    }

    QTemporaryDir dir;
    std::unique_ptr<CloudService> service;
    std::unique_ptr<CloudHttpServer> echo;
    std::unique_ptr<CloudHttpServer> server;
    CloudHttpServer::Limits limits;
    limits.threads = serverThreads;
    QString echoUrl;
    if (url.isEmpty()) {
        service = std::make_unique<CloudService>(dir.path(), CloudService::Seed::Minimal);
        CloudService *svc = service.get();
        server = std::make_unique<CloudHttpServer>(
            [svc](const QJsonObject &r, const QString &s) { return svc->handle(r, s); }, limits);
        echo = std::make_unique<CloudHttpServer>(
            [](const QJsonObject &, const QString &) {
                return QJsonObject{{QStringLiteral("code"), 0}, {QStringLiteral("msg"), QStringLiteral("成功")}};
            }, limits);
        if (!server->start(QStringLiteral("127.0.0.1:0")) || !echo->start(QStringLiteral("127.0.0.1:0"))) {
            std::fprintf(stderr, "cannot start the in-process servers\n");
            return 1;
        }
        url = server->baseUrl();
        echoUrl = echo->baseUrl();
    }

    std::printf("server threads %d, %d s per row, %d cores\n\n", serverThreads, seconds, QThread::idealThreadCount());
    std::printf("| load          | clients | requests  | req/s     | p50 ms  | p99 ms  | failed |\n");
    std::printf("|---------------|--------:|----------:|----------:|--------:|--------:|-------:|\n");
    if (!echoUrl.isEmpty()) {
        ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(echoUrl)));
        for (int n : clientCounts)
            measure("echo", envelope({{"method", "echo"}}), n, seconds);
    }
    ServicesUtil::setChannel(std::make_shared<HttpCloudChannel>(QUrl(url)));
    if (!login()) {
        std::fprintf(stderr, "login as %s failed at %s\n", qPrintable(ServiceSeed::DemoUser), qPrintable(url));
        return 1;
    }
    for (int n : clientCounts)
        measure("getserverlist", envelope({{"method", "getserverlist"}}), n, seconds);
    return 0;
}
