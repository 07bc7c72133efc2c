#include "benchutil.h"
#include "corpusgenerator.h"

#include <service/matching/rerankweights.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <limits>
#include <memory>

// velora-match-bench <bills> [queries]: builds a synthetic corpus and times
// top-10 queries of both kinds the service sends, on one thread.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList args = app.arguments();
    const int bills = args.value(1).toInt();
    const int queries = args.size() > 2 ? args.at(2).toInt() : 2000;
    if (bills <= 0 || queries <= 0) {
        QTextStream(stderr) << "usage: velora-match-bench <bills> [queries]\n";
        return 2;
    }
    CorpusGenerator gen;
    QString error;
    if (!gen.load(BenchUtil::dataDir(), &error)) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    const double rss0 = BenchUtil::rssMiB();
    // Weights and budget first, as the service sets them: each setting
    // later copies the whole index.
    auto index = std::make_unique<BillIndex>();
    RerankWeights weights;
    if (!qEnvironmentVariableIsSet("VELORA_MATCH_TEXT_ONLY") && !weights.loadShipped(&error)) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    index->setRerankWeights(weights);
    if (qEnvironmentVariableIsSet("VELORA_MATCH_BUDGET"))
        index->setCandidateBudget(qEnvironmentVariableIntValue("VELORA_MATCH_BUDGET"));
    QElapsedTimer t;
    t.start();
    quint64 checksum = 0;
    for (int i = 0; i < bills; ++i) {
        BillRecord r = gen.next(i);
        checksum = BenchUtil::corpusChecksum(checksum, r);
        index->add(std::move(r));
    }
    const qint64 genMs = t.restart();
    index->build();
    const qint64 buildMs = t.elapsed();
    // The service hands the build's freed memory back after loading.
    BenchUtil::releaseFreedMemory();
    out << QStringLiteral("bills %1: generate+add %2 ms, build %3 ms, RSS %4 MiB (index %5 MiB), peak %6 MiB\n")
               .arg(bills).arg(genMs).arg(buildMs).arg(BenchUtil::rssMiB(), 0, 'f', 0)
               .arg(BenchUtil::rssMiB() - rss0, 0, 'f', 0).arg(BenchUtil::peakRssMiB(), 0, 'f', 0);
    out << QStringLiteral("corpus checksum %1\n").arg(checksum, 16, 16, QLatin1Char('0'));
    out << QStringLiteral("index bytes per bill %1\n").arg((BenchUtil::rssMiB() - rss0) * 1048576.0 / bills, 0, 'f', 0);

    gen.reseed(7);
    QVector<BillQuery> full, features;
    for (int i = 0; i < queries; ++i) {
        BillQuery q = gen.nextQuery();
        full << q;
        // Feature matching: name and features, a page, sometimes chosen projects or a keyword.
        BillQuery f;
        f.name = q.name;
        f.features = q.features;
        f.offset = 10 * (i % 3);
        if (i % 4 == 1)
            f.projectIds = QStringList{QStringLiteral("p%1").arg(i % 2000), QStringLiteral("p%1").arg((i * 7) % 2000)};
        if (i % 10 == 3)
            f.keyword = q.name.left(2);
        features << f;
    }
    QVector<double> fullMs, featureMs, fullCpu, featureCpu;
    int found = 0;
    for (int round = 0; round < 2; ++round) {
        for (const BillQuery &q : full) {
            t.restart();
            const double c0 = BenchUtil::threadCpuMs();
            found += index->query(q).isEmpty() ? 0 : 1;
            if (round) {
                fullMs << t.nsecsElapsed() / 1e6;
                fullCpu << BenchUtil::threadCpuMs() - c0;
            }
        }
        for (const BillQuery &q : features) {
            t.restart();
            const double c0 = BenchUtil::threadCpuMs();
            int total = 0;
            index->query(q, &total);
            if (round) {
                featureMs << t.nsecsElapsed() / 1e6;
                featureCpu << BenchUtil::threadCpuMs() - c0;
            }
        }
    }
    out << QStringLiteral("getppqd  (code+name+unit+features+work, top 10): %1\n").arg(BenchUtil::summary(fullMs));
    out << QStringLiteral("MatchQdtz (name+features, pages 1-3, filters):  %1\n").arg(BenchUtil::summary(featureMs));
    out << QStringLiteral("getppqd  thread CPU time:                        %1\n").arg(BenchUtil::summary(fullCpu));
    out << QStringLiteral("MatchQdtz thread CPU time:                       %1\n").arg(BenchUtil::summary(featureCpu));
    out << QStringLiteral("queries with a result: %1 of %2\n").arg(found).arg(2 * queries);

    // What the work budget costs: the same queries read every posting.
    const int checked = std::min(queries, 300);
    QVector<QVector<BillMatch>> budgeted;
    for (int i = 0; i < checked; ++i)
        budgeted << index->query(full[i]);
    index->setCandidateBudget(std::numeric_limits<int>::max());
    int sameTop1 = 0, overlap = 0, slotCount = 0;
    QVector<double> exhaustiveMs;
    for (int i = 0; i < checked; ++i) {
        t.restart();
        const auto all = index->query(full[i]);
        exhaustiveMs << t.nsecsElapsed() / 1e6;
        sameTop1 += !all.isEmpty() && !budgeted[i].isEmpty() && all[0].id == budgeted[i][0].id;
        for (const BillMatch &m : all) {
            ++slotCount;
            for (const BillMatch &b : budgeted[i])
                overlap += b.id == m.id;
        }
    }
    out << QStringLiteral("budget vs exhaustive on %1 getppqd queries: same top-1 %2%, top-10 overlap %3%; exhaustive %4\n")
               .arg(checked).arg(100.0 * sameTop1 / checked, 0, 'f', 1).arg(slotCount ? 100.0 * overlap / slotCount : 0.0, 0, 'f', 1)
               .arg(BenchUtil::summary(exhaustiveMs));
    return 0;
}
