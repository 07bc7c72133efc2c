// velora-cloud under hostile or heavy load, measured from outside: the
// program starts its own velora-cloud process on a fresh data folder
// (minimal seed, real password cost) and talks raw HTTP/1.1 to it.
//
//   bench_hostile [--cloud PATH] [--mode slow|flood|upload|memory|mixed|all] [--seconds 10] [--bills 2000]
//                 [--seed full|minimal]
//
//   slow    32 clients that stall mid-header and mid-body (reconnecting when
//           dropped) while a probe times /health and a logged-in request
//   flood   32 clients sending wrong passwords back to back, same probe
//   upload  a 2,000-bill upload while 8 clients send "getppqd"; their
//           latency during the upload (full seed unless --seed minimal)
//   memory  the server's RSS after uploads, a library delete and re-uploads,
//           against 64 MB + 3 KiB per stored bill
//   mixed   50 logged-in clients (server list and "getppqd") beside 32 slow
//           and 32 wrong-password clients: errors and latency
#include "../matching/benchutil.h"
#include "../matching/corpusgenerator.h"

#include <service/serviceseed.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

namespace {

std::atomic<bool> g_stop{false};

int connectTo(quint16 port, int timeoutMs)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    timeval tv{timeoutMs / 1000, (timeoutMs % 1000) * 1000};
    ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &tv, sizeof tv);
    ::setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &tv, sizeof tv);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(port);
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<sockaddr *>(&addr), sizeof addr) != 0) {
        ::close(fd);
        return -1;
    }
    return fd;
}

struct Reply {
    int status = 0;
    QJsonObject json;
    double ms = 0;
};

// One request on its own connection ("Connection: close").
Reply exchange(quint16 port, const QByteArray &request, int timeoutMs = 60000)
{
    QElapsedTimer clock;
    clock.start();
    Reply r;
    const int fd = connectTo(port, timeoutMs);
    if (fd < 0)
        return r;
    ::send(fd, request.constData(), size_t(request.size()), MSG_NOSIGNAL);
    QByteArray data;
    char buffer[65536];
    for (ssize_t n; (n = ::recv(fd, buffer, sizeof buffer, 0)) > 0;)
        data.append(buffer, int(n));
    ::close(fd);
    r.ms = clock.nsecsElapsed() / 1e6;
    if (data.startsWith("HTTP/1.1 ")) {
        r.status = data.mid(9, 3).toInt();
        r.json = QJsonDocument::fromJson(data.mid(data.indexOf("\r\n\r\n") + 4)).object();
    }
    return r;
}

Reply call(quint16 port, const QString &session, const QString &token, const QJsonObject &data)
{
    const QByteArray body = QJsonDocument(QJsonObject{{"cmd", "cloudSoft"}, {"app_type", 1}, {"orgin_token", token},
                                                      {"data", data}})
                                .toJson(QJsonDocument::Compact);
    return exchange(port, "POST /cloud HTTP/1.1\r\nHost: b\r\nConnection: close\r\nX-Velora-Session: " + session.toUtf8()
                              + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
}

QString summary(std::vector<double> ms)
{
    if (ms.empty())
        return QStringLiteral("no replies");
    std::sort(ms.begin(), ms.end());
    auto at = [&](double q) { return ms[std::min(ms.size() - 1, size_t(q * double(ms.size())))]; };
    return QStringLiteral("n %1, p50 %2 ms, p99 %3 ms, max %4 ms")
        .arg(ms.size())
        .arg(at(0.5), 0, 'f', 1)
        .arg(at(0.99), 0, 'f', 1)
        .arg(ms.back(), 0, 'f', 1);
}

class Cloud
{
public:
    bool start(const QString &binary, const QString &dataDir, const QString &seed)
    {
        m_process.setProgram(binary);
        m_process.setArguments({"--data", dataDir, "--seed", seed, "--listen", "127.0.0.1:0"});
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        static const QRegularExpression serving(QStringLiteral("serving http://127\\.0\\.0\\.1:(\\d+)/cloud"));
        QByteArray out;
        while (m_process.waitForReadyRead(30000)) {
            out += m_process.readAllStandardOutput();
            const QRegularExpressionMatch m = serving.match(QString::fromUtf8(out));
            if (m.hasMatch()) {
                port = quint16(m.captured(1).toInt());
                return true;
            }
        }
        return false;
    }
    ~Cloud()
    {
        m_process.terminate();
        m_process.waitForFinished(30000);
    }
    double rssMiB() const
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
        status.open(QIODevice::ReadOnly);
        for (const QByteArray &line : status.readAll().split('\n'))
            if (line.startsWith("VmRSS:"))
                return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
        return 0;
    }
    quint16 port = 0;

private:
    QProcess m_process;
};

