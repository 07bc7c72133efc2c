#include "servicetestcase.h"

#include <QtTest>

using namespace cloudjson;

// Bill libraries, chapter trees, saving tasks and the upload of their bills.
// demo's personal libraries are "1" (building) and "2" (installation); the
// chapters of library n are "zj<n>-1", "zj<n>-2", ...
class TestLibraries : public ServiceTestCase
{
    Q_OBJECT
    QJsonObject personal(const QString &name, const QJsonObject &fields = {}) { return call("kv_token_user", name, fields); }
    QStringList libraryNames() { return texts(array(personal("getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}})), "mc"); }
    QJsonObject beginTask(const QString &library, const QString &taskId, const QString &chapter, const QString &mark = "0")
    {
        return personal("listsavingtaskbeginforperson", {{"qiyeID", -1}, {"mark", mark}, {"taskid", taskId}, {"qdcount", "5"},
                                                         {"bzqdkid", library}, {"zjid", chapter}});
    }
    QJsonObject upload(const QString &taskId, const QJsonArray &bills, const QString &defaultChapter = QString())
    {
        QJsonObject fields{{"taskid", taskId}, {"bills", bills}};
        if (!defaultChapter.isEmpty())
            fields.insert("mrzjid", defaultChapter);
        return personal("uploadsavingtaskbills", fields);
    }
    static QJsonObject bill(const QString &guid, const QString &name)
    {
        return QJsonObject{{"guidb", guid}, {"qdbh", "010101001001"}, {"xmmc", name}, {"jldw", "m2"}, {"xmtz", "1.土壤类别：二类土"},
                           {"gznr", "1.土方挖填"}, {"zhdj", 3.5}, {"zjnr", "{\"zjnr\":[]}"}};
    }
    QStringList chapterNames(const QString &library, const QString &parent)
    {
        return texts(array(personal("getchaptertreeforperson", {{"bzqdkid", library}, {"zjid", parent}, {"sfjzzsm", "0"}})), "zjmc");
    }
    // Standard bills of demo's libraries found by `keyword`.
    QStringList savedBills(const QString &keyword)
    {
        const QJsonObject found = personal("matchqdtz", {{"xmmc", keyword}, {"sourceMask", 1}, {"params", QJsonObject{{"keyword", keyword}}}});
        return texts(object(found).value("bzqds").toArray(), "xmmc");
    }

private slots:
    void listsLibrariesOfEachTier()
    {
        QCOMPARE(libraryNames(), (QStringList{"我的清单库", "我的安装清单库"}));
        QVERIFY(array(personal("getBZQDKList")).at(0).toObject().value("id").isString());
        QCOMPARE(texts(array(call(east, "getBZQDKList", {{"reqeuestype", 1}, {"qyid", 1001}})), "mc"),
                 (QStringList{"华东集团房建清单库", "华东集团安装清单库"}));
        QCOMPARE(texts(array(call("kv_token", "getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}})), "mc"), QStringList{"Korvane案例清单库"});
    }

    void newLibraryNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("expectedCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("50 characters") << QString(50, QChar(0x5e93)) << 0 << "成功";
        QTest::newRow("51 characters") << QString(51, QChar(0x5e93)) << 1 << "清单库名称不能超过50个字符";
        QTest::newRow("empty") << QString() << 1 << "清单库名称不能为空";
        QTest::newRow("blank") << "   " << 1 << "清单库名称不能为空";
        QTest::newRow("taken") << "我的清单库" << 5 << "清单库名称已存在";
    }
    void newLibraryNames()
    {
        QFETCH(QString, name);
        QFETCH(int, expectedCode);
        QCOMPARE(libraryNames().size(), 2);
        const QJsonObject r = personal("editNZQDK", {{"czlx", 0}, {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", name}}}});
        QCOMPARE(code(r), expectedCode);
        QTEST(msg(r), "message");
        QCOMPARE(libraryNames().size(), expectedCode == 0 ? 3 : 2);
        if (expectedCode == 0)
            QCOMPARE(object(r).value("mc").toString(), name);
    }

    void renameAndDeleteLibrary()
    {
        QCOMPARE(code(personal("editNZQDK", {{"czlx", 1}, {"para", QJsonObject{{"qdkid", "2"}, {"qdkmc", "安装库"}}}})), 0);
        QCOMPARE(libraryNames(), (QStringList{"我的清单库", "安装库"}));
        QCOMPARE(code(personal("editNZQDK", {{"czlx", 2}, {"para", QJsonObject{{"qdkid", "2"}}}})), 0);
        QCOMPARE(libraryNames(), QStringList{"我的清单库"});
        QCOMPARE(code(personal("getchaptertreeforperson", {{"bzqdkid", "2"}})), 4);
    }

    void refusals_data()
    {
        replyColumns();
        const char *task = R"({"qiyeID":-1,"mark":"0","taskid":"t","qdcount":"5","bzqdkid":"1","zjid":""})";
        replyRow("edit kind out of range", "personal", "editNZQDK", R"({"czlx":9,"para":{"qdkid":"2"}})", 1, "参数czlx格式错误");
        replyRow("edit without para", "personal", "editNZQDK", R"({"czlx":0})", 1, "缺少参数para");
        replyRow("tree without library", "personal", "getchaptertreeforperson", R"({"zjid":""})", 1, "缺少参数bzqdkid");
        replyRow("tree below another library's chapter", "personal", "getchaptertreeforperson", R"({"bzqdkid":"1","zjid":"zj4-1"})", 4,
                 "章节不存在");
        replyRow("personal library, korvane method", "personal", "getchaptertreeforkv", R"({"bzqdkid":"1"})", 1,
                 "请求的方法与所选服务器不符");
        replyRow("task of no bills", "personal", "listsavingtaskbeginforperson", QByteArray(task).replace(R"("5")", R"("0")"), 1,
                 "保存的清单数量应在1到100000之间");
        replyRow("task mark not a number", "personal", "listsavingtaskbeginforperson",
                 QByteArray(task).replace(R"("mark":"0")", R"("mark":"x")"), 1, "参数mark格式错误");
        replyRow("task into another tier's library", "personal", "listsavingtaskbeginforperson",
                 QByteArray(task).replace(R"("bzqdkid":"1")", R"("bzqdkid":"4")"), 4, "清单库不存在");
        replyRow("task into another library's chapter", "personal", "listsavingtaskbeginforperson",
                 QByteArray(task).replace(R"("zjid":"")", R"("zjid":"zj4-1")"), 4, "章节不存在");
        replyRow("upload to no task", "personal", "uploadsavingtaskbills", R"({"taskid":"none","bills":[]})", 4, "保存任务不存在或已失效");
        replyRow("upload bills not a list", "personal", "uploadsavingtaskbills", R"({"taskid":"none","bills":"x"})", 1,
                 "参数bills格式错误");
    }
    void refusals() { checkReply(); }

    void chapterTreeLoadsLazilyOrWhole()
    {
        const QJsonArray top = array(personal("getchaptertreeforperson", {{"bzqdkid", "1"}, {"zjid", ""}}));
        QCOMPARE(texts(top, "zjmc"), (QStringList{"建筑工程", "装饰工程"}));
        QCOMPARE(texts(top, "state"), (QStringList{"closed", "closed"}));
        QCOMPARE(chapterNames("1", top.at(0).toObject().value("_id").toString()),
                 (QStringList{"土石方工程", "砌筑工程", "混凝土及钢筋混凝土工程"}));
        const QJsonArray whole = array(personal("getchaptertreeforperson", {{"bzqdkid", "1"}, {"sfjzzsm", "1"}}));
        const QJsonArray earth = whole.at(0).toObject().value("children").toArray().at(0).toObject().value("children").toArray();
        QCOMPARE(texts(earth, "zjmc"), (QStringList{"土方工程", "石方工程", "回填"}));
        QCOMPARE(texts(earth, "state"), (QStringList{"open", "open", "open"}));
        // An enterprise's tree through the enterprise method.
        QCOMPARE(texts(array(call(east, "getchaptertreeforenterprise", {{"qiyeID", 1001}, {"bzqdkid", "5"}})), "zjmc"),
                 QStringList{"安装工程"});
    }

    void savingTaskAndUpload()
    {
        QCOMPARE(code(personal("listsavingtaskbeginforperson", {{"qiyeID", -1}, {"mark", "0"}, {"taskid", "{task-1}"},
                                                                {"qdcount", "2"}, {"bzqdkid", "1"}, {"zjid", "zj1-1"}})),
                 0);
        QCOMPARE(msg(beginTask("1", "{task-1}", "zj1-1")), QStringLiteral("保存任务已存在"));
        // Bills without a name, and those beyond the announced count, fail.
        const QJsonObject up = upload("{task-1}", {bill("g1", "平整场地"), bill("g2", ""), bill("g3", "挖一般土方"), bill("g4", "多余的清单")});
        QCOMPARE(code(up), 0);
        QCOMPARE(object(up).value("saved").toInt(), 2);
        QCOMPARE(object(up).value("failed").toArray(), (QJsonArray{"g2", "g4"}));
        QCOMPARE(object(up).value("zjid").toString(), QStringLiteral("zj1-1"));
    }

    void replaceClearsChapterOnFirstUploadAndSurvivesReopen()
    {
        QCOMPARE(code(beginTask("1", "t-append", "zj1-1")), 0);
        upload("t-append", {bill("a", "旧清单甲")});
        QCOMPARE(code(beginTask("1", "t-replace", "zj1-1", "1")), 0);
        upload("t-replace", {bill("b", "新清单乙")});
        upload("t-replace", {bill("c", "新清单丙")});
        reopen(); // what was uploaded survives a restart of the service
        const QStringList names = savedBills("清单");
        QVERIFY2(!names.contains("旧清单甲"), qPrintable(names.join(',')));
        QVERIFY(names.contains("新清单乙"));
        QVERIFY(names.contains("新清单丙"));
    }

    void defaultChapterAndSubChapters()
    {
        QCOMPARE(code(beginTask("2", "t-default", "")), 0);
        QJsonObject b = bill("x", "配管");
        b.insert("zjlj", QJsonArray{"1#楼", "电气"});
        QCOMPARE(object(upload("t-default", {b}, "{mr-1}")).value("zjid").toString(), QStringLiteral("{mr-1}"));
        QVERIFY(chapterNames("2", "").contains("默认章节"));
        QCOMPARE(chapterNames("2", "{mr-1}"), QStringList{"1#楼"});
    }

    void chapterInfoForUploadWithoutToken()
    {
        const QJsonObject r = send(QString(), method("personchapterinfoforuploadqd"), session);
        QCOMPARE(code(r), 0);
        QCOMPARE(texts(array(r), "mc"), (QStringList{"我的清单库", "我的安装清单库"}));
        QVERIFY(texts(array(r).at(0).toObject().value("zjs").toArray(), "zjmc").contains("土方工程"));
    }
};

QTEST_MAIN(TestLibraries)
#include "tst_libraries.moc"
