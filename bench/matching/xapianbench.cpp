// Xapian must come before any Qt header (it uses the word "slots").
#include <xapian.h>

#include "benchutil.h"
#include "corpusgenerator.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <string>
#include <vector>

// velora-match-xapian <bills> [queries]: the same corpus and queries as
// velora-match-bench, answered by Xapian (CJK n-grams, code/unit/source as
// terms), as a plain OR and through an elite set.
namespace {

std::string utf8(const QString &s)
{
    return s.toStdString();
}

Xapian::Document toDocument(const BillRecord &r, Xapian::TermGenerator &tg)
{
    Xapian::Document doc;
    tg.set_document(doc);
    tg.index_text(utf8(r.name + QLatin1Char('\n') + r.features + QLatin1Char('\n') + r.workContent));
    if (r.code.size() >= 9) {
        doc.add_term(utf8(QStringLiteral("XC") + r.code.left(9)), 4);
        doc.add_term(utf8(QStringLiteral("XK") + r.code.left(6)), 1);
    }
    if (!r.unit.isEmpty())
        doc.add_boolean_term(utf8(QStringLiteral("XU") + r.unit));
    doc.add_boolean_term(r.source == 1 ? "XS1" : "XS2");
    doc.set_data(std::to_string(r.id));
    return doc;
}

// The query's terms are made by the same term generator as the documents'
// (CJK n-grams), which avoids query-syntax surprises in bill text.
Xapian::Query textQuery(const BillQuery &q, Xapian::TermGenerator &tg, bool elite)
{
    Xapian::Document scratch;
    tg.set_document(scratch);
    tg.index_text(utf8(q.name + QLatin1Char('\n') + q.features + QLatin1Char('\n') + q.workContent));
    std::vector<std::string> terms(scratch.termlist_begin(), scratch.termlist_end());
    if (q.code.size() >= 9) {
        terms.push_back(utf8(QStringLiteral("XC") + q.code.left(9)));
        terms.push_back(utf8(QStringLiteral("XK") + q.code.left(6)));
    }
    if (elite)
        return Xapian::Query(Xapian::Query::OP_ELITE_SET, terms.begin(), terms.end(), 20);
    return Xapian::Query(Xapian::Query::OP_OR, terms.begin(), terms.end());
}

} // namespace

int run(int argc, char **argv);

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const Xapian::Error &e) {
        QTextStream(stderr) << QString::fromStdString(e.get_description()) << '\n';
        return 1;
    }
}

int run(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList args = app.arguments();
    const int bills = args.value(1).toInt();
    const int queries = args.size() > 2 ? args.at(2).toInt() : 500;
    // A plain OR reads every posting of every term: at 1M bills a few
    // hundred queries take minutes.
    const int plainQueries = args.size() > 3 ? std::min(queries, args.at(3).toInt()) : queries;
    if (bills <= 0 || queries <= 0 || plainQueries <= 0) {
        QTextStream(stderr) << "usage: velora-match-xapian <bills> [queries] [plain OR queries]\n";
        return 2;
    }
    CorpusGenerator gen;
    QString error;
    if (!gen.load(BenchUtil::dataDir(), &error)) {
        QTextStream(stderr) << error << '\n';
        return 1;
    }
    QTemporaryDir dir;
    const double rss0 = BenchUtil::rssMiB();
    QElapsedTimer t;
    t.start();
    quint64 checksum = 0;
    {
        Xapian::WritableDatabase db(utf8(dir.path() + QStringLiteral("/db")), Xapian::DB_CREATE_OR_OPEN);
        Xapian::TermGenerator tg;
        tg.set_flags(Xapian::TermGenerator::FLAG_CJK_NGRAM);
        for (int i = 0; i < bills; ++i) {
            const BillRecord r = gen.next(i);
            checksum = BenchUtil::corpusChecksum(checksum, r);
            db.add_document(toDocument(r, tg));
        }
        db.commit();
    }
    out << QStringLiteral("xapian bills %1: index %2 ms, RSS %3 MiB (+%4), peak %5 MiB\n")
               .arg(bills).arg(t.elapsed()).arg(BenchUtil::rssMiB(), 0, 'f', 0).arg(BenchUtil::rssMiB() - rss0, 0, 'f', 0)
               .arg(BenchUtil::peakRssMiB(), 0, 'f', 0);
    out << QStringLiteral("corpus checksum %1\n").arg(checksum, 16, 16, QLatin1Char('0'));
    out << QStringLiteral("database bytes per bill %1\n").arg(double(BenchUtil::directoryBytes(dir.path())) / bills, 0, 'f', 0);

    Xapian::Database db(utf8(dir.path() + QStringLiteral("/db")));
    Xapian::TermGenerator qtg;
    qtg.set_flags(Xapian::TermGenerator::FLAG_CJK_NGRAM);
    gen.reseed(7);
    QVector<BillQuery> full;
    for (int i = 0; i < queries; ++i)
        full << gen.nextQuery();
    for (bool elite : {false, true}) {
        Xapian::Enquire enquire(db);
        QVector<double> ms, cpu;
        const int count = elite ? queries : plainQueries;
        for (int round = 0; round < 2; ++round)
            for (int i = 0; i < count; ++i) {
                t.restart();
                const double c0 = BenchUtil::threadCpuMs();
                enquire.set_query(textQuery(full[i], qtg, elite));
                const Xapian::MSet m = enquire.get_mset(0, 10);
                if (round) {
                    ms << t.nsecsElapsed() / 1e6;
                    cpu << BenchUtil::threadCpuMs() - c0;
                }
                (void)m.size();
            }
        const QString kind = elite ? QStringLiteral("elite set 20") : QStringLiteral("plain OR   ");
        out << QStringLiteral("xapian %1 (getppqd queries, top 10): %2\n").arg(kind, BenchUtil::summary(ms));
        out << QStringLiteral("xapian %1 thread CPU time:            %2\n").arg(kind, BenchUtil::summary(cpu));
    }
    out << QStringLiteral("RSS after queries %1 MiB\n").arg(BenchUtil::rssMiB(), 0, 'f', 0);
    return 0;
}
