#include "hosttestcase.h"

#include <hostapi/apppaths.h>
#include <hostapi/clsdac.h>

#include <QtConcurrent>
#include <QtTest>

class TestClsDac : public HostTestCase
{
    Q_OBJECT
private slots:
    void readsByNameAndIndex()
    {
        DBM::clsDAC dac(HostDatabasePath("DB_USER"));
        dac.execSql("CREATE TABLE jb (id INTEGER PRIMARY KEY, jbmc TEXT)");
        dac.execPrepared("INSERT INTO jb (jbmc) VALUES (?)", {QStringLiteral("O'Brien 价格表")});
        DBM::clsDACResult r = dac.execSql("SELECT * FROM jb");
        QVERIFY(r.next());
        QCOMPARE(r.value("jbmc").toString(), QStringLiteral("O'Brien 价格表"));
        QCOMPARE(r.value(1).toString(), QStringLiteral("O'Brien 价格表"));
        QVERIFY(!r.value("missing").isValid());
        QVERIFY(!r.next());
    }

    void errorCarriesSqliteText()
    {
        DBM::clsDAC dac(HostDatabasePath("DB_USER"));
        try {
            dac.execSql("SELECT * FROM no_such_table");
            QFAIL("no exception");
        } catch (const DBM::exDBM &e) {
            QVERIFY2(QString::fromUtf8(e.what()).contains(QStringLiteral("no such table: no_such_table")), e.what());
        }
    }

    void attachAndDetach()
    {
        const QString other = HostDatabasePath("DB_OTHER");
        {
            DBM::clsDAC dac(other);
            dac.execSql("CREATE TABLE t (v TEXT)");
            dac.execSql("INSERT INTO t VALUES ('x')");
        }
        DBM::clsDAC dac(HostDatabasePath("DB_MAIN"));
        dac.addSQLiteAttachDatabase("DBuser", other);
        DBM::clsDACResult r = dac.execSql("SELECT count(*) FROM DBuser.t");
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toInt(), 1);
        dac.detachSQLiteDatabase("DBuser");
        QVERIFY_EXCEPTION_THROWN(dac.execSql("SELECT * FROM DBuser.t"), DBM::exDBM);
    }

    void readOnlyRefusesWrites()
    {
        const QString path = HostDatabasePath("RO");
        { DBM::clsDAC dac(path); dac.execSql("CREATE TABLE t (v)"); }
        DBM::clsDAC ro(path, true);
        QVERIFY_EXCEPTION_THROWN(ro.execSql("INSERT INTO t VALUES (1)"), DBM::exDBM);
    }

    void closedConnectionThrowsAndResultsEnd()
    {
        DBM::clsDAC dac(HostDatabasePath("DB_USER"));
        dac.execSql("CREATE TABLE t (v)");
        dac.execSql("INSERT INTO t VALUES (1)");
        DBM::clsDACResult r = dac.execSql("SELECT * FROM t");
        dac.closeDB();
        QVERIFY(!r.next());
        QVERIFY_EXCEPTION_THROWN(dac.execSql("SELECT 1"), DBM::exDBM);
    }

    void connectionsOnWorkerThreads()
    {
        const QString path = HostDatabasePath("DB_THREADS");
        { DBM::clsDAC dac(path); dac.execSql("CREATE TABLE t (v INTEGER)"); }
        QList<int> values;
        for (int i = 0; i < 16; ++i)
            values << i;
        QtConcurrent::blockingMap(values, [path](int v) {
            DBM::clsDAC dac(path);
            dac.execPrepared("INSERT INTO t VALUES (?)", {v});
        });
        DBM::clsDAC dac(path);
        DBM::clsDACResult r = dac.execSql("SELECT count(*), sum(v) FROM t");
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toInt(), 16);
        QCOMPARE(r.value(1).toInt(), 120);
    }
};

QTEST_GUILESS_MAIN(TestClsDac)
#include "tst_clsdac.moc"
