#include "benchutil.h"
#include "corpusgenerator.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

// velora-index-stall [bills] [readers]: an index of `bills` synthetic bills
// (default 30000) queried back to back by `readers` threads (default 4)
// while 2,000 bills are added and built, then removed and built, three times.
// Prints the latency of the queries that ran beside a build and of those
// that did not: how long a reader waits for a writer.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList args = app.arguments();
    const int bills = args.size() > 1 ? args.at(1).toInt() : 30000;
    const int readers = args.size() > 2 ? args.at(2).toInt() : 4;
    CorpusGenerator gen;
    QString error;
    if (bills <= 0 || readers <= 0 || !gen.load(BenchUtil::dataDir(), &error)) {
        QTextStream(stderr) << "usage: velora-index-stall [bills] [readers] " << error << '\n';
        return 2;
    }
    BillIndex index;
    for (int i = 0; i < bills; ++i)
        index.add(gen.next(i));
    index.build();
    std::vector<BillQuery> queries;
    for (int i = 0; i < 500; ++i)
        queries.push_back(gen.nextQuery());

    std::atomic<bool> stop{false}, building{false};
    std::mutex mutex;
    QVector<double> during, idle;
    std::vector<std::thread> threads;
    for (int t = 0; t < readers; ++t)
        threads.emplace_back([&, t] {
            for (size_t i = size_t(t); !stop; i = (i + 1) % queries.size()) {
                const bool overlapped = building;
                QElapsedTimer one;
                one.start();
                index.query(queries[i]);
                const double ms = one.nsecsElapsed() / 1e6;
                std::lock_guard<std::mutex> lock(mutex);
                (overlapped || building ? during : idle).append(ms);
            }
        });
    // size() takes the queries' lock and does nothing else: its latency is
    // the wait for a writer (plus scheduling noise).
    QVector<double> lockWaits;
    threads.emplace_back([&] {
        while (!stop) {
            QElapsedTimer one;
            one.start();
            index.size();
            const double ms = one.nsecsElapsed() / 1e6;
            if (building) {
                std::lock_guard<std::mutex> lock(mutex);
                lockWaits.append(ms);
            }
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    });
    QVector<double> builds;
    for (int round = 0; round < 3; ++round) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        std::vector<BillRecord> batch;
        for (int i = 0; i < 2000; ++i)
            batch.push_back(gen.next(1000000 + round * 2000 + i));
        QElapsedTimer t;
        building = true;
        t.start();
        for (const BillRecord &r : batch)
            index.add(r);
        index.build();
        builds.append(t.nsecsElapsed() / 1e6);
        building = false;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        building = true;
        t.restart();
        for (const BillRecord &r : batch)
            index.remove(r.id);
        index.build();
        builds.append(t.nsecsElapsed() / 1e6);
        building = false;
    }
    stop = true;
    for (std::thread &th : threads)
        th.join();
    out << bills << " bills, " << readers << " readers\n"
        << "add/remove 2,000 + build: " << BenchUtil::summary(builds) << '\n'
        << "queries beside a build:   " << BenchUtil::summary(during) << '\n'
        << "queries otherwise:        " << BenchUtil::summary(idle) << '\n'
        << "lock wait beside a build: " << BenchUtil::summary(lockWaits) << '\n';
    return 0;
}
