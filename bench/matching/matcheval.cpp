#include <service/matching/matchevaluation.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

// velora-match-eval <book.json>...: leave-one-out ranking quality per book.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    const QStringList files = app.arguments().mid(1);
    if (files.isEmpty()) {
        err << "usage: velora-match-eval <book.json>...\n";
        return 2;
    }
    MatchEvaluation::Result sum;
    int failed = 0;
    out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7\n").arg(QStringLiteral("book"), -36).arg(QStringLiteral("bills"), 6)
               .arg(QStringLiteral("ceil"), 6).arg(QStringLiteral("top1"), 6).arg(QStringLiteral("top10"), 6)
               .arg(QStringLiteral("base1"), 6).arg(QStringLiteral("base10"), 6);
    auto row = [&out](const QString &name, const MatchEvaluation::Result &r) {
        out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7\n").arg(name, -36).arg(r.bills, 6).arg(r.ceiling, 6).arg(r.top1, 6)
                   .arg(r.top10, 6).arg(r.baselineTop1, 6).arg(r.baselineTop10, 6);
    };
    for (const QString &file : files) {
        QString error;
        const auto items = MatchEvaluation::loadBook(file, &error);
        if (!error.isEmpty()) {
            err << error << '\n';
            ++failed;
            continue;
        }
        const auto r = MatchEvaluation::evaluate(items);
        row(QFileInfo(file).fileName(), r);
        sum.bills += r.bills;
        sum.ceiling += r.ceiling;
        sum.top1 += r.top1;
        sum.top10 += r.top10;
        sum.baselineTop1 += r.baselineTop1;
        sum.baselineTop10 += r.baselineTop10;
    }
    row(QStringLiteral("all"), sum);
    return failed ? 1 : 0;
}
