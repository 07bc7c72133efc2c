#include "servicetestcase.h"

#include <QtTest>

using namespace cloudjson;

// Who may see and change what: every user against every tier.
// demo: admin of east (1001), reader of west (1002); zhangsan: writer of east;
// lisi: admin of west; wangwu: no enterprise.
class TestTenancy : public ServiceTestCase
{
    Q_OBJECT
    QJsonObject call(const QString &user, const QString &tier, const QString &name, const QJsonObject &fields = {})
    {
        return svc->call(tokenOf(tier, user), method(name, fields), ServiceTestBase::session(user));
    }
    // Id of a personal bill of `user`, found through their own match.
    QString personalBillOf(const QString &user)
    {
        const QJsonObject r = call(user, "personal", "matchqdtz",
                                   {{"xmmc", "实心砖墙"}, {"sourceMask", 2}, {"params", QJsonObject{{"page", 1}}}});
        return object(r).value("jlqds").toArray().at(0).toObject().value("guida").toString();
    }

private slots:
    void matrix_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("tier");
        QTest::addColumn<QString>("method");
        QTest::addColumn<QJsonObject>("fields");
        QTest::addColumn<int>("expectedCode");

        const QJsonObject newLibrary{{"czlx", 0}, {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", "新库"}}}};
        const QJsonObject deleteEastLibrary{{"czlx", 2}, {"para", QJsonObject{{"qdkid", "4"}}}};
        const QJsonObject deleteWestLibrary{{"czlx", 2}, {"para", QJsonObject{{"qdkid", "6"}}}};
        const QJsonObject demoLibraryTree{{"bzqdkid", "1"}};
        const QJsonObject eastTask{{"qiyeID", 1001}, {"taskid", "t"}, {"qdcount", "1"}, {"bzqdkid", "4"}, {"mark", "0"}};
        const QJsonObject westTask{{"qiyeID", 1002}, {"taskid", "t"}, {"qdcount", "1"}, {"bzqdkid", "6"}, {"mark", "0"}};

        // Personal data is the owner's alone.
        QTest::newRow("demo reads own library") << "demo" << "personal" << "getchaptertreeforperson" << demoLibraryTree << 0;
        QTest::newRow("zhangsan reads demo's library") << "zhangsan" << "personal" << "getchaptertreeforperson" << demoLibraryTree << 4;
        QTest::newRow("zhangsan renames demo's library")
            << "zhangsan" << "personal" << "editNZQDK"
            << QJsonObject{{"czlx", 1}, {"para", QJsonObject{{"qdkid", "1"}, {"qdkmc", "x"}}}} << 4;
        QTest::newRow("zhangsan saves into demo's library")
            << "zhangsan" << "personal" << "listsavingtaskbeginforperson"
            << QJsonObject{{"qiyeID", -1}, {"taskid", "t"}, {"qdcount", "1"}, {"bzqdkid", "1"}, {"mark", "0"}} << 4;
        QTest::newRow("zhangsan checks demo's prices")
            << "zhangsan" << "personal" << "getmaterialcheckrecords"
            << QJsonObject{{"sjksyid", "cj-demo-1"}, {"materials", QJsonArray{}}} << 4;
        QTest::newRow("zhangsan deletes demo's price library")
            << "zhangsan" << "personal" << "personmaterialedit" << QJsonObject{{"sjksyid", "cj-demo-1"}, {"oper", 3}} << 4;
        QTest::newRow("wangwu creates own library") << "wangwu" << "personal" << "editNZQDK" << newLibrary << 0;

        // Enterprises: membership to see, roles to write.
        QTest::newRow("demo admin creates east library") << "demo" << "east" << "editNZQDK" << newLibrary << 0;
        QTest::newRow("demo admin deletes east library") << "demo" << "east" << "editNZQDK" << deleteEastLibrary << 0;
        QTest::newRow("demo reader lists west") << "demo" << "west" << "getBZQDKList" << QJsonObject{{"qyid", 1002}} << 0;
        QTest::newRow("demo reader creates west library") << "demo" << "west" << "editNZQDK" << newLibrary << 3;
        QTest::newRow("demo reader opens west task") << "demo" << "west" << "listsavingtaskbeginforenterprise" << westTask << 3;
        QTest::newRow("zhangsan writer opens east task") << "zhangsan" << "east" << "listsavingtaskbeginforenterprise" << eastTask << 0;
        QTest::newRow("zhangsan writer creates east library") << "zhangsan" << "east" << "editNZQDK" << newLibrary << 0;
        QTest::newRow("zhangsan writer deletes east library") << "zhangsan" << "east" << "editNZQDK" << deleteEastLibrary << 3;
        QTest::newRow("lisi admin deletes west library") << "lisi" << "west" << "editNZQDK" << deleteWestLibrary << 0;
        QTest::newRow("east token names west") << "demo" << "east" << "getBZQDKList" << QJsonObject{{"qyid", 1002}} << 3;
        QTest::newRow("east token reads west library")
            << "demo" << "east" << "getchaptertreeforenterprise" << QJsonObject{{"qiyeID", 1001}, {"bzqdkid", "6"}} << 4;
        QTest::newRow("forged enterprise token") << "demo" << "forged" << "getBZQDKList" << QJsonObject{{"qyid", 1001}} << 2;
        QTest::newRow("enterprise token as personal method")
            << "demo" << "east" << "getchaptertreeforperson" << QJsonObject{{"bzqdkid", "4"}} << 1;

        // The Korvane cloud: everybody reads, nobody writes.
        QTest::newRow("wangwu reads korvane") << "wangwu" << "korvane" << "getchaptertreeforkv" << QJsonObject{{"bzqdkid", "7"}} << 0;
        QTest::newRow("demo writes korvane") << "demo" << "korvane" << "editNZQDK" << newLibrary << 3;
        QTest::newRow("demo opens korvane task")
            << "demo" << "korvane" << "listsavingtaskbeginforenterprise"
            << QJsonObject{{"qiyeID", 0}, {"usetype", 3}, {"taskid", "t"}, {"qdcount", "1"}, {"bzqdkid", "7"}, {"mark", "0"}} << 3;
        QTest::newRow("korvane reads personal library") << "demo" << "korvane" << "getchaptertreeforkv" << demoLibraryTree << 4;
    }

    void matrix()
    {
        QFETCH(QString, user);
        QFETCH(QString, tier);
        QFETCH(QString, method);
        QFETCH(QJsonObject, fields);
        QFETCH(int, expectedCode);
        const QJsonObject r = call(user, tier, method, fields);
        QVERIFY2(code(r) == expectedCode, qPrintable(QStringLiteral("%1: %2").arg(code(r)).arg(msg(r))));
        if (expectedCode != 0)
            QVERIFY(!msg(r).isEmpty());
    }

    void refusedWritesChangeNothing()
    {
        const QStringList before = texts(array(call("demo", "west", "getBZQDKList", {{"qyid", 1002}})), "mc");
        call("demo", "west", "editNZQDK", {{"czlx", 0}, {"para", QJsonObject{{"qdkmc", "不该出现"}}}});
        call("zhangsan", "east", "editNZQDK", {{"czlx", 2}, {"para", QJsonObject{{"qdkid", "4"}}}});
        QCOMPARE(texts(array(call("demo", "west", "getBZQDKList", {{"qyid", 1002}})), "mc"), before);
        QCOMPARE(array(call("demo", "east", "getBZQDKList", {{"qyid", 1001}})).size(), 2);
    }

    void listsShowOnlyOwnData()
    {
        QCOMPARE(texts(array(call("zhangsan", "personal", "getBZQDKList")), "mc"), QStringList{"张三的清单库"});
        QCOMPARE(texts(object(call("zhangsan", "personal", "materiallist")).value("sjksys").toArray(), "kmms"),
                 QStringList{"张三的材价库"});
        QVERIFY(array(call("wangwu", "personal", "getBZQDKList")).isEmpty());
        QCOMPARE(texts(array(call("wangwu", "personal", "getaccumulatedprojects")), "xmmc"), QStringList());
        // wangwu has no enterprise entries; demo has two.
        QCOMPARE(array(call("wangwu", "korvane", "getserverlist")).size(), 3);
        QCOMPARE(array(call("demo", "korvane", "getserverlist")).size(), 7);
        // A material price server's token opens only its own enterprise.
        const QString cj = array(call("zhangsan", "korvane", "getserverlist")).at(4).toObject().value("token").toString();
        QVERIFY(cj.startsWith("cj_"));
        QCOMPARE(code(svc->call(cj, method("getenterprisepricelist", {{"qiyeID", 1001}}), QString())), 0);
        QCOMPARE(code(svc->call(cj, method("getenterprisepricelist", {{"qiyeID", 1002}}), QString())), 3);
        const QJsonObject drop{{"sjksyid", "cj-east-2024"}, {"oper", 3}, {"qiyeId", 1001}};
        QCOMPARE(code(svc->call(cj, method("enterprisematrialedit", drop), QString())), 3);
    }

    void matchedBillsStayInTheirTier()
    {
        const QString demoBill = personalBillOf("demo");
        const QString zhangBill = personalBillOf("zhangsan");
        QVERIFY(!demoBill.isEmpty() && !zhangBill.isEmpty() && demoBill != zhangBill);
        QCOMPARE(code(call("demo", "personal", "personprojectinfoforsinglepricecheck", {{"id", demoBill.toInt()}, {"ly", 2}})), 0);
        QCOMPARE(code(call("demo", "personal", "personprojectinfoforsinglepricecheck", {{"id", zhangBill.toInt()}, {"ly", 2}})), 4);
        QCOMPARE(code(call("demo", "personal", "getgcsldata", {{"id", zhangBill}})), 4);
        QCOMPARE(code(call("demo", "korvane", "kvprojectinfoforsinglepricecheck", {{"id", demoBill.toInt()}, {"ly", 2}})), 4);
        // A match never returns another user's bills.
        const QJsonArray matches = array(call("demo", "personal", "getppqd",
                                              {{"usetype", "1"}, {"cond", QJsonObject{{"qdly", 3}}},
                                               {"data", QJsonArray{QJsonObject{{"xmmc", "实心砖墙"}, {"dw", "m3"}}}}}));
        QVERIFY(!matches.isEmpty());
        QVERIFY(!texts(matches, "id").contains(zhangBill));
    }
};

QTEST_MAIN(TestTenancy)
#include "tst_tenancy.moc"
