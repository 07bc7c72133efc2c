#include "hostfixture.h"

#include <hostapi/cloudservercombox.h>
#include <hostapi/ltdinfo.h>

#include <QComboBox>
#include <QSet>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class TestServerCombox : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;
    LtdInfo personal{QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 1, 0, true};
    LtdInfo korvane{QStringLiteral("Korvane云"), QStringLiteral("kv_token"), 1, 0, true};
    LtdInfo enterprise{QStringLiteral("某某造价公司"), QStringLiteral("ent_7"), 2, 7, false};
    QList<LtdInfo *> list() { return {&personal, &korvane, &enterprise}; }

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void placeholderWhenNothingChosen_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << -1 << QStringLiteral("请选择服务器");
        QTest::newRow("beyond list") << 3 << QStringLiteral("请选择服务器");
        QTest::newRow("first") << 0 << QStringLiteral("个人云");
        QTest::newRow("enterprise") << 2 << QStringLiteral("某某造价公司");
    }

    void placeholderWhenNothingChosen()
    {
        QFETCH(int, index);
        QFETCH(QString, text);
        CloudServerCombox box;
        QList<LtdInfo *> servers = list();
        box.setServerList(servers, index, true);
        QCOMPARE(box.currentText(), text);
        QCOMPARE(box.currentIndex(), text == QStringLiteral("请选择服务器") ? -1 : index);
        QCOMPARE(box.comboBox()->count(), 3);
        QCOMPARE(box.comboBox()->placeholderText(), QStringLiteral("请选择服务器"));
    }

    void entriesCarryNameAndLoginMark()
    {
        CloudServerCombox box;
        QList<LtdInfo *> servers = list();
        box.setServerList(servers, 0, true);
        QCOMPARE(box.comboBox()->itemText(2), QStringLiteral("某某造价公司"));
        QCOMPARE(box.comboBox()->itemData(0, Qt::UserRole).toBool(), true);
        QCOMPARE(box.comboBox()->itemData(2, Qt::UserRole).toBool(), false);
        QCOMPARE(box.comboBox()->itemData(2, Qt::ToolTipRole).toString(), QStringLiteral("未登录"));
        QVERIFY(!box.comboBox()->itemIcon(0).isNull());
        // A later login shows up when the host hands the list again.
        enterprise.setServerLogin(true);
        box.setServerList(servers, 2, true);
        QCOMPARE(box.comboBox()->itemData(2, Qt::UserRole).toBool(), true);
    }

    void signalOnlyOnUserChoice()
    {
        CloudServerCombox box;
        QSignalSpy picked(&box, &CloudServerCombox::signalCurrentItemChanged);
        QList<LtdInfo *> servers = list();
        box.setServerList(servers, 0, true);
        box.setServerList(servers, 1, false);
        box.comboBox()->setCurrentIndex(2);
        QCOMPARE(picked.count(), 0);

        box.setServerList(servers, 0, true);
        box.show();
        box.comboBox()->setFocus();
        QTest::keyClick(box.comboBox(), Qt::Key_Down);
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked.takeFirst().at(0).toInt(), 1);
        QCOMPARE(box.currentText(), QStringLiteral("Korvane云"));
    }

    void placeholderIsPainted()
    {
        CloudServerCombox box;
        QList<LtdInfo *> servers = list();
        box.setServerList(servers, -1, true);
        box.setFixedSize(180, 26);
        // Text leaves several colours along the middle row of the label area;
        // an empty box is one colour there (its bevel gradient is vertical).
        const QImage image = box.comboBox()->grab().toImage();
        QSet<QRgb> colours;
        for (int x = 8; x < 100; ++x)
            colours.insert(image.pixel(x, image.height() / 2));
        QVERIFY2(colours.size() > 2, "no placeholder text drawn");
    }

    void emptyListShowsPlaceholder()
    {
        CloudServerCombox box;
        QList<LtdInfo *> servers = list();
        box.setServerList(servers, 1, true);
        QList<LtdInfo *> none;
        box.setServerList(none, 0, true);
        QCOMPARE(box.currentIndex(), -1);
        QCOMPARE(box.currentText(), QStringLiteral("请选择服务器"));
    }
};

QTEST_MAIN(TestServerCombox)
#include "tst_servercombox.moc"
