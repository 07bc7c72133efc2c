#include "hosttestcase.h"

#include <service/matching/billindex.h>
#include <service/matching/matchevaluation.h>

#include <QtTest>

#include <thread>

Q_DECLARE_METATYPE(QList<BillRecord>)
Q_DECLARE_METATYPE(BillQuery)

namespace {

BillRecord bill(qint64 id, const QString &name, const QString &features, const QString &code = QString(),
                const QString &unit = QString(), int source = 1, const QString &project = QString())
{
    return BillRecord{id, source, project, QString(), code, name, unit, features, QString(), id * 100, {}};
}

BillRecord scoped(BillRecord r, const QString &scope, const QString &workContent = QString())
{
    r.scope = scope;
    r.workContent = workContent;
    return r;
}

BillQuery ask(const QString &name, const QString &features = QString(), const QString &code = QString(),
              const QString &unit = QString())
{
    BillQuery q;
    q.name = name;
    q.features = features;
    q.code = code;
    q.unit = unit;
    return q;
}

BillQuery filtered(BillQuery q, int mask, const QStringList &projects, const QString &keyword = QString())
{
    q.sourceMask = mask;
    q.projectIds = projects;
    q.keyword = keyword;
    return q;
}

QList<qint64> ids(const QVector<BillMatch> &matches)
{
    QList<qint64> out;
    for (const BillMatch &m : matches)
        out << m.id;
    return out;
}
}

class TestBillIndex : public HostTestCase
{
    Q_OBJECT
private slots:
    void ranking_data()
    {
        QTest::addColumn<QList<BillRecord>>("bills");
        QTest::addColumn<BillQuery>("query");
        QTest::addColumn<QList<qint64>>("expected");
        const QList<BillRecord> pipes{bill(1, "镀锌钢管", "规格：DN50\n连接形式：螺纹连接", "031001001001"),
                                      bill(2, "阀门", "类型：闸阀", "031003001001"),
                                      bill(3, "镀锌钢管", "规格：DN40", "031001002001")};
        QTest::newRow("exact code beats name similarity")
            << pipes << ask("镀锌钢管", "规格：DN50\n连接形式：螺纹连接", "031003001") << QList<qint64>{2, 1, 3};
        const QList<BillRecord> sleeves{bill(1, "套管", "名称：刚性防水套管", "031002004001"),
                                        bill(2, "套管", "名称：刚性防水套管", "031001004001")};
        QTest::newRow("same class ahead of other class") << sleeves << ask("套管", "名称：刚性防水套管", "031001009") << QList<qint64>{2, 1};
        const QList<BillRecord> plastic{bill(1, "塑料管", "材质：PPR DN25", "", "个"), bill(2, "塑料管", "材质：PPR DN25", "", "m")};
        const BillQuery ppr = ask("塑料管", "材质：PPR DN25");
        QTest::newRow("unit m first") << plastic << ask("塑料管", "材质：PPR DN25", "", "m") << QList<qint64>{2, 1};
        QTest::newRow("unit 米 is m") << plastic << ask("塑料管", "材质：PPR DN25", "", "米") << QList<qint64>{2, 1};
        QTest::newRow("unit 个 first") << plastic << ask("塑料管", "材质：PPR DN25", "", "个") << QList<qint64>{1, 2};
        QTest::newRow("unknown unit keeps order") << plastic << ask("塑料管", "材质：PPR DN25", "", "组") << QList<qint64>{1, 2};
        QTest::newRow("no unit keeps order") << plastic << ppr << QList<qint64>{1, 2};
        QTest::newRow("tie keeps insertion order")
            << QList<BillRecord>{bill(40, "灯具", "名称：吸顶灯"), bill(10, "灯具", "名称：吸顶灯"), bill(30, "灯具", "名称：吸顶灯")}
            << ask("灯具", "名称：吸顶灯") << QList<qint64>{40, 10, 30};
        // Other line order, half-width colons, one line: still the PPR bill.
        QTest::newRow("feature lines in any order")
            << QList<BillRecord>{bill(1, "给水管", "材质：钢塑复合管\n规格：DN50\n连接方式：沟槽"),
                                 bill(2, "给水管", "连接方式：热熔\n材质：PPR\n规格：DN50"), bill(3, "排水管", "材质：UPVC")}
            << ask("给水管", "规格:DN50 材质:PPR 连接方式:热熔") << QList<qint64>{2, 1, 3};
        QTest::newRow("size numbers decide")
            << QList<BillRecord>{bill(1, "配线", "型号：BYJ-1.5"), bill(2, "配线", "型号：BYJ-2.5"), bill(3, "配线", "型号：BYJ-4")}
            << ask("配线", "型号：WDZ-BYJ2.5") << QList<qint64>{2, 1, 3};
        BillQuery ent = ask("桥架", "材质：镀锌");
        ent.scopes = QStringList{"ent:3"};
        QTest::newRow("scopes limit records")
            << QList<BillRecord>{scoped(bill(1, "桥架", "材质：镀锌"), "user:7"), scoped(bill(2, "桥架", "材质：镀锌"), "ent:3")}
            << ent << QList<qint64>{2};
        const QString meter = "安装部位：室内\n规格：DN100";
        const QList<BillRecord> meters{bill(1, "水表", meter), bill(2, "水表", meter, "", "", 2, "p1"), bill(3, "水表", meter, "", "", 2, "p2"),
                                       bill(4, "水表", meter, "", "", 2, "p3")};
        const BillQuery m = ask("水表", meter);
        QTest::newRow("standard only") << meters << filtered(m, 1, {}) << QList<qint64>{1};
        QTest::newRow("accumulated only") << meters << filtered(m, 2, {}) << QList<qint64>{2, 3, 4};
        QTest::newRow("both sources") << meters << filtered(m, 3, {}) << QList<qint64>{1, 2, 3, 4};
        QTest::newRow("no source") << meters << filtered(m, 0, {}) << QList<qint64>{};
        QTest::newRow("accumulated of chosen projects") << meters << filtered(m, 2, {"p1", "p3"}) << QList<qint64>{2, 4};
        QTest::newRow("standard never limited by projects") << meters << filtered(m, 3, {"p2"}) << QList<qint64>{1, 3};
        QTest::newRow("unknown project") << meters << filtered(m, 2, {"p9"}) << QList<qint64>{};
        const QList<BillRecord> valves{scoped(bill(1, "阀门", "材质：铸铁\n规格：DN80"), "", "安装\n水压试验"),
                                       bill(2, "阀门", "材质：不锈钢\n规格：DN65"), bill(3, "阀门", "材质：不锈钢\n规格：DN50")};
        const BillQuery v = ask("阀门", "材质：不锈钢\n规格：DN50");
        QTest::newRow("keyword in features") << valves << filtered(v, 3, {}, "不锈钢") << QList<qint64>{3, 2};
        QTest::newRow("keyword full-width folded") << valves << filtered(v, 3, {}, "ＤＮ５０") << QList<qint64>{3};
        QTest::newRow("keyword of one character") << valves << filtered(v, 3, {}, "铸") << QList<qint64>{1};
        QTest::newRow("keyword in work content") << valves << filtered(v, 3, {}, "水压试验") << QList<qint64>{1};
        QTest::newRow("keyword absent") << valves << filtered(v, 3, {}, "铜管") << QList<qint64>{};
        QTest::newRow("blank keyword ignored") << valves << filtered(v, 3, {}, "  ") << QList<qint64>{3, 2, 1};
    }
    void ranking()
    {
        QFETCH(QList<BillRecord>, bills);
        QFETCH(BillQuery, query);
        QFETCH(QList<qint64>, expected);
        BillIndex index;
        for (const BillRecord &b : bills)
            index.add(b);
        index.build();
        int total = -1;
        const QVector<BillMatch> matches = index.query(query, &total);
        QCOMPARE(ids(matches), expected);
        QCOMPARE(total, expected.size());
        for (const BillMatch &m : matches)
            QCOMPARE(m.payload, m.id * 100);
    }

