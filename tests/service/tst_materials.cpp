#include "servicetestcase.h"

#include <QtTest>

using namespace cloudjson;

// Material price libraries, their edits, price saves and price checks.
class TestMaterials : public ServiceTestCase
{
    Q_OBJECT
    QStringList personalNames()
    {
        return texts(object(call("kv_token_user", "materiallist")).value("sjksys").toArray(), "kmms");
    }
    static QJsonObject cement() { return QJsonObject{{"guid", 11}, {"clmc", "普通硅酸盐水泥"}, {"ggxh", "P.O 42.5"}, {"dw", "t"}}; }

private slots:
    void listsOfEachTier()
    {
        const QJsonObject personal = call("kv_token_user", "materiallist");
        QCOMPARE(code(personal), 0);
        QCOMPARE(object(personal).value("sjksys").toArray().at(0).toObject(),
                 (QJsonObject{{"kmms", "我的材价库"}, {"_id", "cj-demo-1"}}));
        QCOMPARE(texts(array(call(east, "getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 1001}})), "kmms"),
                 (QStringList{"华东集团2024年材价库", "华东集团2023年材价库"}));
        QCOMPARE(array(call("kv_token", "getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 0}})).size(), 3);
        QCOMPARE(msg(call(east, "getenterprisepricelist", {{"klb", "qd"}, {"qiyeID", 1001}})), QStringLiteral("参数klb格式错误"));
        QCOMPARE(msg(call(east, "materiallist")), QStringLiteral("请求的方法与所选服务器不符"));
    }

    void personalEdits()
    {
        const QJsonObject created = call("kv_token_user", "personmaterialedit", {{"sjksyid", ""}, {"kmc", "新价表"}, {"oper", 1}});
        QCOMPARE(code(created), 0);
        const QString id = object(created).value("_id").toString();
        QVERIFY(!id.isEmpty());
        QCOMPARE(personalNames(), (QStringList{"我的材价库", "新价表"}));
        QCOMPARE(msg(call("kv_token_user", "personmaterialedit", {{"kmc", "我的材价库"}, {"oper", 1}})),
                 QStringLiteral("价表名称已存在"));
        QCOMPARE(code(call("kv_token_user", "personmaterialedit", {{"sjksyid", id}, {"kmc", "改名价表"}, {"oper", 2}})), 0);
        QCOMPARE(personalNames(), (QStringList{"我的材价库", "改名价表"}));
        QCOMPARE(msg(call("kv_token_user", "personmaterialedit", {{"sjksyid", id}, {"kmc", "我的材价库"}, {"oper", 2}})),
                 QStringLiteral("价表名称已存在"));
        QCOMPARE(code(call("kv_token_user", "personmaterialedit", {{"sjksyid", id}, {"oper", 3}})), 0);
        QCOMPARE(personalNames(), QStringList{"我的材价库"});
        QCOMPARE(msg(call("kv_token_user", "personmaterialedit", {{"sjksyid", id}, {"oper", 3}})), QStringLiteral("价表不存在"));
        QCOMPARE(msg(call("kv_token_user", "personmaterialedit", {{"kmc", ""}, {"oper", 1}})), QStringLiteral("价表名称不能为空"));
        QCOMPARE(msg(call("kv_token_user", "personmaterialedit", {{"kmc", "x"}, {"oper", 4}})), QStringLiteral("参数oper格式错误"));
        QCOMPARE(msg(call("kv_token_user", "personmaterialedit", {{"kmc", "x"}, {"oper", "一"}})), QStringLiteral("参数oper格式错误"));
    }

    void enterpriseEditsFollowRoles()
    {
        // Admin (demo in east) may create and delete; the key is "qiyeId" with a capital I.
        const QJsonObject created = call(east, "enterprisematrialedit", {{"sjksyid", ""}, {"kuName", "华东新价表"}, {"oper", 1}, {"qiyeId", 1001}});
        QCOMPARE(code(created), 0);
        QCOMPARE(code(call(east, "enterprisematrialedit", {{"sjksyid", object(created).value("_id")}, {"oper", 3}, {"qiyeId", 1001}})), 0);
        QCOMPARE(code(call(east, "isauthorityforenterprise", {{"qiyeId", 1001}})), 0);
        // Reader (demo in west) may do nothing.
        const QJsonObject refused = call(west, "isauthorityforenterprise", {{"qiyeId", 1002}});
        QCOMPARE(code(refused), 3);
        QCOMPARE(msg(refused), QStringLiteral("您在该企业只有查看权限，没有编辑权限"));
        QCOMPARE(code(call(west, "enterprisematrialedit", {{"kuName", "x"}, {"oper", 1}, {"qiyeId", 1002}})), 3);
        QCOMPARE(array(call(west, "getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 1002}})).size(), 1);
        // Writer (zhangsan in east) may create but not delete.
        session = ServiceTestBase::session("zhangsan");
        const QString writer = tokenOf("east", "zhangsan");
        const QJsonObject made = call(writer, "enterprisematrialedit", {{"kuName", "张三建的价表"}, {"oper", 1}, {"qiyeId", 1001}});
        QCOMPARE(code(made), 0);
        const QJsonObject del = call(writer, "enterprisematrialedit", {{"sjksyid", object(made).value("_id")}, {"oper", 3}, {"qiyeId", 1001}});
        QCOMPARE(code(del), 3);
        QCOMPARE(msg(del), QStringLiteral("只有企业管理员可以执行该操作"));
        // The Korvane cloud is read-only.
        QCOMPARE(msg(call("kv_token", "enterprisematrialedit", {{"kuName", "x"}, {"oper", 1}, {"qiyeId", 0}})),
                 QStringLiteral("Korvane云为只读的案例库，不能写入"));
    }

    void checkRecordsPreferSpecificationAndPlace()
    {
        const QJsonArray records = array(call("kv_token_user", "getmaterialcheckrecords",
                                              {{"params", QJsonObject{{"isAlgc", true}, {"hsbz", 1}, {"dd", "武汉市"}}},
                                               {"materials", QJsonArray{cement()}}}));
        QCOMPARE(records.size(), 6); // two models in three case projects
        const QJsonObject first = records.at(0).toObject();
        QCOMPARE(first.value("guid").toInt(), 11);
        QCOMPARE(first.value("ggxh").toString(), QStringLiteral("P.O 42.5"));
        QCOMPARE(first.value("gcdd").toString(), QStringLiteral("武汉市"));
        QCOMPARE(first.value("xmmc").toString(), QStringLiteral("武汉市某医院（案例）"));
        QCOMPARE(first.value("dj").toDouble(), first.value("ydjhs").toDouble());
        QVERIFY(first.value("ydjbhs").toDouble() < first.value("ydjhs").toDouble());
        QCOMPARE(texts(records, "ggxh").mid(0, 3), (QStringList{"P.O 42.5", "P.O 42.5", "P.O 42.5"}));

        const QJsonArray excl = array(call("kv_token_user", "getmaterialcheckrecords",
                                           {{"params", QJsonObject{{"isAlgc", false}, {"hsbz", 0}}},
                                            {"sjksyid", "cj-demo-1"},
                                            {"materials", QJsonArray{cement(), QJsonObject{{"guid", 12}, {"clmc", "不存在的材料"}}}}}));
        QCOMPARE(texts(excl, "guid"), (QStringList{"11", "11"}));
        QCOMPARE(excl.at(0).toObject().value("dj").toDouble(), excl.at(0).toObject().value("ydjbhs").toDouble());
        QCOMPARE(msg(call("kv_token_user", "getmaterialcheckrecords",
                          {{"sjksyid", "cj-zhangsan-1"}, {"materials", QJsonArray{cement()}}})),
                 QStringLiteral("价表不存在"));
    }

    void savePricesThenCheck()
    {
        const QJsonObject saved = call("kv_token_user", "savematerialprices",
                                       {{"sjksyid", "cj-demo-1"}, {"hsbz", 1}, {"sj", "2024年06月"}, {"dd", "成都市"},
                                        {"materials", QJsonArray{QJsonObject{{"guid", 1}, {"clmc", "普通硅酸盐水泥"}, {"ggxh", "P.O 42.5"}, {"dw", "t"}, {"tj", 500}},
                                                                 QJsonObject{{"guid", 2}, {"clmc", "石灰膏"}, {"dw", "m3"}, {"tj", 0}},
                                                                 QJsonObject{{"guid", 3}, {"clmc", ""}, {"tj", 9}}}}});
        QCOMPARE(code(saved), 0);
        QCOMPARE(object(saved).value("saved").toInt(), 1);
        QCOMPARE(object(saved).value("failed").toArray(), (QJsonArray{2, 3}));
        const QJsonArray records = array(call("kv_token_user", "getmaterialcheckrecords",
                                              {{"params", QJsonObject{{"hsbz", 1}}}, {"sjksyid", "cj-demo-1"},
                                               {"materials", QJsonArray{cement()}}}));
        QCOMPARE(records.at(0).toObject().value("ydjhs").toDouble(), 500.0);
        QCOMPARE(records.at(0).toObject().value("ydjbhs").toDouble(), 442.48);
        QCOMPARE(records.at(0).toObject().value("jgjzsj").toString(), QStringLiteral("2024年06月"));
        // Replaced, not added beside the old price.
        QCOMPARE(texts(records, "ggxh").count("P.O 42.5"), 1);
        QCOMPARE(code(call(west, "savematerialprices", {{"sjksyid", "cj-west-2024"}, {"materials", QJsonArray{cement()}}})), 3);
    }
};

QTEST_MAIN(TestMaterials)
#include "tst_materials.moc"
