#include "hosttestcase.h"

#include <materials/materialpricetables.h>

#include <hostapi/clsdac.h>
#include <hostapi/gljbean.h>

#include <QtTest>

class TestMaterialPriceTables : public HostTestCase
{
    Q_OBJECT
private:
    using T = MaterialPriceTables;
    static QStringList rows(const QString &sql)
    {
        DBM::clsDAC dac(T::databasePath());
        DBM::clsDACResult r = dac.execSql(sql);
        QStringList out;
        while (r.next()) {
            QStringList cells;
            for (int c = 0; c < r.columnCount(); ++c)
                cells << r.value(c).toString();
            out << cells.join(QLatin1Char('|'));
        }
        return out;
    }
    static GljBean material(const QString &name, double tj)
    {
        GljBean m;
        m.SetClmc(name);
        m.SetGgxh(QStringLiteral("HRB400 Φ12"));
        m.SetDw(QStringLiteral("t"));
        m.SetTj(tj);
        m.SetPp(QStringLiteral("品'牌"));
        m.SetCj(QStringLiteral("厂家"));
        m.SetCd(QStringLiteral("成都"));
        return m;
    }

private slots:
    void tablesAreCreatedAsStoredDatabasesHaveThem()
    {
        T::ensureTables();
        T::ensureTables();
        QCOMPARE(rows("select sql from sqlite_master where type='table' and name in ('jb','cljgb') order by name"),
                 QStringList({"CREATE TABLE cljgb(id INTEGER PRIMARY KEY AUTOINCREMENT, jdid  INTEGER, qkid NULL, "
                              "lbid  NULL,clmc  NULL,clgg NULL,cldw  NULL,cldj  NULL,clcd  NULL,clpp  NULL,clsj  "
                              "NULL,lyid  NULL)",
                              "CREATE TABLE jb(id INTEGER PRIMARY KEY AUTOINCREMENT, lyid  NULL, jbmc  NULL, dyear  "
                              "NULL,kssj  NULL,jssj NULL,addtag  NULL,isTax INTEGER)"}));
    }

    void namesAreCutAtTheSuffix_data()
    {
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("name");
        QTest::newRow("after tax") << "钢材【税后价】" << "钢材";
        QTest::newRow("before tax") << "钢材【税前价】" << "钢材";
        QTest::newRow("before-tax mark inside the name") << "a【税前价】b【税后价】" << "a";
        QTest::newRow("no suffix") << "钢材" << "钢材";
    }
    void namesAreCutAtTheSuffix()
    {
        QFETCH(QString, display);
        QTEST(T::nameOf(display), "name");
    }

    void createRenameAndListKeepNamesUnique()
    {
        T::ensureTables();
        QVERIFY(T::createTable("甲", T::taxFlagFor(0)));
        QVERIFY(T::createTable("乙", T::taxFlagFor(1)));
        QVERIFY(!T::createTable("甲", "1"));
        QVERIFY(!T::renameTable("乙", "甲"));
        QVERIFY(T::renameTable("乙", "丙"));
        QCOMPARE(T::listTables(), QStringList({"甲【税后价】", "丙【税前价】"}));
        QCOMPARE(rows("select lyid, jbmc, isTax from jb"), QStringList({"5|甲|1", "5|丙|0"}));
    }

    void quoteInATableNameBreaksItsStatements()
    {
        T::ensureTables();
        QVERIFY_EXCEPTION_THROWN(T::createTable("王'表", "1"), DBM::exDBM);
        QCOMPARE(T::findTable("王'表").rows, 0);
        QVERIFY(T::listTables().isEmpty());
    }

    void twoTablesOfOneNameGiveTheLastId()
    {
        T::ensureTables();
        rows("insert into jb(lyid,jbmc,isTax) values('5','同名',1)");
        rows("insert into jb(lyid,jbmc,isTax) values('7','同名',0)");
        const T::TableRef ref = T::findTable("同名");
        QCOMPARE(ref.rows, 2);
        QCOMPARE(ref.id, QStringLiteral("2"));
        QCOMPARE(ref.lyid, QStringLiteral("7"));
    }

    void savingUpdatesAMatchButReinsertsANameWithAQuote()
    {
        T::ensureTables();
        T::createTable("表", "1");
        const T::TableRef table = T::findTable("表");
        int counter = 0;
        T::saveMaterial(table, material("钢筋", 4100.123456789), counter);
        T::saveMaterial(table, material("钢筋", 4200), counter);
        QCOMPARE(counter, 1);
        // The counter is never reset: this save updates, and finds nothing.
        T::saveMaterial(table, material("O'钢", 1), counter);
        int fresh = 0;
        T::saveMaterial(table, material("O'钢", 2), fresh);
        T::saveMaterial(table, material("O'钢", 3), fresh);
        QCOMPARE(fresh, 0);
        QCOMPARE(rows("select jdid, clmc, clgg, cldw, cldj, lyid, clpp, clsj, clcd from cljgb order by id"),
                 QStringList({"1|钢筋|HRB400 Φ12|t|4200|5|品'牌|厂家|成都", "1|O'钢|HRB400 Φ12|t|2|5|品'牌|厂家|成都", "1|O'钢|HRB400 Φ12|t|3|5|品'牌|厂家|成都"}));
    }

    void deletingATableLeavesItsMaterialRows()
    {
        T::ensureTables();
        T::createTable("表", "1");
        int counter = 0;
        T::saveMaterial(T::findTable("表"), material("钢筋", 1), counter);
        T::deleteTable("表");
        QVERIFY(T::listTables().isEmpty());
        QCOMPARE(rows("select count(*) from cljgb"), QStringList("1"));
    }
};

QTEST_MAIN(TestMaterialPriceTables)
#include "tst_materialpricetables.moc"
