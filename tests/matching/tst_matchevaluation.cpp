#include "hosttestcase.h"

#include <service/matching/matchevaluation.h>

#include <QtTest>

class TestMatchEvaluation : public HostTestCase
{
    Q_OBJECT
private slots:
    void beatsBaselineOnRealBook()
    {
        const QString path = qEnvironmentVariable("VELORA_DATA_DIR") + QStringLiteral("/project-bills/jiangsu-installation-2014.json");
        QString error;
        const auto items = MatchEvaluation::loadBook(path, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(items.size(), 200);
        const auto r = MatchEvaluation::evaluate(items);
        QCOMPARE(r.bills, 200);
        QVERIFY(r.ceiling > 0 && r.ceiling < r.bills);
        QVERIFY(r.top1 <= r.top10 && r.top10 <= r.ceiling);
        QVERIFY2(r.top1 > r.baselineTop1, qPrintable(QStringLiteral("engine %1, baseline %2").arg(r.top1).arg(r.baselineTop1)));
        QVERIFY(r.top10 >= r.baselineTop10);
    }

    void smallBookCounts()
    {
        // Two pipes share a quota set, the lamp stands alone.
        QVector<MatchEvaluation::Item> items(3);
        items[0] = {QStringLiteral("塑料管"), QStringLiteral("塑料管 PPR DN25 热熔连接"), {}, {}, {QStringLiteral("10-1")}};
        items[1] = {QStringLiteral("塑料管"), QStringLiteral("塑料管 PPR DN25 热熔"), {}, {}, {QStringLiteral("10-1")}};
        items[2] = {QStringLiteral("灯具"), QStringLiteral("灯具 吸顶灯"), {}, {}, {QStringLiteral("4-7")}};
        const auto r = MatchEvaluation::evaluate(items);
        QCOMPARE(r.ceiling, 2);
        QCOMPARE(r.top1, 2);
        QCOMPARE(r.baselineTop1, 2);
    }

    void badFileIsReported()
    {
        QString error;
        QVERIFY(MatchEvaluation::loadBook(fx->appDir() + QStringLiteral("/none.json"), &error).isEmpty());
        QVERIFY(error.contains(QStringLiteral("cannot open")));
        QFile f(fx->appDir() + QStringLiteral("/bad.json"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("[1,2]");
        f.close();
        error.clear();
        QVERIFY(MatchEvaluation::loadBook(f.fileName(), &error).isEmpty());
        QVERIFY(error.contains(QStringLiteral("not a book file")));
    }
};

QTEST_GUILESS_MAIN(TestMatchEvaluation)
#include "tst_matchevaluation.moc"
