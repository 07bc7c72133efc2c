#include "servicetestcase.h"

#include <QtTest>

using namespace cloudjson;

// Material price libraries, their edits, price saves and price checks.
// (Who may edit which library: tst_tenancy.)
class TestMaterials : public ServiceTestCase
{
    Q_OBJECT
    QJsonObject personal(const QString &name, const QJsonObject &fields = {}) { return call("kv_token_user", name, fields); }
    QStringList personalNames() { return texts(object(personal("materiallist")).value("sjksys").toArray(), "kmms"); }
    QJsonArray check(const QJsonObject &params, const QString &library, const QJsonArray &materials)
    {
        QJsonObject fields{{"params", params}, {"materials", materials}};
        if (!library.isEmpty())
            fields.insert("sjksyid", library);
        return array(personal("getmaterialcheckrecords", fields));
    }
    static QJsonObject cement() { return QJsonObject{{"guid", 11}, {"clmc", "普通硅酸盐水泥"}, {"ggxh", "P.O 42.5"}, {"dw", "t"}}; }

private slots:
    void listsOfEachTier()
    {
        QCOMPARE(object(personal("materiallist")).value("sjksys").toArray().at(0).toObject(),
                 (QJsonObject{{"kmms", "我的材价库"}, {"_id", "cj-demo-1"}}));
        QCOMPARE(texts(array(call(east, "getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 1001}})), "kmms"),
                 (QStringList{"华东集团2024年材价库", "华东集团2023年材价库"}));
        QCOMPARE(array(call("kv_token", "getenterprisepricelist", {{"klb", "cj"}, {"qiyeID", 0}})).size(), 3);
    }

    void personalEdits()
    {
        const QJsonObject created = personal("personmaterialedit", {{"sjksyid", ""}, {"kmc", "新价表"}, {"oper", 1}});
        QCOMPARE(code(created), 0);
        const QString id = object(created).value("_id").toString();
        QVERIFY(!id.isEmpty());
        QCOMPARE(personalNames(), (QStringList{"我的材价库", "新价表"}));
        QCOMPARE(code(personal("personmaterialedit", {{"sjksyid", id}, {"kmc", "改名价表"}, {"oper", 2}})), 0);
        QCOMPARE(personalNames(), (QStringList{"我的材价库", "改名价表"}));
        QCOMPARE(msg(personal("personmaterialedit", {{"sjksyid", id}, {"kmc", "我的材价库"}, {"oper", 2}})), QStringLiteral("价表名称已存在"));
        QCOMPARE(code(personal("personmaterialedit", {{"sjksyid", id}, {"oper", 3}})), 0);
        QCOMPARE(personalNames(), QStringList{"我的材价库"});
        QCOMPARE(msg(personal("personmaterialedit", {{"sjksyid", id}, {"oper", 3}})), QStringLiteral("价表不存在"));
    }

    void refusals_data()
    {
        replyColumns();
        replyRow("new name taken", "personal", "personmaterialedit", R"({"kmc":"我的材价库","oper":1})", 5, "价表名称已存在");
        replyRow("empty name", "personal", "personmaterialedit", R"({"kmc":"","oper":1})", 1, "价表名称不能为空");
        replyRow("unknown edit", "personal", "personmaterialedit", R"({"kmc":"x","oper":4})", 1, "参数oper格式错误");
        replyRow("edit not a number", "personal", "personmaterialedit", R"({"kmc":"x","oper":"一"})", 1, "参数oper格式错误");
        replyRow("library kind not cj", "east", "getenterprisepricelist", R"({"klb":"qd","qiyeID":1001})", 1, "参数klb格式错误");
        replyRow("personal list, enterprise token", "east", "materiallist", "{}", 1, "请求的方法与所选服务器不符");
    }
    void refusals() { checkReply(); }

    void checkRecordsPreferSpecificationAndPlace()
    {
        const QJsonArray records = check({{"isAlgc", true}, {"hsbz", 1}, {"dd", "武汉市"}}, QString(), {cement()});
        QCOMPARE(records.size(), 6); // two models in three case projects
        const QJsonObject first = records.at(0).toObject();
        QCOMPARE(first.value("guid").toInt(), 11);
        QCOMPARE(first.value("gcdd").toString(), QStringLiteral("武汉市"));
        QCOMPARE(first.value("xmmc").toString(), QStringLiteral("武汉市某医院（案例）"));
        QCOMPARE(first.value("dj").toDouble(), first.value("ydjhs").toDouble());
        QVERIFY(first.value("ydjbhs").toDouble() < first.value("ydjhs").toDouble());
        QCOMPARE(texts(records, "ggxh").mid(0, 3), (QStringList{"P.O 42.5", "P.O 42.5", "P.O 42.5"}));

        const QJsonArray excl = check({{"isAlgc", false}, {"hsbz", 0}}, "cj-demo-1", {cement(), QJsonObject{{"guid", 12}, {"clmc", "不存在的材料"}}});
        QCOMPARE(texts(excl, "guid"), (QStringList{"11", "11"}));
        QCOMPARE(excl.at(0).toObject().value("dj").toDouble(), excl.at(0).toObject().value("ydjbhs").toDouble());
    }

    void savePricesThenCheck()
    {
        const QJsonArray materials{QJsonObject{{"guid", 1}, {"clmc", "普通硅酸盐水泥"}, {"ggxh", "P.O 42.5"}, {"dw", "t"}, {"tj", 500}},
                                   QJsonObject{{"guid", 2}, {"clmc", "石灰膏"}, {"dw", "m3"}, {"tj", 0}},
                                   QJsonObject{{"guid", 3}, {"clmc", ""}, {"tj", 9}}};
        const QJsonObject saved = personal("savematerialprices", {{"sjksyid", "cj-demo-1"}, {"hsbz", 1}, {"sj", "2024年06月"},
                                                                  {"dd", "成都市"}, {"materials", materials}});
        QCOMPARE(code(saved), 0);
        QCOMPARE(object(saved).value("saved").toInt(), 1);
        QCOMPARE(object(saved).value("failed").toArray(), (QJsonArray{2, 3}));
        const QJsonArray records = check({{"hsbz", 1}}, "cj-demo-1", {cement()});
        QCOMPARE(records.at(0).toObject().value("ydjhs").toDouble(), 500.0);
        QCOMPARE(records.at(0).toObject().value("ydjbhs").toDouble(), 442.48);
        QCOMPARE(records.at(0).toObject().value("jgjzsj").toString(), QStringLiteral("2024年06月"));
        // Replaced, not added beside the old price.
        QCOMPARE(texts(records, "ggxh").count("P.O 42.5"), 1);
    }
};

QTEST_MAIN(TestMaterials)
#include "tst_materials.moc"
