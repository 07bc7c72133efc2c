#include "hosttestcase.h"

#include <hostapi/apppaths.h>
#include <hostapi/clsdac.h>
#include <hostapi/placedictionary.h>

#include <QFileInfo>
#include <QTimer>
#include <QtConcurrent>
#include <QtTest>

namespace {
struct Row
{
    QString name;
    QString pid;
    int rownum = 0;
    QString sysCode;
};

QList<Row> readSet(const QString &path)
{
    QList<Row> rows;
    DBM::clsDAC dac(path, true);
    DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';").arg(PlaceDictionary::placeSetId()));
    while (r.next())
        rows << Row{r.value("name").toString(), r.value("pid").toString(), r.value("rownum").toInt(), r.value("sysCode").toString()};
    return rows;
}

// The chain of names, each with its code, from the top level down to the row
// whose code is `code`.
QStringList chainOf(const QList<Row> &rows, const QString &code)
{
    QHash<int, Row> byRownum;
    Row current;
    for (const Row &r : rows) {
        byRownum.insert(r.rownum, r);
        if (r.sysCode == code)
            current = r;
    }
    QStringList chain;
    while (!current.name.isEmpty()) {
        chain.prepend(current.name + QLatin1Char('/') + current.sysCode);
        if (current.pid.isEmpty())
            break;
        current = byRownum.value(current.pid.toInt());
    }
    return chain;
}

const QByteArray kProvinces = "code,name\n11,\"北京市\"\n51,\"四川省\"\n";
const QByteArray kCities = "code,name,provinceCode\n1101,\"市辖区\",11\n5101,\"成都市\",51\n";
const QByteArray kAreas = "code,name,cityCode,provinceCode\n110101,\"东城区\",1101,11\n510106,\"金牛区\",5101,51\n";
}

class TestPlaceDictionary : public HostTestCase
{
    Q_OBJECT
private slots:
    void freshInstallBuildsTheWholeCountry()
    {
        const QString expected = HostDatabasePath("IDTDICTMIDDLE");
        QVERIFY(!QFileInfo::exists(expected));
        bool looped = false; // the first build runs aside while the loop runs
        QTimer::singleShot(0, [&looped] { looped = true; });
        QCOMPARE(PlaceDictionary::ensureDatabase(), expected);
        QVERIFY(looped);
        QVERIFY(QFileInfo::exists(expected));

        const QList<Row> rows = readSet(expected);
        QList<int> levels{0, 0, 0}; // provinces (top level), cities, districts
        for (const Row &r : rows)
            ++levels[r.pid.isEmpty() ? 0 : r.sysCode.size() / 2 - 1];
        // The counts of provinces.csv, cities.csv and areas.csv.
        QCOMPARE(levels, (QList<int>{31, 342, 2978}));
        QCOMPARE(rows.size(), 31 + 342 + 2978);
        QCOMPARE(rows.first().name, QStringLiteral("北京市"));
        QVERIFY(rows.first().pid.isEmpty());

        QCOMPARE(chainOf(rows, "110101"), (QStringList{"北京市/11", "市辖区/1101", "东城区/110101"}));
        QCOMPARE(chainOf(rows, "510106"), (QStringList{"四川省/51", "成都市/5101", "金牛区/510106"}));
        QCOMPARE(chainOf(rows, "659001"), (QStringList{"新疆维吾尔自治区/65", "自治区直辖县级行政区划/6590", "石河子市/659001"}));
    }

    void concurrentFirstUseBuildsOnce()
    {
        QList<QFuture<QString>> futures;
        for (int i = 0; i < 4; ++i)
            futures << QtConcurrent::run([] { return PlaceDictionary::ensureDatabase(); });
        QStringList paths;
        for (QFuture<QString> &f : futures)
            paths << f.result();
        for (const QString &p : paths)
            QCOMPARE(p, HostDatabasePath("IDTDICTMIDDLE"));
        QCOMPARE(readSet(paths.first()).size(), 3351);
        int builds = 0;
        for (const QString &line : fx->logLines())
            builds += line.contains(QStringLiteral("place dictionary built")) ? 1 : 0;
        QCOMPARE(builds, 1);
    }