    void keywordOverManyBills()
    {
        // More keyword bills than are scored one by one: candidates still all carry it.
        BillIndex index;
        for (int i = 0; i < 6000; ++i)
            index.add(bill(i, "配管", i % 2 ? QStringLiteral("材质：焊接钢管 SC%1").arg(i % 90)
                                                         : QStringLiteral("材质：刚性阻燃管 PC%1").arg(i % 90)));
        index.build();
        BillQuery q = ask("配管", "材质：焊接钢管 SC20");
        q.keyword = "阻燃";
        q.limit = BillIndex::poolSize();
        int total = 0;
        const auto m = index.query(q, &total);
        QCOMPARE(total, BillIndex::poolSize());
        QCOMPARE(m.size(), BillIndex::poolSize());
        for (const BillMatch &x : m)
            QCOMPARE(x.id % 2, qint64(0));
    }

    void pagesAreSlicesOfTheFullRanking()
    {
        BillIndex index;
        for (int i = 0; i < 57; ++i)
            index.add(bill(i, "电力电缆", QStringLiteral("型号：YJV-%1*%2\n敷设方式：桥架").arg(3 + i % 3).arg(10 + i)));
        index.build();
        BillQuery q = ask("电力电缆", "型号：YJV-4*25\n敷设方式：桥架");
        q.limit = 1000;
        int total = 0;
        const auto full = index.query(q, &total);
        QCOMPARE(total, 57);
        QCOMPARE(full.size(), 57);
        QVector<BillMatch> paged;
        for (int page = 0; page * 10 < total; ++page) {
            q.offset = page * 10;
            q.limit = 10;
            int pageTotal = 0;
            const auto part = index.query(q, &pageTotal);
            QCOMPARE(pageTotal, total);
            QCOMPARE(part.size(), std::min(10, total - page * 10));
            paged += part;
        }
        QCOMPARE(ids(paged), ids(full));
        for (int i = 1; i < full.size(); ++i)
            QVERIFY(full[i - 1].score >= full[i].score);
        q.offset = 60;
        QVERIFY(index.query(q).isEmpty());
    }

