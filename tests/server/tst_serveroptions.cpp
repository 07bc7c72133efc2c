#include <server/serveroptions.h>

#include <QtTest>

class TestServerOptions : public QObject
{
    Q_OBJECT
private slots:
    void defaults()
    {
        ServerOptions o;
        QString error;
        QVERIFY(o.parse({QStringLiteral("--data"), QStringLiteral("/tmp/d")}, &error));
        QCOMPARE(o.dataDir, QStringLiteral("/tmp/d"));
        QCOMPARE(o.listen, QStringLiteral("127.0.0.1:8686"));
        QCOMPARE(o.threads, 32);
        QCOMPARE(o.maxBodyBytes, qint64(8 * 1024 * 1024));
        QCOMPARE(o.seed, QStringLiteral("full"));
    }

    void everyOption()
    {
        ServerOptions o;
        QString error;
        QVERIFY2(o.parse(QStringLiteral("--data d --listen 0.0.0.0:9000 --threads 4 --max-body 2048 --seed minimal")
                             .split(QLatin1Char(' ')), &error), qPrintable(error));
        QCOMPARE(o.listen, QStringLiteral("0.0.0.0:9000"));
        QCOMPARE(o.threads, 4);
        QCOMPARE(o.maxBodyBytes, qint64(2048));
        QCOMPARE(o.seed, QStringLiteral("minimal"));
    }

    void helpNeedsNoData()
    {
        ServerOptions o;
        QString error;
        QVERIFY(o.parse({QStringLiteral("--help")}, &error));
        QVERIFY(o.help);
        QVERIFY(ServerOptions::usage().contains(QStringLiteral("--listen ADDR:PORT")));
    }

    void refused_data()
    {
        QTest::addColumn<QString>("args");
        QTest::addColumn<QString>("error");
        QTest::newRow("no data") << "--threads 2" << "--data DIR is required";
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
        QFETCH(QString, error);
        ServerOptions o;
        QString got;
        QVERIFY(!o.parse(args.split(QLatin1Char(' ')), &got));
        QCOMPARE(got, error);
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
        QFETCH(bool, valid);
        QCOMPARE(ServerOptions::isValidListen(listen), valid);
    }
};

QTEST_MAIN(TestServerOptions)
#include "tst_serveroptions.moc"
