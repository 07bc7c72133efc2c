#include "servicetestcase.h"

#include <QJsonDocument>
#include <QtTest>

using namespace cloudjson;

// Matching methods and the information behind matched bills.
class TestPricing : public ServiceTestCase
{
    Q_OBJECT
    static QJsonObject trenchBill()
    {
        return QJsonObject{{"qdbh", "010101003005"}, {"xmmc", "挖沟槽土方"}, {"dw", "m3"},
                           {"xmtz", "1.土壤类别：三类土\n2.挖土深度：2m以内"}, {"gznr", "1.土方开挖"},
                           {"sjkm", "QD"}, {"guidb", "77"}};
    }
    QJsonObject ppqd(const QString &token, int qdly, int tagNum = 10, const QJsonArray &gcids = QJsonArray(),
                     const QString &usetype = "1", const QString &ltdID = "0")
    {
        return call(token, "getppqd",
                    {{"usetype", usetype}, {"ltdID", ltdID}, {"getzj", "1"}, {"tagNum", QString::number(tagNum)},
                     {"cond", QJsonObject{{"qdly", qdly}, {"gcids", gcids}, {"qdkey", ""}, {"jsfsIndex", 0}}},
                     {"data", QJsonArray{trenchBill()}}});
    }

private slots:
    void getppqdReturnsPricedBillsWithCompositions()
    {
        const QJsonObject r = ppqd("kv_token_user", 3);
        QCOMPARE(code(r), 0);
        QVERIFY(array(r).size() >= 2 && array(r).size() <= 10);
        const QJsonObject first = array(r).at(0).toObject();
        QCOMPARE((QStringList{first.value("xmmc").toString(), first.value("jldw").toString()}), (QStringList{"挖沟槽土方", "m3"}));
        QVERIFY(first.value("qdbh").toString().startsWith("010101003"));
        QVERIFY(first.value("zhdj").toDouble() > 0.0 && first.value("id").toInt() > 0 && first.value("qdly").isString());
        // The composition is a JSON text {"zjnr": [...]} of quota lines with fee templates and material children.
        const QJsonArray lines = QJsonDocument::fromJson(first.value("zjnr").toString().toUtf8()).object().value("zjnr").toArray();
        QCOMPARE(lines.size(), 2);
        const QJsonObject de = lines.at(0).toObject();
        QCOMPARE((QStringList{de.value("TYPE").toString(), de.value("BH").toString(), de.value("XMMC").toString()}),
                 (QStringList{"DE", "1-1-8", "人工挖沟槽 三类土 深度2m以内"}));
        QVERIFY(de.value("DJ").toDouble() > 0.0);
        const QJsonArray fees = de.value("ZhfMbMx").toObject().value("MB").toObject().value("ROWS").toObject().value("FH").toArray();
        QCOMPARE(texts(fees, "MC"), (QStringList{"人工费", "材料费", "机械费", "管理费", "利润", "综合单价"}));
        QCOMPARE(de.value("ITEM").toArray().at(0).toObject().value("TYPE").toString(), QStringLiteral("CL"));
        // The price is the sum of the quota lines.
        double sum = 0.0;
        for (const QJsonValue &l : lines)
            sum += l.toObject().value("HJ").toDouble();
        QVERIFY(qAbs(sum * 1.03 - first.value("zhdj").toDouble()) < 0.05 || qAbs(sum - first.value("zhdj").toDouble()) < 0.05);
    }

    void getppqdHonoursLimitsAndSources()
    {
        QCOMPARE(array(ppqd("kv_token_user", 3, 3)).size(), 3);
        QVERIFY(array(ppqd("kv_token_user", 3, 50)).size() <= 10);
        const QJsonArray accumulated = array(ppqd("kv_token_user", 2));
        QVERIFY(!accumulated.isEmpty());
        QCOMPARE(texts(accumulated, "qdly").removeDuplicates(), accumulated.size() - 1);
        QCOMPARE(texts(accumulated, "qdly").first(), QStringLiteral("2"));
        const QJsonArray standard = array(ppqd("kv_token_user", 1));
        QVERIFY(!standard.isEmpty() && !texts(standard, "qdly").contains("2"));
        QVERIFY(array(ppqd("kv_token_user", 0)).isEmpty());
        // Selected projects limit the accumulated bills.
        const QJsonArray projects = array(call("kv_token_user", "getaccumulatedprojects", {{"qiyeID", -1}, {"usetype", 1}}));
        QCOMPARE(texts(projects, "xmmc"), QStringList{"成都市高新区某住宅项目"});
        QVERIFY(array(ppqd("kv_token_user", 2, 10, QJsonArray{"999999"})).isEmpty());
        QCOMPARE(array(ppqd("kv_token_user", 2, 10, QJsonArray{projects.at(0).toObject().value("tid")})).size(), accumulated.size());
    }

