#include "hostfixture.h"

#include <hostapi/exceptionguard.h>

#include <QtTest>

#include <memory>
#include <stdexcept>

class TestExceptionGuard : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void standardExceptionIsReportedAndDefaultReturned()
    {
        const int result = GUARDED("Qddjyjc", "TQdtjyjc::NextStep", [] () -> int { throw std::runtime_error("boom"); });
        QCOMPARE(result, 0);
        const QStringList reports = fx->exceptionReports();
        QCOMPARE(reports.size(), 1);
        QVERIFY(reports.first().contains(QStringLiteral("boom (Qddjyjc:")));
        QVERIFY(reports.first().contains(QStringLiteral("TQdtjyjc::NextStep")));
    }

    void unknownExceptionBecomesStandard()
    {
        GUARDED("Znyzj", "TZnyzj::QdButton", [] { throw 42; });
        const QStringList reports = fx->exceptionReports();
        QCOMPARE(reports.size(), 1);
        QVERIFY(reports.first().contains(QStringLiteral("未知异常 (Znyzj:")));
    }

    void fallbackAndNormalResult()
    {
        QCOMPARE(GUARDED_OR(-1, "X", "X::f", [] () -> int { throw std::logic_error("x"); }), -1);
        QCOMPARE(GUARDED_OR(-1, "X", "X::f", [] { return 7; }), 7);
        QVERIFY(fx->exceptionReports().size() == 1);
    }
};

QTEST_GUILESS_MAIN(TestExceptionGuard)
#include "tst_exceptionguard.moc"