QString login(quint16 port)
{
    return call(port, QString(), "kv_token", {{"method", "login"}, {"username", ServiceSeed::DemoUser}, {"password", ServiceSeed::DemoPassword}})
        .json.value("data").toObject().value("session").toString();
}

// Probes /health and the server list every 50 ms until stopped.
void probe(quint16 port, const QString &session, std::vector<double> *health, std::vector<double> *list, int *failed)
{
    while (!g_stop) {
        const Reply h = exchange(port, "GET /health HTTP/1.1\r\nHost: b\r\nConnection: close\r\n\r\n");
        const Reply l = call(port, session, "kv_token", {{"method", "getserverlist"}});
        h.status == 200 ? health->push_back(h.ms) : void(++*failed);
        l.json.value("code").toInt(-1) == 0 ? list->push_back(l.ms) : void(++*failed);
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
}

void slowClient(quint16 port, bool midBody)
{
    const QByteArray start = midBody ? "POST /cloud HTTP/1.1\r\nHost: b\r\nContent-Length: 1000\r\n\r\n{\"cmd\""
                                     : "POST /cloud HTTP/1.1\r\nHost: b\r\nX-Velo";
    while (!g_stop) {
        const int fd = connectTo(port, 1000);
        if (fd < 0)
            continue;
        bool open = ::send(fd, start.constData(), size_t(start.size()), MSG_NOSIGNAL) > 0;
        while (open && !g_stop) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1000));
            open = ::send(fd, "a", 1, MSG_NOSIGNAL) > 0;
            char c;
            if (::recv(fd, &c, 1, MSG_DONTWAIT) == 0)
                open = false;
        }
        ::close(fd);
    }
}

void floodClient(quint16 port, std::atomic<int> *refused, std::atomic<int> *wrong)
{
    while (!g_stop) {
        const Reply r = call(port, QString(), "kv_token", {{"method", "login"}, {"username", "demo"}, {"password", "guess"}});
        (r.json.value("code").toInt() == 7 ? *refused : *wrong) += 1;
    }
}

int underAttack(quint16 port, const QString &mode, int seconds)
{
    const QString session = login(port);
    std::vector<std::thread> attackers;
    std::atomic<int> refused{0}, wrong{0};
    g_stop = false;
    for (int i = 0; i < 32; ++i)
        attackers.emplace_back(mode == "slow" ? std::thread(slowClient, port, i % 2 == 1)
                                              : std::thread(floodClient, port, &refused, &wrong));
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    std::vector<double> health, list;
    int failed = 0;
    std::thread prober(probe, port, session, &health, &list, &failed);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    g_stop = true;
    prober.join();
    for (std::thread &t : attackers)
        t.join();
    std::printf("%s: /health %s\n%s: getserverlist %s\n%s: probe failures %d\n", qPrintable(mode),
                qPrintable(summary(health)), qPrintable(mode), qPrintable(summary(list)), qPrintable(mode), failed);
    if (mode == "flood")
        std::printf("flood: wrong-password replies %d, throttled replies %d\n", wrong.load(), refused.load());
    return 0;
}

