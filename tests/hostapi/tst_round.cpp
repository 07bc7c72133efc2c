#include <hostapi/round.h>

#include <QtTest>

class TestRound : public QObject
{
    Q_OBJECT
private slots:
    void round_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<bool>("keepZeros");
        QTest::addColumn<QString>("expected");

        QTest::newRow("decimal half up") << 2.675 << 2 << true << "2.68";
        QTest::newRow("binary below half") << 1.005 << 2 << true << "1.01";
        QTest::newRow("half away from zero negative") << -2.675 << 2 << true << "-2.68";
        QTest::newRow("plain") << 12.3 << 2 << true << "12.30";
        QTest::newRow("drop trailing zeros") << 12.3 << 2 << false << "12.3";
        QTest::newRow("drop point") << 12.0 << 2 << false << "12";
        QTest::newRow("zero keep") << 0.0 << 2 << true << "0.00";
        QTest::newRow("zero dropped is empty") << 0.0 << 2 << false << "";
        QTest::newRow("rounds to zero is empty") << 0.004 << 2 << false << "";
        QTest::newRow("negative rounds to zero") << -0.004 << 2 << true << "0.00";
        QTest::newRow("carry into integer") << 9.995 << 2 << true << "10.00";
        QTest::newRow("carry new digit") << 99.999 << 2 << false << "100";
        QTest::newRow("eight decimals") << 3.141592653589793 << 8 << true << "3.14159265";
        QTest::newRow("zero decimals") << 2.5 << 0 << true << "3";
        QTest::newRow("zero decimals negative") << -2.5 << 0 << true << "-3";
        QTest::newRow("small value") << 0.000123456 << 6 << true << "0.000123";
        QTest::newRow("large value") << 123456789.125 << 2 << true << "123456789.13";
        QTest::newRow("deviation rate") << -12.345 << 2 << true << "-12.35";
    }
    void round()
    {
        QFETCH(double, value);
        QFETCH(int, decimals);
        QFETCH(bool, keepZeros);
        QTEST(Round(value, decimals, keepZeros), "expected");
    }
};

QTEST_GUILESS_MAIN(TestRound)
#include "tst_round.moc"
