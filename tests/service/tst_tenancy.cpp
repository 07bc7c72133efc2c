#include "servicetestcase.h"

#include <QtTest>

using namespace cloudjson;

// Who may see and change what: every user against every tier.
// demo: admin of east (1001), reader of west (1002); zhangsan: writer of east;
// lisi: admin of west; wangwu: no enterprise.
class TestTenancy : public ServiceTestCase
{
    Q_OBJECT
    // Id of a personal bill of `user`, found through their own match.
    QString personalBillOf(const QString &user)
    {
        const QJsonObject r = callAs(user + "@personal", "matchqdtz",
                                     {{"xmmc", "实心砖墙"}, {"sourceMask", 2}, {"params", QJsonObject{{"page", 1}}}});
        return object(r).value("jlqds").toArray().at(0).toObject().value("guida").toString();
    }

private slots:
    void permissions_data()
    {
        replyColumns();
        const QString readOnly = "您在该企业只有查看权限，没有编辑权限", adminOnly = "只有企业管理员可以执行该操作",
                      korvaneReadOnly = "Korvane云为只读的案例库，不能写入", noLibrary = "清单库不存在",
                      noPriceLibrary = "价表不存在", wrongServer = "请求的方法与所选服务器不符",
                      otherEnterprise = "请求的企业与登录的企业服务器不一致";
        const char *newLibrary = R"({"czlx":0,"para":{"qdkid":"","qdkmc":"新库"}})";
        // Personal data is the owner's alone.
        replyRow("not logged in", "nobody@personal", "getBZQDKList", R"({"qyid":0})", 2, "未登录Korvane云或登录已失效，请重新登录");
        replyRow("own library", "personal", "getchaptertreeforperson", R"({"bzqdkid":"1"})", 0);
        replyRow("own permission", "personal", "listeditpermissionjudgmentforperson", R"({"qiyeID":-1,"usetype":1})", 0);
        replyRow("reads another's library", "zhangsan@personal", "getchaptertreeforperson", R"({"bzqdkid":"1"})", 4, noLibrary);
        replyRow("renames another's library", "zhangsan@personal", "editNZQDK", R"({"czlx":1,"para":{"qdkid":"1","qdkmc":"x"}})", 4,
                 noLibrary);
        replyRow("saves into another's library", "zhangsan@personal", "listsavingtaskbeginforperson",
                 R"({"qiyeID":-1,"taskid":"t","qdcount":"1","bzqdkid":"1","mark":"0"})", 4, noLibrary);
        replyRow("checks another's prices", "zhangsan@personal", "getmaterialcheckrecords",
                 R"({"sjksyid":"cj-demo-1","materials":[]})", 4, noPriceLibrary);
        replyRow("deletes another's price library", "zhangsan@personal", "personmaterialedit", R"({"sjksyid":"cj-demo-1","oper":3})",
                 4, noPriceLibrary);
        replyRow("without enterprise, own library", "wangwu@personal", "editNZQDK", newLibrary, 0);
        // Enterprises: membership to see, roles to write.
        replyRow("login to another's enterprise", "wangwu@korvane", "enterpriselogin",
                 R"({"qyid":1001,"username":"wangwu","password":"Velora@2024"})", 3, "该账号不是此企业的成员");
        replyRow("login to no enterprise", "korvane", "enterpriselogin", R"({"qyid":4242,"username":"demo","password":"x"})", 4,
                 "企业服务器不存在");
        replyRow("admin creates library", "east", "editNZQDK", newLibrary, 0);
        replyRow("admin deletes library", "east", "editNZQDK", R"({"czlx":2,"para":{"qdkid":"4"}})", 0);
        replyRow("admin may edit", "east", "listeditpermissionjudgmentforenterprise", R"({"qiyeID":1001,"usetype":2})", 0);
        replyRow("admin writes library", "east", "getQDKQX", R"({"qyid":1001,"qdkid":"4"})", 0);
        replyRow("admin creates price library", "east", "enterprisematrialedit",
                 R"({"sjksyid":"","kuName":"华东新价表","oper":1,"qiyeId":1001})", 0);
        replyRow("admin deletes price library", "east", "enterprisematrialedit", R"({"sjksyid":"cj-east-2023","oper":3,"qiyeId":1001})",
                 0);
        replyRow("admin authority", "east", "isauthorityforenterprise", R"({"qiyeId":1001})", 0);
        replyRow("reader lists", "west", "getBZQDKList", R"({"qyid":1002})", 0);
        replyRow("reader creates library", "west", "editNZQDK", newLibrary, 3, readOnly);
        replyRow("reader opens task", "west", "listsavingtaskbeginforenterprise",
                 R"({"qiyeID":1002,"taskid":"w","qdcount":"1","bzqdkid":"6","mark":"0"})", 3, readOnly);
        replyRow("reader may not edit", "west", "listeditpermissionjudgmentforenterprise", R"({"qiyeID":1002,"usetype":2})", 3,
                 readOnly);
        replyRow("reader writes library", "west", "getQDKQX", R"({"qyid":1002,"qdkid":"6"})", 3, readOnly);
        replyRow("reader authority", "west", "isauthorityforenterprise", R"({"qiyeId":1002})", 3, readOnly);
        replyRow("reader creates price library", "west", "enterprisematrialedit", R"({"kuName":"x","oper":1,"qiyeId":1002})", 3,
                 readOnly);
        replyRow("reader saves prices", "west", "savematerialprices", R"({"sjksyid":"cj-west-2024","materials":[{"guid":11,"clmc":"水泥"}]})",
                 3, readOnly);
        replyRow("writer opens task", "zhangsan@east", "listsavingtaskbeginforenterprise",
                 R"({"qiyeID":1001,"taskid":"t","qdcount":"1","bzqdkid":"4","mark":"0"})", 0);
        replyRow("writer creates library", "zhangsan@east", "editNZQDK", newLibrary, 0);
        replyRow("writer deletes library", "zhangsan@east", "editNZQDK", R"({"czlx":2,"para":{"qdkid":"4"}})", 3, adminOnly);
        replyRow("writer creates price library", "zhangsan@east", "enterprisematrialedit",
                 R"({"kuName":"张三建的价表","oper":1,"qiyeId":1001})", 0);
        replyRow("writer deletes price library", "zhangsan@east", "enterprisematrialedit",
                 R"({"sjksyid":"cj-east-2024","oper":3,"qiyeId":1001})", 3, adminOnly);
        replyRow("admin of the other", "lisi@west", "editNZQDK", R"({"czlx":2,"para":{"qdkid":"6"}})", 0);
        replyRow("token names other enterprise", "east", "getBZQDKList", R"({"qyid":1002})", 3, otherEnterprise);
        replyRow("body names other enterprise", "east", "listeditpermissionjudgmentforenterprise", R"({"qiyeID":1002,"usetype":2})", 3,
                 otherEnterprise);
        replyRow("library of other enterprise", "east", "getchaptertreeforenterprise", R"({"qiyeID":1001,"bzqdkid":"6"})", 4,
                 noLibrary);
        replyRow("library of other tier", "east", "getQDKQX", R"({"qyid":1001,"qdkid":"6"})", 4, noLibrary);
        replyRow("forged enterprise token", "forged", "getBZQDKList", R"({"qyid":1001})", 2, "企业服务器未登录或登录已失效，请重新登录");
        replyRow("enterprise token, personal method", "east", "getchaptertreeforperson", R"({"bzqdkid":"4"})", 1, wrongServer);
        // The Korvane cloud: everybody reads, nobody writes.
        replyRow("anybody reads korvane", "wangwu@korvane", "getchaptertreeforkv", R"({"bzqdkid":"7"})", 0);
        replyRow("big data as enterprise", "bigdata", "getchaptertreeforenterprise", R"({"qiyeID":0,"usetype":2,"bzqdkid":"7"})", 0);
        replyRow("korvane library write", "korvane", "editNZQDK", newLibrary, 3, korvaneReadOnly);
        replyRow("korvane task", "korvane", "listsavingtaskbeginforenterprise",
                 R"({"qiyeID":0,"usetype":3,"taskid":"t","qdcount":"1","bzqdkid":"7","mark":"0"})", 3, korvaneReadOnly);
        replyRow("korvane may not edit", "korvane", "listeditpermissionjudgmentforenterprise", R"({"qiyeID":0,"usetype":3})", 3,
                 korvaneReadOnly);
        replyRow("korvane price library write", "korvane", "enterprisematrialedit", R"({"kuName":"x","oper":1,"qiyeId":0})", 3,
                 korvaneReadOnly);
        replyRow("korvane, personal method", "korvane", "listeditpermissionjudgmentforperson", R"({"qiyeID":-1,"usetype":1})", 1,
                 wrongServer);
        replyRow("korvane reads personal library", "korvane", "getchaptertreeforkv", R"({"bzqdkid":"1"})", 4, noLibrary);
    }
    void permissions() { checkReply(); }