    void changesAfterBuild()
    {
        BillIndex index;
        index.add(bill(1, "风机盘管", "形式：卧式暗装"));
        index.build();
        const BillQuery q = ask("风管", "材质：镀锌钢板 厚度：0.75mm");
        index.add(bill(2, "风管", "材质：镀锌钢板\n厚度：0.75mm"));
        QVERIFY(!ids(index.query(q)).contains(2)); // queued until build()
        index.build();
        QCOMPARE(index.query(q).value(0).id, qint64(2));
        index.remove(2);
        index.build();
        QVERIFY(!ids(index.query(q)).contains(2));
        for (qint64 id : {40, 10, 30})
            index.add(bill(id, "灯具", "名称：吸顶灯"));
        index.build();
        // Saving a bill again replaces it; the new version is the latest added.
        index.add(bill(10, "灯具", "名称：吸顶灯"));
        index.build();
        QCOMPARE(ids(index.query(ask("灯具", "名称：吸顶灯"))), (QList<qint64>{40, 30, 10}));
        QCOMPARE(index.size(), 4);
    }

    // Removing most bills rebuilds the index from the live ones: the
    // ranking is that of an index that never held the removed bills.
    void compactionKeepsTheRanking()
    {
        BillIndex index, fresh;
        const QStringList names{QStringLiteral("镀锌钢管"), QStringLiteral("电力电缆"), QStringLiteral("阀门")};
        for (int i = 0; i < 3000; ++i) {
            const BillRecord r = scoped(bill(i, names[i % 3], QStringLiteral("规格：DN%1").arg(15 + i % 40),
                                             QStringLiteral("0310010%1").arg(i % 90, 2, 10, QLatin1Char('0')), "m", 1 + i % 2,
                                             QStringLiteral("p%1").arg(i % 5)),
                                        QStringLiteral("s%1").arg(i % 2));
            index.add(r);
            if (i % 3 == 0)
                fresh.add(r);
        }
        index.build();
        for (int i = 0; i < 3000; ++i)
            if (i % 3)
                index.remove(i);
        index.build();
        fresh.build();
        QCOMPARE(index.size(), 1000);
        for (int i = 0; i < 30; ++i) {
            BillQuery q = filtered(ask(names[i % 3], QStringLiteral("规格：DN%1").arg(15 + i), QString(), "m"), 1 + i % 3,
                                   i % 4 ? QStringList() : QStringList{QStringLiteral("p%1").arg(i % 5)});
            q.scopes = i % 2 ? QStringList{"s0"} : QStringList();
            QCOMPARE(ids(index.query(q)), ids(fresh.query(q)));
        }
    }

    void concurrentQueriesMatchSequential()
    {
        BillIndex index;
        const QStringList names{QStringLiteral("镀锌钢管"), QStringLiteral("电力电缆"), QStringLiteral("配管"),
                                QStringLiteral("阀门"), QStringLiteral("灯具")};
        for (int i = 0; i < 3000; ++i)
            index.add(bill(i, names[i % 5], QStringLiteral("规格：DN%1\n材质：%2").arg(15 + i % 40).arg(i % 7 ? "钢" : "铜"),
                           QStringLiteral("0310010%1").arg(i % 90, 2, 10, QLatin1Char('0')), QString(), 1 + i % 2,
                           QStringLiteral("p%1").arg(i % 11)));
        index.build();
        QVector<BillQuery> queries;
        for (int i = 0; i < 120; ++i) {
            BillQuery q = ask(names[i % 5], QStringLiteral("规格：DN%1 材质：钢").arg(15 + i % 40));
            q.code = QStringLiteral("0310010%1").arg(i % 90, 2, 10, QLatin1Char('0'));
            q.sourceMask = 1 + i % 3;
            if (i % 4 == 0)
                q.projectIds = QStringList{QStringLiteral("p%1").arg(i % 11)};
            queries << q;
        }
        QVector<QList<qint64>> expected;
        for (const BillQuery &q : queries)
            expected << ids(index.query(q));
        QVector<QList<qint64>> got(queries.size());
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&, t] {
                for (int i = t; i < queries.size(); i += 4)
                    got[i] = ids(index.query(queries[i]));
            });
        // A saved bill arriving mid-way must not disturb running queries.
        index.add(bill(99999, "消火栓", "安装方式：明装"));
        index.build();
        for (auto &th : threads)
            th.join();
        QCOMPARE(got, expected);
    }

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
        items[0] = {QStringLiteral("塑料管"), QStringLiteral("塑料管 PPR DN25 热熔连接"), {}, {}, {QStringLiteral("10-1")}, {}};
        items[1] = {QStringLiteral("塑料管"), QStringLiteral("塑料管 PPR DN25 热熔"), {}, {}, {QStringLiteral("10-1")}, {}};
        items[2] = {QStringLiteral("灯具"), QStringLiteral("灯具 吸顶灯"), {}, {}, {QStringLiteral("4-7")}, {}};
        const auto r = MatchEvaluation::evaluate(items);
        QCOMPARE((QList<int>{r.ceiling, r.top1, r.baselineTop1}), (QList<int>{2, 2, 2}));
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

QTEST_GUILESS_MAIN(TestBillIndex)
#include "tst_billindex.moc"
