#include "hostfixture.h"

#include <dialogregistry.h>
#include <hostcontext.h>
#include <pricecheckhost.h>

#include <cloud/tqdtjyjc_yxys.h>
#include <pricecheck/tinitial.h>
#include <pricecheck/tqdtjyjc.h>

#include <hostapi/projectsettinghelper.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>

#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUndoStack>
#include <QtTest>

#include <memory>

class TestPriceCheckHost : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    HostContext host;

    static void setSettings(const QString &time, const QString &place, const QString &code, const QString &altitude)
    {
        ProjectSettingsInfo info;
        info.time = time;
        info.place = place;
        info.placeCode = code;
        info.altitude = altitude;
        info.taxMode = QStringLiteral("一般计税");
        ProjectSettingHelper::SetProjectSettingsInfo(info);
    }

private slots:
    void init()
    {
        fx = std::make_unique<HostFixture>();
        ServerRegistry::instance()->reset();
        RURecordControl::undoStack()->clear();
    }
    void cleanup()
    {
        RURecordControl::undoStack()->clear();
        ServerRegistry::instance()->reset();
        fx.reset();
    }

    void registeredUnderItsMenuEntry()
    {
        const HostDialogEntry *entry = DialogRegistry::find(QStringLiteral("pricecheck"));
        QVERIFY(entry);
        QCOMPARE(entry->title, QStringLiteral("清单单价云检查"));
    }

    void wizardShowsTheProjectSettings_data()
    {
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("altitude");
        QTest::addColumn<QString>("shownTime");
        QTest::addColumn<QString>("shownPlace");
        QTest::addColumn<QString>("shownAltitude");
        QTest::newRow("settings") << QStringLiteral("2023年05月") << QStringLiteral("四川省成都市金牛区")
                                  << QStringLiteral("500m") << QStringLiteral("2023年05月")
                                  << QStringLiteral("四川省成都市金牛区") << QStringLiteral("500m");
        QTest::newRow("nothing set") << QString() << QString() << QString()
                                     << QDate::currentDate().toString(QStringLiteral("yyyy年MM月")) << QStringLiteral("无")
                                     << QStringLiteral("<2.0km");
    }
    void wizardShowsTheProjectSettings()
    {
        QFETCH(QString, time);
        QFETCH(QString, place);
        QFETCH(QString, altitude);
        QFETCH(QString, shownTime);
        QFETCH(QString, shownPlace);
        QFETCH(QString, shownAltitude);
        setSettings(time, place, QString(), altitude);
        fx->channel().replyOk(QJsonArray());
        TQdtjyjc dialog;
        PriceCheckHost::prepare(dialog, host);
        QCOMPARE(dialog.initialPage()->timeLabel()->text(), shownTime);
        QCOMPARE(dialog.initialPage()->placeLabel()->text(), shownPlace);
        QCOMPARE(dialog.initialPage()->altitudeLabel()->text(), shownAltitude);
    }

    void syncedChoiceBecomesOneUndoStep()
    {
        setSettings(QStringLiteral("2023年05月"), QStringLiteral("北京市市辖区东城区"), QStringLiteral("110101"),
                    QStringLiteral("50m"));
        fx->channel().replyOk(QJsonArray());
        TQdtjyjc dialog;
        PriceCheckHost::prepare(dialog, host);
        fx->answerNextModal([](QDialog *d) {
            auto *yxys = qobject_cast<TQdtjyjc_Yxys *>(d);
            yxys->timeField()->setText(QStringLiteral("2024年01月"));
            yxys->placeField()->setText(QStringLiteral("四川省成都市金牛区"));
            yxys->confirmButton()->click();
            return d->result();
        });
        dialog.initialPage()->modifyButton()->click();

        ProjectSettingsInfo now = ProjectSettingHelper::GetProjectSettingsInfo();
        QCOMPARE(now.time, QStringLiteral("2024年01月"));
        QCOMPARE(now.place, QStringLiteral("四川省成都市金牛区"));
        QCOMPARE(now.placeCode, QStringLiteral("510106"));
        QCOMPARE(now.altitude, QStringLiteral("50m"));
        QUndoStack *stack = RURecordControl::undoStack();
        QCOMPARE(stack->count(), 1);
        QCOMPARE(stack->undoText(), QStringLiteral("修改工程设置"));
        stack->undo();
        now = ProjectSettingHelper::GetProjectSettingsInfo();
        QCOMPARE(now.place, QStringLiteral("北京市市辖区东城区"));
        QCOMPARE(now.placeCode, QStringLiteral("110101"));
        QCOMPARE(now.time, QStringLiteral("2023年05月"));
        stack->redo();
        QCOMPARE(ProjectSettingHelper::GetProjectSettingsInfo().placeCode, QStringLiteral("510106"));
    }

    void clearedPlaceAndUnchangedValues()
    {
        setSettings(QStringLiteral("2023年05月"), QStringLiteral("四川省"), QStringLiteral("51"), QString());
        PriceCheckHost::writeYxys(host, QStringLiteral("2023年05月"), QStringLiteral("四川省"));
        QCOMPARE(RURecordControl::undoStack()->count(), 0);
        PriceCheckHost::writeYxys(host, QStringLiteral("2023年05月"), QString());
        const ProjectSettingsInfo now = ProjectSettingHelper::GetProjectSettingsInfo();
        QVERIFY(now.place.isEmpty());
        QVERIFY(now.placeCode.isEmpty());
        QCOMPARE(RURecordControl::undoStack()->count(), 1);
    }
};

QTEST_MAIN(TestPriceCheckHost)
#include "tst_pricecheckhost.moc"
