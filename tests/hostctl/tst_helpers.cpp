#include "hostfixture.h"

#include <hostapi/cpfmain.h>
#include <hostapi/hostconfig.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/markcolorhelp.h>

#include <QColor>
#include <QSet>
#include <QtTest>

#include <memory>

class TestHelpers : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void sixDistinctMarkColours()
    {
        QSet<QString> seen;
        for (int i = 0; i < markColorHelp::ColorCount; ++i) {
            const QString color = markColorHelp::GetColorPath(i);
            QVERIFY2(QColor::isValidColor(color), qPrintable(color));
            seen.insert(color);
        }
        QCOMPARE(seen.size(), 6);
        QCOMPARE(markColorHelp::GetColorName(0), QStringLiteral("标记色①"));
        QCOMPARE(markColorHelp::GetColorName(5), QStringLiteral("标记色⑥"));
        QCOMPARE(markColorHelp::GetColorPath(6), QString());
        QCOMPARE(markColorHelp::GetColorPath(-1), QString());
    }

    void areaConfigComesFromHostConfig()
    {
        QCOMPARE(CpfMain::GetAreaConfigValue(QStringLiteral("AreaVer")), QString());
        HostConfig::setValue(QStringLiteral("AreaVer"), QStringLiteral("JL2024"));
        QCOMPARE(CpfMain::GetAreaConfigValue(QStringLiteral("AreaVer")), QStringLiteral("JL2024"));
    }

    void ratioIsOneOffscreen()
    {
        QCOMPARE(InterfaceAdaptation::getResolutionRatioH(), 1.0);
        QCOMPARE(InterfaceAdaptation::scaled(960), 960);
    }
};

QTEST_MAIN(TestHelpers)
#include "tst_helpers.moc"
