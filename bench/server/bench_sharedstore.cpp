// How soon a bill saved through one cloud service instance is matched through
// another instance on the same PostgreSQL database (each instance keeps its
// own matching index and follows the other's writes).
//
//   bench_sharedstore --database postgresql://USER@HOST:PORT/DBNAME [--rounds 50] [--seed minimal|full]
//
// The database must be empty (it is seeded on first open). Each round uploads
// one bill of a fresh name through instance A, then asks instance B's
// "getppqd" for it every millisecond until it is among the ten best.
#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

QJsonObject envelope(const QString &token, const QJsonObject &data)
{
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), 1},
                       {QStringLiteral("orgin_token"), token},
                       {QStringLiteral("data"), data}};
}

QJsonObject call(CloudService &service, const QString &session, const QString &method, QJsonObject fields)
{
    fields.insert(QStringLiteral("method"), method);
    return service.handle(envelope(QStringLiteral("kv_token_user"), fields), session);
}

bool matches(CloudService &service, const QString &session, const QString &name)
{
    const QJsonObject query{{"qdbh", "010101001001"}, {"xmmc", name}, {"dw", "m2"}, {"sjkm", "QD"}, {"guidb", "q"}};
    const QJsonObject reply = call(service, session, QStringLiteral("getppqd"),
                                   {{"usetype", "1"}, {"ltdID", "0"}, {"getzj", "1"}, {"tagNum", "10"},
                                    {"cond", QJsonObject{{"qdly", 3}, {"gcids", QJsonArray()}, {"qdkey", ""}, {"jsfsIndex", 0}}},
                                    {"data", QJsonArray{query}}});
    for (const QJsonValue &bill : reply.value(QStringLiteral("data")).toArray())
        if (bill.toObject().value(QStringLiteral("xmmc")).toString() == name)
            return true;
    return false;
}

double percentile(std::vector<double> v, double p)
{
    std::sort(v.begin(), v.end());
    return v.at(std::min(v.size() - 1, size_t(p * double(v.size()))));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const auto option = [&](const QString &name, const QString &fallback) {
        const int i = args.indexOf(name);
        return i > 0 && i + 1 < args.size() ? args.at(i + 1) : fallback;
    };
    const QString database = option(QStringLiteral("--database"), QString());
    const int rounds = option(QStringLiteral("--rounds"), QStringLiteral("50")).toInt();
    if (database.isEmpty() || rounds < 1) {
        std::fprintf(stderr, "usage: bench_sharedstore --database postgresql://USER@HOST:PORT/DBNAME [--rounds N] [--seed minimal|full]\n");
        return 2;
    }
    const bool full = option(QStringLiteral("--seed"), QStringLiteral("minimal")) == QLatin1String("full");
    QTemporaryDir unused;
    CloudService a(unused.path(), full ? CloudService::Seed::Full : CloudService::Seed::Minimal, database);
    CloudService b(unused.path(), CloudService::Seed::None, database);
    if (!a.openError().isEmpty() || !b.openError().isEmpty()) {
        std::fprintf(stderr, "cannot open: %s%s\n", qPrintable(a.openError()), qPrintable(b.openError()));
        return 1;
    }
    const QString session = a.handle(envelope(QStringLiteral("kv_token"),
                                              {{"method", "login"}, {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}}),
                                     QString())
                                .value(QStringLiteral("data")).toObject().value(QStringLiteral("session")).toString();
    std::vector<double> latencies;
    for (int round = 0; round < rounds; ++round) {
        const QString task = QStringLiteral("bench-%1-%2").arg(QCoreApplication::applicationPid()).arg(round);
        const QString name = QStringLiteral("共享基准清单%1号防腐木栈道").arg(task);
        call(a, session, QStringLiteral("listsavingtaskbeginforperson"),
             {{"qiyeID", -1}, {"mark", "0"}, {"taskid", task}, {"qdcount", "1"}, {"bzqdkid", "1"}, {"zjid", ""}});
        QElapsedTimer clock;
        clock.start();
        const QJsonObject bill{{"guidb", "g"}, {"qdbh", "010101001001"}, {"xmmc", name}, {"jldw", "m2"}, {"zhdj", 3.5}};
        call(a, session, QStringLiteral("uploadsavingtaskbills"), {{"taskid", task}, {"bills", QJsonArray{bill}}});
        const double saved = clock.nsecsElapsed() / 1e6;
        while (!matches(b, session, name) && clock.elapsed() < 10000)
            QThread::msleep(1);
        latencies.push_back(clock.nsecsElapsed() / 1e6 - saved);
    }
    std::printf("| rounds | p50 ms | p90 ms | max ms |\n|-------:|-------:|-------:|-------:|\n| %6d | %6.1f | %6.1f | %6.1f |\n",
                rounds, percentile(latencies, 0.5), percentile(latencies, 0.9), percentile(latencies, 1.0));
    return 0;
}