// A bill's composition as the module sends it: a few quota lines.
QString composition(const BillRecord &r, int lines)
{
    QJsonArray rows;
    for (int i = 0; i < lines; ++i)
        rows.append(QJsonObject{{"debh", QStringLiteral("A%1-%2").arg(i + 1).arg(r.id % 97)}, {"demc", QString(r.name + r.features.left(60))},
                                {"dw", r.unit}, {"gcl", 1.5 * i}, {"rgf", 12.5}, {"clf", 88.25}, {"jxf", 3.0}, {"glf", 7.7},
                                {"lr", 4.4}, {"zhdj", 116.0 + i}});
    return QString::fromUtf8(QJsonDocument(QJsonObject{{"zjnr", rows}}).toJson(QJsonDocument::Compact));
}

QJsonObject matchRequest(const BillRecord &q)
{
    const QJsonObject bill{{"qdbh", q.code}, {"xmmc", q.name}, {"xmtz", q.features}, {"dw", q.unit}};
    return QJsonObject{{"method", "getppqd"}, {"usetype", "1"}, {"ltdID", -1}, {"tagNum", 5},
                       {"cond", QJsonObject{{"qdly", 3}}}, {"data", QJsonArray{bill}}};
}

// 50 logged-in clients alternating the server list and "getppqd", while 32
// slow clients and 32 wrong-password clients run against the same server.
int mixed(quint16 port, CorpusGenerator &corpus, int seconds)
{
    const QString session = login(port);
    std::atomic<int> refused{0}, wrong{0}, errors{0};
    std::mutex mutex;
    std::vector<double> latencies;
    g_stop = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 32; ++i) {
        threads.emplace_back(slowClient, port, i % 2 == 1);
        threads.emplace_back(floodClient, port, &refused, &wrong);
    }
    for (int i = 0; i < 50; ++i)
        threads.emplace_back([&, i] {
            CorpusGenerator own = corpus;
            own.reseed(quint64(100 + i));
            for (int n = 0; !g_stop; ++n) {
                const Reply r = n % 2 ? call(port, session, "kv_token", {{"method", "getserverlist"}})
                                      : call(port, session, "kv_token_user", matchRequest(own.next(0)));
                std::lock_guard<std::mutex> lock(mutex);
                if (r.json.value("code").toInt(-1) == 0)
                    latencies.push_back(r.ms);
                else if (!g_stop)
                    ++errors;
            }
        });
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    g_stop = true;
    for (std::thread &t : threads)
        t.join();
    std::printf("mixed: %d s, 50 clients: %s, errors %d; flood: %d wrong, %d throttled\n", seconds,
                qPrintable(summary(latencies)), errors.load(), wrong.load(), refused.load());
    return 0;
}

QJsonArray billsJson(CorpusGenerator &corpus, int count, qint64 firstId)
{
    QJsonArray bills;
    for (int i = 0; i < count; ++i) {
        const BillRecord r = corpus.next(firstId + i);
        bills.append(QJsonObject{{"guidb", QString::number(firstId + i)}, {"qdbh", QString(r.code + QLatin1String("001"))}, {"xmmc", r.name},
                                 {"jldw", r.unit}, {"xmtz", r.features}, {"gznr", r.workContent}, {"zhdj", 100 + i % 50},
                                 {"zjnr", composition(r, 6)}});
    }
    return bills;
}

// Uploads `count` bills into personal library `library` in one request.
Reply upload(quint16 port, const QString &session, const QString &library, const QJsonArray &bills)
{
    static int task = 0;
    const QString id = QStringLiteral("bench-%1").arg(++task);
    call(port, session, "kv_token_user", {{"method", "listsavingtaskbeginforperson"}, {"qiyeID", -1}, {"mark", "0"},
                                          {"taskid", id}, {"qdcount", QString::number(bills.size())}, {"bzqdkid", library},
                                          {"zjid", ""}});
    return call(port, session, "kv_token_user", {{"method", "uploadsavingtaskbills"}, {"taskid", id}, {"bills", bills}});
}

