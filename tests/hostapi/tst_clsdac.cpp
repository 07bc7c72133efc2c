#include "hostfixture.h"

#include <hostapi/apppaths.h>
#include <hostapi/clsdac.h>

#include <QtConcurrent>
#include <QtTest>

#include <memory>

class TestClsDac : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void readsByNameAndIndex()
    {
        DBM::clsDAC dac(HostDatabasePath(QStringLiteral("DB_USER")));
        dac.execSql(QStringLiteral("CREATE TABLE jb (id INTEGER PRIMARY KEY, jbmc TEXT)"));
        dac.execPrepared(QStringLiteral("INSERT INTO jb (jbmc) VALUES (?)"), {QStringLiteral("O'Brien 价格表")});
        DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT * FROM jb"));
        QVERIFY(r.next());
        QCOMPARE(r.value(QStringLiteral("jbmc")).toString(), QStringLiteral("O'Brien 价格表"));
        QCOMPARE(r.value(1).toString(), QStringLiteral("O'Brien 价格表"));
        QVERIFY(!r.value(QStringLiteral("missing")).isValid());
        QVERIFY(!r.next());
    }

    void errorCarriesSqliteText()
    {
        DBM::clsDAC dac(HostDatabasePath(QStringLiteral("DB_USER")));
        try {
            dac.execSql(QStringLiteral("SELECT * FROM no_such_table"));
            QFAIL("no exception");
        } catch (const DBM::exDBM &e) {
            QVERIFY2(QString::fromUtf8(e.what()).contains(QStringLiteral("no such table: no_such_table")), e.what());
        }
    }

    void attachAndDetach()
    {
        const QString other = HostDatabasePath(QStringLiteral("DB_OTHER"));
        {
            DBM::clsDAC dac(other);
            dac.execSql(QStringLiteral("CREATE TABLE t (v TEXT)"));
            dac.execSql(QStringLiteral("INSERT INTO t VALUES ('x')"));
        }
        DBM::clsDAC dac(HostDatabasePath(QStringLiteral("DB_MAIN")));
        dac.addSQLiteAttachDatabase(QStringLiteral("DBuser"), other);
        DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT count(*) FROM DBuser.t"));
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toInt(), 1);
        dac.detachSQLiteDatabase(QStringLiteral("DBuser"));
        QVERIFY_EXCEPTION_THROWN(dac.execSql(QStringLiteral("SELECT * FROM DBuser.t")), DBM::exDBM);
    }

    void readOnlyRefusesWrites()
    {
        const QString path = HostDatabasePath(QStringLiteral("RO"));
        { DBM::clsDAC dac(path); dac.execSql(QStringLiteral("CREATE TABLE t (v)")); }
        DBM::clsDAC ro(path, true);
        QVERIFY_EXCEPTION_THROWN(ro.execSql(QStringLiteral("INSERT INTO t VALUES (1)")), DBM::exDBM);
    }

    void closedConnectionThrowsAndResultsEnd()
    {
        DBM::clsDAC dac(HostDatabasePath(QStringLiteral("DB_USER")));
        dac.execSql(QStringLiteral("CREATE TABLE t (v)"));
        dac.execSql(QStringLiteral("INSERT INTO t VALUES (1)"));
        DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT * FROM t"));
        dac.closeDB();
        QVERIFY(!r.next());
        QVERIFY_EXCEPTION_THROWN(dac.execSql(QStringLiteral("SELECT 1")), DBM::exDBM);
    }

    void connectionsOnWorkerThreads()
    {
        const QString path = HostDatabasePath(QStringLiteral("DB_THREADS"));
        { DBM::clsDAC dac(path); dac.execSql(QStringLiteral("CREATE TABLE t (v INTEGER)")); }
        QList<int> values;
        for (int i = 0; i < 16; ++i)
            values << i;
        QtConcurrent::blockingMap(values, [path](int v) {
            DBM::clsDAC dac(path);
            dac.execPrepared(QStringLiteral("INSERT INTO t VALUES (?)"), {v});
        });
        DBM::clsDAC dac(path);
        DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT count(*), sum(v) FROM t"));
        QVERIFY(r.next());
        QCOMPARE(r.value(0).toInt(), 16);
        QCOMPARE(r.value(1).toInt(), 120);
    }
};

QTEST_GUILESS_MAIN(TestClsDac)
#include "tst_clsdac.moc"
