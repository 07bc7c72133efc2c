#include <server/serveroptions.h>

#include <QtTest>

class TestServerOptions : public QObject
{
    Q_OBJECT
private slots:
    void accepted_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QString>("options"); // data database listen threads max-body seed help
        QTest::newRow("defaults") << "--data /tmp/d" << "/tmp/d  127.0.0.1:8686 32 8388608 full 0";
        QTest::newRow("database instead of data") << "--database postgresql://vc@db:5433/velora"
                                                  << " postgresql://vc@db:5433/velora 127.0.0.1:8686 32 8388608 full 0";
        QTest::newRow("every option") << "--data d --listen 0.0.0.0:9000 --threads 4 --max-body 2048 --seed minimal"
                                      << "d  0.0.0.0:9000 4 2048 minimal 0";
        QTest::newRow("help needs no data") << "--help" << "  127.0.0.1:8686 32 8388608 full 1";
    }
    void accepted()
    {
        QFETCH(QString, args);
        QFETCH(QString, options);
        ServerOptions o;
        QString error;
        QVERIFY2(o.parse(args.split(' '), &error), qPrintable(error));
        QCOMPARE(QStringList({o.dataDir, o.database, o.listen, QString::number(o.threads), QString::number(o.maxBodyBytes), o.seed,
                              QString::number(o.help)}).join(' '),
                 options);
        QVERIFY(ServerOptions::usage().contains("--listen ADDR:PORT"));
    }

    void refused_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QString>("error");
        QTest::newRow("no data") << "--threads 2" << "--data DIR or --database URL is required";
        QTest::newRow("database not a URL") << "--database /tmp/v.db"
                                            << "--database wants postgresql://USER@HOST:PORT/DBNAME, got \"/tmp/v.db\"";
        QTest::newRow("missing value") << "--data" << "--data needs a value";
        QTest::newRow("no port") << "--data d --listen 127.0.0.1" << "--listen wants ADDR:PORT, got \"127.0.0.1\"";
        QTest::newRow("port too big") << "--data d --listen 127.0.0.1:70000" << "--listen wants ADDR:PORT, got \"127.0.0.1:70000\"";
        QTest::newRow("empty host") << "--data d --listen :80" << "--listen wants ADDR:PORT, got \":80\"";
        QTest::newRow("zero threads") << "--data d --threads 0" << "--threads wants a number from 1 to 512, got \"0\"";
        QTest::newRow("word threads") << "--data d --threads many" << "--threads wants a number from 1 to 512, got \"many\"";
        QTest::newRow("tiny body") << "--data d --max-body 10" << "--max-body wants bytes from 1024 to 1073741824, got \"10\"";
        QTest::newRow("bad seed") << "--data d --seed all" << "--seed wants full, minimal or none, got \"all\"";
        QTest::newRow("unknown") << "--data d --port 80" << "unknown argument \"--port\"";
    }
    void refused()
    {
        QFETCH(QString, args);
        ServerOptions o;
        QString got;
        QVERIFY(!o.parse(args.split(' '), &got));
        QTEST(got, "error");
    }

    void listenForms_data()
    {
        QTest::addColumn<QString>("listen");
        QTest::addColumn<bool>("valid");
        QTest::newRow("v4") << "127.0.0.1:8686" << true;
        QTest::newRow("any port") << "127.0.0.1:0" << true;
        QTest::newRow("v6") << "[::1]:8686" << true;
        QTest::newRow("v6 unbracketed") << "::1:8686" << false;
        QTest::newRow("letters port") << "127.0.0.1:http" << false;
    }
    void listenForms()
    {
        QFETCH(QString, listen);
        QTEST(ServerOptions::isValidListen(listen), "valid");
    }
};

QTEST_MAIN(TestServerOptions)
#include "tst_serveroptions.moc"