    void refusedWritesChangeNothing()
    {
        const QStringList before = texts(array(callAs("west", "getBZQDKList", {{"qyid", 1002}})), "mc");
        callAs("west", "editNZQDK", {{"czlx", 0}, {"para", QJsonObject{{"qdkmc", "不该出现"}}}});
        callAs("zhangsan@east", "editNZQDK", {{"czlx", 2}, {"para", QJsonObject{{"qdkid", "4"}}}});
        QCOMPARE(texts(array(callAs("west", "getBZQDKList", {{"qyid", 1002}})), "mc"), before);
        QCOMPARE(array(callAs("east", "getBZQDKList", {{"qyid", 1001}})).size(), 2);
        QCOMPARE(array(callAs("west", "getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 1002}})).size(), 1);
    }

    void listsShowOnlyOwnData()
    {
        QCOMPARE(texts(array(callAs("zhangsan@personal", "getBZQDKList", {})), "mc"), QStringList{"张三的清单库"});
        QCOMPARE(texts(object(callAs("zhangsan@personal", "materiallist", {})).value("sjksys").toArray(), "kmms"),
                 QStringList{"张三的材价库"});
        QVERIFY(array(callAs("wangwu@personal", "getBZQDKList", {})).isEmpty());
        QVERIFY(array(callAs("wangwu@personal", "getaccumulatedprojects", {})).isEmpty());
        // wangwu has no enterprise entries; demo has two.
        QCOMPARE(array(callAs("wangwu@korvane", "getserverlist", {})).size(), 3);
        QCOMPARE(array(callAs("korvane", "getserverlist", {})).size(), 7);
        // A material price server's token opens only its own enterprise.
        const QString cj = array(callAs("zhangsan@korvane", "getserverlist", {})).at(4).toObject().value("token").toString();
        QVERIFY(cj.startsWith("cj_"));
        const QString own = sessionOf("zhangsan");
        QCOMPARE(code(send(cj, method("getenterprisepricelist", {{"qiyeID", 1001}}), own)), 0);
        QCOMPARE(code(send(cj, method("getenterprisepricelist", {{"qiyeID", 1002}}), own)), 3);
        const QJsonObject drop{{"sjksyid", "cj-east-2024"}, {"oper", 3}, {"qiyeId", 1001}};
        QCOMPARE(code(send(cj, method("enterprisematrialedit", drop), own)), 3);
    }

    void matchedBillsStayInTheirTier()
    {
        const QString demoBill = personalBillOf("demo");
        const QString zhangBill = personalBillOf("zhangsan");
        QVERIFY(!demoBill.isEmpty() && !zhangBill.isEmpty() && demoBill != zhangBill);
        const auto info = [&](const QString &who, const QString &name, const QString &bill) {
            return code(callAs(who, name, {{"id", bill.toInt()}, {"ly", 2}}));
        };
        QCOMPARE(info("personal", "personprojectinfoforsinglepricecheck", demoBill), 0);
        QCOMPARE(info("personal", "personprojectinfoforsinglepricecheck", zhangBill), 4);
        QCOMPARE(info("korvane", "kvprojectinfoforsinglepricecheck", demoBill), 4);
        QCOMPARE(code(callAs("personal", "getgcsldata", {{"id", zhangBill}})), 4);
        // A match never returns another user's bills.
        const QJsonArray matches = array(callAs("personal", "getppqd", {{"usetype", "1"}, {"cond", QJsonObject{{"qdly", 3}}},
                                                                        {"data", QJsonArray{QJsonObject{{"xmmc", "实心砖墙"}, {"dw", "m3"}}}}}));
        QVERIFY(!matches.isEmpty());
        QVERIFY(!texts(matches, "id").contains(zhangBill));
    }
};

QTEST_MAIN(TestTenancy)
#include "tst_tenancy.moc"
