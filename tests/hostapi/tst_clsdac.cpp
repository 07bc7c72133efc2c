#include "hosttestcase.h"

#include <hostapi/apppaths.h>
#include <hostapi/clsdac.h>

#include <QtConcurrent>
#include <QtTest>

class TestClsDac : public HostTestCase
{
    Q_OBJECT
    // A database file "t" with a table t (v) holding `rows` rows.
    static QString tableOf(int rows)
    {
        const QString path = HostDatabasePath("T");
        DBM::clsDAC dac(path);
        dac.execSql("CREATE TABLE t (v INTEGER)");
        for (int i = 0; i < rows; ++i)
            dac.execPrepared("INSERT INTO t VALUES (?)", {i});
        return path;
    }

private slots:
    void readsByNameAndIndex()
    {
        DBM::clsDAC dac(HostDatabasePath("DB_USER"));
        dac.execSql("CREATE TABLE jb (id INTEGER PRIMARY KEY, jbmc TEXT)");
        dac.execPrepared("INSERT INTO jb (jbmc) VALUES (?)", {"O'Brien 价格表"});
        DBM::clsDACResult r = dac.execSql("SELECT * FROM jb");
        QVERIFY(r.next());
        QCOMPARE(r.value("jbmc").toString(), QStringLiteral("O'Brien 价格表"));
        QCOMPARE(r.value(1).toString(), QStringLiteral("O'Brien 价格表"));
        QVERIFY(!r.value("missing").isValid());
        QVERIFY(!r.next());
    }

    void failuresThrowWithTheirReason_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no such table") << "" << "SELECT * FROM no_such_table" << "no such table: no_such_table";
        QTest::newRow("read-only connection") << "read-only" << "INSERT INTO t VALUES (1)" << "";
        QTest::newRow("closed connection") << "closed" << "SELECT 1" << "";
        QTest::newRow("detached database") << "detached" << "SELECT * FROM DBuser.t" << "";
    }
    void failuresThrowWithTheirReason()
    {
        QFETCH(QString, kind);
        QFETCH(QString, statement);
        QFETCH(QString, reason);
        DBM::clsDAC dac(kind == "read-only" ? tableOf(0) : HostDatabasePath("DB_MAIN"), kind == "read-only");
        if (kind == "closed")
            dac.closeDB();
        if (kind == "detached") {
            dac.addSQLiteAttachDatabase("DBuser", tableOf(1));
            DBM::clsDACResult r = dac.execSql("SELECT count(*) FROM DBuser.t");
            QVERIFY(r.next());
            QCOMPARE(r.value(0).toInt(), 1);
            dac.detachSQLiteDatabase("DBuser");
        }
        try {
            dac.execSql(statement);
            QFAIL("no exception");
        } catch (const DBM::exDBM &e) {
            QVERIFY2(QString::fromUtf8(e.what()).contains(reason), e.what());
        }
    }

    void resultsEndWhenTheConnectionCloses()
    {
        DBM::clsDAC dac(tableOf(1));
        DBM::clsDACResult r = dac.execSql("SELECT * FROM t");
        dac.closeDB();
        QVERIFY(!r.next());
    }

    void connectionsOnWorkerThreads()
    {
        const QString path = tableOf(0);
        QList<int> values;
        for (int i = 0; i < 16; ++i)
            values << i;
        QtConcurrent::blockingMap(values, [path](int v) { DBM::clsDAC(path).execPrepared("INSERT INTO t VALUES (?)", {v}); });
        DBM::clsDAC dac(path);
        DBM::clsDACResult r = dac.execSql("SELECT count(*), sum(v) FROM t");
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toInt(), 16);
        QCOMPARE(r.value(1).toInt(), 120);
    }
};

QTEST_GUILESS_MAIN(TestClsDac)
#include "tst_clsdac.moc"
