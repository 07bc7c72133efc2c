#include "hosttestcase.h"

#include <cloud/placedictionaryreader.h>
#include <cloud/tvelqddjjc_yxys.h>

#include <QtTest>

Q_DECLARE_METATYPE(QList<PlaceRow>)

namespace {
PlaceRow row(const QString &pid, const QString &name, int rownum)
{
    PlaceRow r;
    r.pid = pid;
    r.name = name;
    r.rownum = rownum;
    return r;
}
}

class TestPlaceReader : public HostTestCase
{
    Q_OBJECT
private slots:
    void nextPageData_data()
    {
        QTest::addColumn<QList<PlaceRow>>("list");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("children");
        const QList<PlaceRow> sichuan{row("", "四川省", 1), row("1", "成都市", 2), row("1", "绵阳市", 3), row("2", "金牛区", 4)};
        QTest::newRow("children in list order") << sichuan << "四川省" << QStringList{"成都市", "绵阳市"};
        QTest::newRow("grandchildren are not children") << sichuan << "成都市" << QStringList{"金牛区"};
        QTest::newRow("leaf") << sichuan << "金牛区" << QStringList();
        QTest::newRow("unknown name") << sichuan << "广东省" << QStringList();
        const QList<PlaceRow> twins{row("", "A省", 1), row("", "B省", 2), row("1", "市辖区", 3),
                                    row("2", "市辖区", 4), row("3", "A区", 5), row("4", "B区", 6)};
        QTest::newRow("same name: the later row wins") << twins << "市辖区" << QStringList{"B区"};
        const QList<PlaceRow> odd{row("", "零号", 0), row("x1", "甲", 1), row("", "乙", 2), row("1", "丙", 3)};
        QTest::newRow("no number and empty read as 0") << odd << "零号" << QStringList{"零号", "甲", "乙"};
        QTest::newRow("numeric pid still matches") << odd << "甲" << QStringList{"丙"};
    }
    void nextPageData()
    {
        QFETCH(QList<PlaceRow>, list);
        QFETCH(QString, name);
        QFETCH(QStringList, children);
        QCOMPARE(PlaceDictionaryReader::nextPageData(name, list), children);
        TVelQddjjc_Yxys dialog;
        QCOMPARE(dialog.nextPageData(name, list), children);
    }

    void topLevelNames()
    {
        const QList<PlaceRow> list{row("", "B", 2), row("2", "B1", 3), row("", "A", 1)};
        QCOMPARE(PlaceDictionaryReader::topLevelNames(list), (QStringList{"B", "A"}));
    }

    void joinPath_data()
    {
        QTest::addColumn<QStringList>("path");
        QTest::addColumn<QString>("text");
        QTest::newRow("full path") << QStringList{"四川省", "成都市", "金牛区"} << "四川省成都市金牛区";
        QTest::newRow("unchosen second tab") << QStringList{"北京市", "类别1"} << "北京市";
        QTest::newRow("unchosen third tab") << QStringList{"四川省", "成都市", "类别2"} << "四川省成都市";
        QTest::newRow("chosen item named like a placeholder") << QStringList{"类别1", "类别2"} << "";
        QTest::newRow("placeholder inside a name") << QStringList{"甲类别1乙"} << "甲乙";
        QTest::newRow("other numbers stay") << QStringList{"类别3"} << "类别3";
    }
    void joinPath()
    {
        QFETCH(QStringList, path);
        QTEST(PlaceDictionaryReader::joinPath(path), "text");
    }

    void readsBothStatementForms()
    {
        const QList<PlaceRow> spaced = PlaceDictionaryReader::read(TVelQddjjc_Yxys::layout().placeQuery);
        const QList<PlaceRow> tight = PlaceDictionaryReader::read("SELECT *FROM subset_dd WHERE sid = '%1';");
        QCOMPARE(spaced.size(), 3351);
        QCOMPARE(tight.size(), spaced.size());
        QCOMPARE(spaced.first().name, QStringLiteral("北京市"));
        QVERIFY(spaced.first().pid.isEmpty());
        QCOMPARE(PlaceDictionaryReader::nextPageData("北京市", spaced), QStringList{"市辖区"});
    }
};

QTEST_MAIN(TestPlaceReader)
#include "tst_placereader.moc"
