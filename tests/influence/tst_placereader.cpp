#include "hostfixture.h"

#include <cloud/placedictionaryreader.h>
#include <cloud/tvelqddjjc_yxys.h>

#include <QtTest>

#include <memory>

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

class TestPlaceReader : public QObject
{
    Q_OBJECT
private:
    std::unique_ptr<HostFixture> fx;

private slots:
    void init() { fx = std::make_unique<HostFixture>(); }
    void cleanup() { fx.reset(); }

    void nextPageData_data()
    {
        QTest::addColumn<QList<PlaceRow>>("list");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("children");
        const QList<PlaceRow> sichuan = {row({}, QStringLiteral("四川省"), 1), row(QStringLiteral("1"), QStringLiteral("成都市"), 2),
                                         row(QStringLiteral("1"), QStringLiteral("绵阳市"), 3),
                                         row(QStringLiteral("2"), QStringLiteral("金牛区"), 4)};
        QTest::newRow("children in list order") << sichuan << QStringLiteral("四川省")
                                                << QStringList{QStringLiteral("成都市"), QStringLiteral("绵阳市")};
        QTest::newRow("grandchildren are not children") << sichuan << QStringLiteral("成都市")
                                                        << QStringList{QStringLiteral("金牛区")};
        QTest::newRow("leaf") << sichuan << QStringLiteral("金牛区") << QStringList();
        QTest::newRow("unknown name") << sichuan << QStringLiteral("广东省") << QStringList();

        const QList<PlaceRow> twins = {row({}, QStringLiteral("A省"), 1), row({}, QStringLiteral("B省"), 2),
                                       row(QStringLiteral("1"), QStringLiteral("市辖区"), 3),
                                       row(QStringLiteral("2"), QStringLiteral("市辖区"), 4),
                                       row(QStringLiteral("3"), QStringLiteral("A区"), 5),
                                       row(QStringLiteral("4"), QStringLiteral("B区"), 6)};
        QTest::newRow("same name: the later row wins") << twins << QStringLiteral("市辖区") << QStringList{QStringLiteral("B区")};

        const QList<PlaceRow> odd = {row({}, QStringLiteral("零号"), 0), row(QStringLiteral("x1"), QStringLiteral("甲"), 1),
                                     row({}, QStringLiteral("乙"), 2), row(QStringLiteral("1"), QStringLiteral("丙"), 3)};
        QTest::newRow("no number and empty read as 0") << odd << QStringLiteral("零号")
                                                       << QStringList{QStringLiteral("零号"), QStringLiteral("甲"), QStringLiteral("乙")};
        QTest::newRow("numeric pid still matches") << odd << QStringLiteral("甲") << QStringList{QStringLiteral("丙")};
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
        const QList<PlaceRow> list = {row({}, QStringLiteral("B"), 2), row(QStringLiteral("2"), QStringLiteral("B1"), 3),
                                      row({}, QStringLiteral("A"), 1)};
        QCOMPARE(PlaceDictionaryReader::topLevelNames(list), (QStringList{QStringLiteral("B"), QStringLiteral("A")}));
    }

    void joinPath_data()
    {
        QTest::addColumn<QStringList>("path");
        QTest::addColumn<QString>("text");
        QTest::newRow("full path") << QStringList{QStringLiteral("四川省"), QStringLiteral("成都市"), QStringLiteral("金牛区")}
                                   << QStringLiteral("四川省成都市金牛区");
        QTest::newRow("unchosen second tab") << QStringList{QStringLiteral("北京市"), QStringLiteral("类别1")}
                                             << QStringLiteral("北京市");
        QTest::newRow("unchosen third tab") << QStringList{QStringLiteral("四川省"), QStringLiteral("成都市"), QStringLiteral("类别2")}
                                            << QStringLiteral("四川省成都市");
        QTest::newRow("chosen item named like a placeholder")
            << QStringList{QStringLiteral("类别1"), QStringLiteral("类别2")} << QString();
        QTest::newRow("placeholder inside a name") << QStringList{QStringLiteral("甲类别1乙")} << QStringLiteral("甲乙");
        QTest::newRow("other numbers stay") << QStringList{QStringLiteral("类别3")} << QStringLiteral("类别3");
    }
    void joinPath()
    {
        QFETCH(QStringList, path);
        QFETCH(QString, text);
        QCOMPARE(PlaceDictionaryReader::joinPath(path), text);
    }

    void readsBothStatementForms()
    {
        const QList<PlaceRow> spaced = PlaceDictionaryReader::read(TVelQddjjc_Yxys::layout().placeQuery);
        const QList<PlaceRow> tight = PlaceDictionaryReader::read(QStringLiteral("SELECT *FROM subset_dd WHERE sid = '%1';"));
        QCOMPARE(spaced.size(), 3351);
        QCOMPARE(tight.size(), spaced.size());
        QCOMPARE(spaced.first().name, QStringLiteral("北京市"));
        QVERIFY(spaced.first().pid.isEmpty());
        QCOMPARE(PlaceDictionaryReader::nextPageData(QStringLiteral("北京市"), spaced), QStringList{QStringLiteral("市辖区")});
    }
};

QTEST_MAIN(TestPlaceReader)
#include "tst_placereader.moc"