    void refusals_data()
    {
        replyColumns();
        const QByteArray trench = QJsonDocument(trenchBill()).toJson(QJsonDocument::Compact);
        const auto match = [&](const QByteArray &fields) -> QByteArray { return "{\"data\":[" + trench + "]," + fields + "}"; };
        replyRow("no data", "personal", "getppqd", R"({"cond":{}})", 1, "缺少参数data");
        replyRow("empty data", "personal", "getppqd", R"({"data":[]})", 1, "缺少要匹配的清单");
        replyRow("two bills", "personal", "getppqd", "{\"data\":[" + trench + "," + trench + "]}", 1, "参数data的条数超出限制");
        replyRow("bad source", "personal", "getppqd", match(R"("cond":{"qdly":7})"), 1, "清单来源参数错误");
        replyRow("cond not object", "personal", "getppqd", match(R"("cond":"x")"), 1, "参数cond格式错误");
        replyRow("oversize features", "personal", "getppqd", "{\"data\":[{\"xmmc\":\"a\",\"xmtz\":\"" + QByteArray(5000, 'x') + "\"}]}", 1,
                 "参数xmtz超出长度限制");
        replyRow("wrong usetype", "personal", "getppqd", match(R"("usetype":"2")"), 1, "请求的方法与所选服务器不符");
        replyRow("page 0", "personal", "matchqdtz", R"({"xmmc":"配管","sourceMask":1,"params":{"page":0}})", 1, "分页参数错误");
        replyRow("source of no bill", "personal", "getgcsldata", R"({"id":"abc"})", 4, "清单不存在或无权查看");
        replyRow("similar bills, count 4", "personal", "getsimilarbillprices", R"({"xmmc":"挖沟槽土方","jldw":"m3","matchNum":4})", 1,
                 "匹配个数只能是1、3或5");
    }
    void refusals() { checkReply(); }

    void projectInformation_data()
    {
        QTest::addColumn<QString>("tier");
        QTest::addColumn<QString>("method");
        QTest::addColumn<int>("oper");
        QTest::addColumn<QString>("project");
        const QString personal = "成都市高新区某住宅项目", korvane = "成都市某住宅小区（案例）", east = "南京市江北新区人才公寓";
        QTest::newRow("personal, pricing") << "personal" << "intelligencezjforpersonprojectinfo" << 0 << personal;
        QTest::newRow("personal, price check") << "personal" << "personprojectinfoforsinglepricecheck" << 0 << personal;
        QTest::newRow("korvane, pricing") << "korvane" << "intelligencezjforkvprojectinfo" << 1 << korvane;
        QTest::newRow("korvane, price check") << "korvane" << "kvprojectinfoforsinglepricecheck" << 1 << korvane;
        QTest::newRow("enterprise, pricing") << "east" << "intelligencezjforenterpriseprojectinfo" << 0 << east;
        QTest::newRow("enterprise, price check") << "east" << "enterpriseprojectinfoforsinglepricecheck" << 0 << east;
    }
    void projectInformation()
    {
        QFETCH(QString, tier);
        QFETCH(QString, method);
        QFETCH(int, oper);
        const bool enterprise = tier == "east";
        const QString token = tokenOf(tier);
        const QString usetype = tier == "korvane" ? "3" : enterprise ? "2" : "1";
        const QJsonObject bill = array(ppqd(token, 2, 1, QJsonArray(), usetype, enterprise ? "1001" : "0")).at(0).toObject();
        QJsonObject fields{{"id", bill.value("id")}, {"ly", bill.value("qdly").toString().toInt()}};
        if (enterprise)
            fields.insert("qiyeID", 1001);
        const QJsonObject r = call(token, method, fields);
        QCOMPARE(code(r), 0);
        const QJsonObject info = object(r);
        for (const char *key : {"xmmc", "dxmc", "dwmc", "qdgf", "jjde", "jsfs", "zhdjfs", "hbgd", "dd", "jgjzsj", "jsxs", "zjsjlx", "scrmc"})
            QVERIFY2(info.contains(QLatin1String(key)), key);
        QCOMPARE(info.value("oper").toInt(), oper);
        QCOMPARE(info.value("scrmc").toString(), QStringLiteral("演示用户"));
        QTEST(info.value("xmmc").toString(), "project");
        if (enterprise) // the enterprise body must name the login's enterprise
            QCOMPARE(code(call(token, method, {{"id", bill.value("id")}, {"ly", 2}, {"qiyeID", 1002}})), 3);
        QCOMPARE(code(call(token, method, {{"id", 999999}, {"ly", 2}})), 4);
        QCOMPARE(msg(call(token, method, {{"ly", 2}})), QStringLiteral("缺少参数id"));
    }