    void codeForPath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("code");
        QTest::newRow("district") << "四川省成都市金牛区" << "510106";
        QTest::newRow("municipality district") << "北京市市辖区东城区" << "110101";
        QTest::newRow("province") << "四川省" << "51";
        QTest::newRow("city") << "四川省成都市" << "5101";
        QTest::newRow("no province") << "成都市金牛区" << QString();
        QTest::newRow("unknown") << "火星" << QString();
        QTest::newRow("empty") << QString() << QString();
    }
    void codeForPath()
    {
        QFETCH(QString, path);
        QTEST(PlaceDictionary::codeForPath(path), "code");
    }

    void existingSetIsLeftAlone()
    {
        const QString path = PlaceDictionary::ensureDatabase();
        {
            DBM::clsDAC dac(path);
            dac.execSql("UPDATE subset_dd SET name = '北京' WHERE rownum = 1");
        }
        QCOMPARE(PlaceDictionary::ensureDatabase(), path);
        QCOMPARE(readSet(path).first().name, QStringLiteral("北京"));
        QCOMPARE(PlaceDictionary::build(path, kProvinces, kCities, kAreas), 0);
    }

    void setIsAddedToAnExistingDictionary()
    {
        const QString path = HostDatabasePath("IDTDICTMIDDLE");
        {
            DBM::clsDAC dac(path);
            dac.execSql("CREATE TABLE other_dd (v TEXT)");
            dac.execSql("INSERT INTO other_dd VALUES ('keep')");
        }
        QVERIFY(!PlaceDictionary::hasPlaceSet(path));
        PlaceDictionary::ensureDatabase();
        QVERIFY(PlaceDictionary::hasPlaceSet(path));
        DBM::clsDAC dac(path, true);
        DBM::clsDACResult r = dac.execSql("SELECT v FROM other_dd");
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toString(), QStringLiteral("keep"));
    }

    void quotedFieldsAndSmallTables()
    {
        const QString path = HostDatabasePath("SMALL");
        const QByteArray provinces = "code,name\r\n11,\"北京\"\"市\"\"\"\r\n\r\n";
        QCOMPARE(PlaceDictionary::build(path, provinces, kCities.left(kCities.indexOf("5101")),
                                        kAreas.left(kAreas.indexOf("510106"))),
                 3);
        const QList<Row> rows = readSet(path);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(0).name, QStringLiteral("北京\"市\""));
        QCOMPARE(rows.at(1).pid, QStringLiteral("1"));
        QCOMPARE(rows.at(2).pid, QStringLiteral("2"));
        QCOMPARE(rows.at(2).rownum, 3);
    }

    void badTablesFailClearlyAndWriteNothing_data()
    {
        QTest::addColumn<QByteArray>("provinces");
        QTest::addColumn<QByteArray>("cities");
        QTest::addColumn<QByteArray>("areas");
        QTest::addColumn<QString>("message");
        QTest::newRow("unknown province") << kProvinces << QByteArray(kCities + "9901,\"某市\",99\n") << kAreas
                                          << QStringLiteral("cities.csv 中 某市 的上级 99 不存在");
        QTest::newRow("unknown city") << kProvinces << kCities << QByteArray(kAreas + "990101,\"某区\",9901,99\n")
                                      << QStringLiteral("areas.csv 中 某区 的上级 9901 不存在");
        QTest::newRow("missing column") << kProvinces << QByteArray("code,name,provinceCode\n1101,\"市辖区\"\n")
                                        << kAreas << QStringLiteral("cities.csv 第2行");
        QTest::newRow("open quote") << QByteArray("code,name\n11,\"北京市\n") << kCities << kAreas
                                    << QStringLiteral("provinces.csv 第2行");
        QTest::newRow("empty table") << QByteArray("code,name\n") << kCities << kAreas
                                     << QStringLiteral("provinces.csv 没有数据");
        QTest::newRow("duplicate code") << QByteArray(kProvinces + "11,\"北京\"\n") << kCities << kAreas
                                        << QStringLiteral("代码 11 重复");
    }
    void badTablesFailClearlyAndWriteNothing()
    {
        QFETCH(QByteArray, provinces);
        QFETCH(QByteArray, cities);
        QFETCH(QByteArray, areas);
        QFETCH(QString, message);
        const QString path = HostDatabasePath("IDTDICTMIDDLE");
        try {
            PlaceDictionary::build(path, provinces, cities, areas);
            QFAIL("no error");
        } catch (const DBM::exDBM &e) {
            QVERIFY2(e.message().contains(message), qPrintable(e.message()));
        }
        QVERIFY(!PlaceDictionary::hasPlaceSet(path));
        // A later good build still works.
        QCOMPARE(PlaceDictionary::build(path, kProvinces, kCities, kAreas), 6);
    }
};

QTEST_GUILESS_MAIN(TestPlaceDictionary)
#include "tst_placedictionary.moc"