QString newLibrary(quint16 port, const QString &session, const QString &name)
{
    return call(port, session, "kv_token_user",
                {{"method", "editNZQDK"}, {"czlx", 0}, {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", name}}}})
        .json.value("data").toObject().value("id").toString();
}

int uploadStall(quint16 port, CorpusGenerator &corpus, int count)
{
    const QString session = login(port);
    const QString library = newLibrary(port, session, "bench");
    upload(port, session, library, billsJson(corpus, count, 1)); // the index already holds bills
    const QJsonArray bills = billsJson(corpus, count, 100000);
    std::mutex mutex;
    std::vector<double> during;
    std::atomic<bool> uploading{false};
    g_stop = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < 8; ++i)
        readers.emplace_back([&, i] {
            CorpusGenerator own = corpus;
            own.reseed(quint64(7 + i));
            while (!g_stop) {
                const Reply r = call(port, session, "kv_token_user", matchRequest(own.next(0)));
                if (uploading) {
                    std::lock_guard<std::mutex> lock(mutex);
                    during.push_back(r.json.value("code").toInt(-1) == 0 ? r.ms : 1e9);
                }
            }
        });
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    uploading = true;
    const Reply up = upload(port, session, library, bills);
    uploading = false;
    g_stop = true;
    for (std::thread &t : readers)
        t.join();
    std::printf("upload: %d bills in %.0f ms (saved %d); getppqd during it: %s\n", count, up.ms,
                up.json.value("data").toObject().value("saved").toInt(), qPrintable(summary(during)));
    return 0;
}

int memory(const Cloud &cloud, CorpusGenerator &corpus, int count)
{
    const quint16 port = cloud.port;
    const QString session = login(port);
    int stored = 0;
    auto report = [&](const char *step) {
        const double bar = 64.0 + 3.0 * stored / 1024.0;
        std::printf("memory: %-24s stored %6d  RSS %7.1f MiB  bar %6.1f MiB  %s\n", step, stored, cloud.rssMiB(), bar,
                    cloud.rssMiB() <= bar ? "ok" : "OVER");
    };
    auto store = [&](const QString &library, qint64 firstId) {
        const Reply r = upload(port, session, library, billsJson(corpus, count, firstId));
        stored += r.json.value("data").toObject().value("saved").toInt();
    };
    report("started, logged in");
    QStringList libraries;
    for (int round = 0; round < 5; ++round) {
        libraries << newLibrary(port, session, QStringLiteral("mem%1").arg(round));
        store(libraries.last(), 1 + round * count);
        report(qPrintable(QStringLiteral("upload %1").arg(round + 1)));
    }
    for (const QString &library : libraries)
        call(port, session, "kv_token_user", {{"method", "editNZQDK"}, {"czlx", 2}, {"para", QJsonObject{{"qdkid", library}}}});
    stored = 0;
    report("all libraries deleted");
    for (int round = 0; round < 2; ++round) {
        const QString library = newLibrary(port, session, QStringLiteral("again%1").arg(round));
        store(library, 900000 + round * count);
        report(qPrintable(QStringLiteral("re-upload %1").arg(round + 1)));
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QString binary = QStringLiteral(VELORA_CLOUD_BIN), mode = QStringLiteral("all");
    QString seed = QStringLiteral("full");
    int seconds = 10, count = 2000;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == "--cloud")
            binary = args[i + 1];
        else if (args[i] == "--mode")
            mode = args[i + 1];
        else if (args[i] == "--seconds")
            seconds = args[i + 1].toInt();
        else if (args[i] == "--seed")
            seed = args[i + 1];
        else if (args[i] == "--bills")
            count = args[i + 1].toInt();
    }
    CorpusGenerator corpus;
    QString error;
    if (!corpus.load(BenchUtil::dataDir(), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    for (const QString m : {"slow", "flood", "upload", "memory", "mixed"}) {
        if (mode != "all" && mode != m)
            continue;
        QTemporaryDir dir;
        Cloud cloud;
        if (!cloud.start(binary, dir.path(), m == "upload" ? seed : QStringLiteral("minimal"))) {
            std::fprintf(stderr, "cannot start %s\n", qPrintable(binary));
            return 1;
        }
        if (m == "slow" || m == "flood")
            underAttack(cloud.port, m, seconds);
        else if (m == "upload")
            uploadStall(cloud.port, corpus, count);
        else if (m == "mixed")
            mixed(cloud.port, corpus, seconds);
        else
            memory(cloud, corpus, count);
    }
    return 0;
}