    void featureMatchesArePaged()
    {
        QJsonObject fields{{"xmmc", "配管"}, {"jldw", "m"}, {"xmtz", "刚性阻燃管 PC20 暗配"}, {"sourceMask", 3},
                           {"params", QJsonObject{{"page", 1}, {"pageSize", 2}}}};
        const QJsonObject first = call("kv_token_user", "matchqdtz", fields);
        QCOMPARE(code(first), 0);
        QCOMPARE(first.value("pageRowCount").toInt(), 2);
        QVERIFY(first.value("allCount").toInt() >= 2);
        const auto page = [](const QJsonObject &reply) { // standard bills, then accumulated ones
            QJsonArray all = object(reply).value("bzqds").toArray();
            for (const QJsonValue &v : object(reply).value("jlqds").toArray())
                all.append(v);
            return all;
        };
        QCOMPARE(page(first).size(), 2);
        const QJsonObject top = page(first).at(0).toObject();
        QCOMPARE(top.value("xmmc").toString(), QStringLiteral("配管"));
        QVERIFY(top.value("guida").isString());
        if (!object(first).value("bzqds").toArray().isEmpty())
            QVERIFY(!top.value("bzqdkmc").toString().isEmpty());
        fields["params"] = QJsonObject{{"page", 2}, {"pageSize", 2}};
        const QStringList firstIds = texts(page(first), "guida");
        for (const QString &id : texts(page(call("kv_token_user", "matchqdtz", fields)), "guida"))
            QVERIFY(!firstIds.contains(id));
        fields["sourceMask"] = 1;
        fields["params"] = QJsonObject{{"page", 1}};
        const QJsonObject standardOnly = call("kv_token_user", "matchqdtz", fields);
        QCOMPARE(standardOnly.value("pageRowCount").toInt(), 10);
        QVERIFY(object(standardOnly).value("jlqds").toArray().isEmpty());
    }

    void sourceInformationOfAMatch()
    {
        const QJsonObject page = call("kv_token_user", "matchqdtz",
                                      {{"xmmc", "实心砖墙"}, {"sourceMask", 2}, {"params", QJsonObject{{"page", 1}}}});
        const QString id = object(page).value("jlqds").toArray().at(0).toObject().value("guida").toString();
        const QJsonObject info = object(call("kv_token_user", "getgcsldata", {{"id", id}}));
        QCOMPARE(info.value("xmmc").toString(), QStringLiteral("成都市高新区某住宅项目"));
        QCOMPARE(info.value("qdmc").toString(), QStringLiteral("实心砖墙"));
        QCOMPARE(info.value("qdbh").toString(), QStringLiteral("010401003001"));
        QCOMPARE(info.value("dxmc").toString(), QStringLiteral("1#楼"));
        QCOMPARE(info.value("dwmc").toString(), QStringLiteral("建筑与装饰工程"));
    }

    void similarBillPrices()
    {
        QJsonObject fields = trenchBill();
        fields.insert("jldw", "m3");
        fields.insert("matchNum", 3);
        const QJsonArray bills = array(call("kv_token_user", "getsimilarbillprices", fields));
        QCOMPARE(bills.size(), 3);
        for (const QJsonValue &b : bills)
            QVERIFY(b.toObject().value("zhdj").toDouble() > 0.0);
        QCOMPARE(bills.at(0).toObject().value("xmmc").toString(), QStringLiteral("挖沟槽土方"));
    }

    void accumulatedProjectsByTier()
    {
        QCOMPARE(texts(array(call(east, "getaccumulatedprojects", {{"qiyeID", 1001}, {"usetype", 2}})), "xmmc"),
                 QStringList{"南京市江北新区人才公寓"});
        const QJsonArray kv = array(call("kv_token", "getaccumulatedprojects", {{"qiyeID", 0}, {"usetype", 3}}));
        QCOMPARE(texts(kv, "xmmc"), QStringList{"成都市某住宅小区（案例）"});
        QCOMPARE(texts(kv, "dq"), QStringList{"成都市"});
        QCOMPARE(texts(kv, "sj"), QStringList{"2024年03月"});
        QVERIFY(array(call("kv_token", "getaccumulatedprojects", {{"keyword", "武汉"}})).isEmpty());
        QCOMPARE(array(call("kv_token", "getaccumulatedprojects", {{"keyword", "成都"}})).size(), 1);
    }
};

QTEST_MAIN(TestPricing)
#include "tst_pricing.moc"
