#include <service/matching/matchevaluation.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

// velora-match-eval [--write-weights <file>] <book.json>...: leave-one-out
// ranking quality per book; the re-ranking weights tested on a book are
// learned on the other books only. --write-weights stores the weights learned
// on all of them.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    QStringList files = app.arguments().mid(1);
    QString weightsFile;
    if (files.size() >= 2 && files.first() == QLatin1String("--write-weights")) {
        weightsFile = files.at(1);
        files = files.mid(2);
    }
    if (files.size() < 2) {
        err << "usage: velora-match-eval [--write-weights <file>] <book.json> <book.json>...\n";
        return 2;
    }
    QVector<QVector<MatchEvaluation::Item>> books;
    QVector<MatchEvaluation::Counts> counts;
    for (const QString &file : files) {
        QString error;
        MatchEvaluation::Counts c;
        books << MatchEvaluation::loadBook(file, &error, &c);
        counts << c;
        if (!error.isEmpty()) {
            err << error << '\n';
            return 1;
        }
    }
    RerankWeights all;
    const QVector<MatchEvaluation::Result> results = MatchEvaluation::crossValidate(books, &all);
    const QStringList head = {QStringLiteral("confirmed"), QStringLiteral("candidate"), QStringLiteral("ceil"),
                              QStringLiteral("text1"), QStringLiteral("text10"), QStringLiteral("cv1"),
                              QStringLiteral("cv10"), QStringLiteral("base1"), QStringLiteral("base10")};
    out << QStringLiteral("%1").arg(QStringLiteral("book"), -34);
    for (const QString &h : head)
        out << QStringLiteral(" %1").arg(h, 9);
    out << '\n';
    auto row = [&out](const QString &name, const MatchEvaluation::Counts &c, const MatchEvaluation::Result &r) {
        out << QStringLiteral("%1").arg(name, -34);
        for (int v : {c.confirmed, c.unconfirmed, r.ceiling, r.top1, r.top10, r.rerankTop1, r.rerankTop10,
                      r.baselineTop1, r.baselineTop10})
            out << QStringLiteral(" %1").arg(v, 9);
        out << '\n';
    };
    MatchEvaluation::Result sum;
    MatchEvaluation::Counts total;
    for (int i = 0; i < files.size(); ++i) {
        row(QFileInfo(files[i]).completeBaseName(), counts[i], results[i]);
        sum += results[i];
        total.confirmed += counts[i].confirmed;
        total.unconfirmed += counts[i].unconfirmed;
    }
    row(QStringLiteral("all"), total, sum);
    out << "weights learned on all books:";
    for (int k = 0; k < all.weights().size(); ++k)
        out << ' ' << RerankWeights::featureNames().at(k) << '=' << QString::number(all.weights()[k], 'f', 3);
    out << '\n';
    if (!weightsFile.isEmpty()) {
        QFile f(weightsFile);
        if (!f.open(QIODevice::WriteOnly) || f.write(all.toJson(QStringLiteral("listwise logistic, learned on %1 books")
                                                                    .arg(files.size()))) < 0) {
            err << "cannot write " << weightsFile << ": " << f.errorString() << '\n';
            return 1;
        }
    }
    return 0;
}
