#include "servicetestcase.h"

#include <QtTest>

using namespace cloudjson;

// Bill libraries, chapter trees, saving tasks and the upload of their bills.
class TestLibraries : public ServiceTestCase
{
    Q_OBJECT
    QString personalLibrary(const QString &name)
    {
        const QJsonArray libs = array(call("kv_token_user", "getBZQDKList", {{"reqeuestype", 0}, {"qyid", -1}}));
        for (const QJsonValue &v : libs)
            if (v.toObject().value("mc").toString() == name)
                return v.toObject().value("id").toString();
        return QString();
    }
    QJsonObject beginTask(const QString &library, const QString &taskId, const QString &chapter, const QString &mark,
                          int count = 5)
    {
        return call("kv_token_user", "listsavingtaskbeginforperson",
                    {{"qiyeID", -1}, {"mark", mark}, {"taskid", taskId}, {"qdcount", QString::number(count)},
                     {"bzqdkid", library}, {"zjid", chapter}});
    }
    static QJsonObject bill(const QString &guid, const QString &name)
    {
        return QJsonObject{{"guidb", guid}, {"qdbh", "010101001001"}, {"xmmc", name}, {"jldw", "m2"},
                           {"xmtz", "1.土壤类别：二类土"}, {"gznr", "1.土方挖填"}, {"zhdj", 3.5},
                           {"zjnr", "{\"zjnr\":[]}"}};
    }
    QStringList chapterNames(const QString &library, const QString &parent)
    {
        return texts(array(call("kv_token_user", "getchaptertreeforperson",
                                {{"bzqdkid", library}, {"zjid", parent}, {"sfjzzsm", "0"}})),
                     "zjmc");
    }

private slots:
    void listsLibrariesOfEachTier()
    {
        QCOMPARE(texts(array(call("kv_token_user", "getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}})), "mc"),
                 (QStringList{"我的清单库", "我的安装清单库"}));
        QCOMPARE(texts(array(call(east, "getBZQDKList", {{"reqeuestype", 1}, {"qyid", 1001}})), "mc"),
                 (QStringList{"华东集团房建清单库", "华东集团安装清单库"}));
        QCOMPARE(texts(array(call("kv_token", "getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}})), "mc"),
                 (QStringList{"Korvane案例清单库"}));
        const QJsonArray ids = array(call("kv_token_user", "getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}}));
        QVERIFY(ids.at(0).toObject().value("id").isString());
    }

    void newLibraryNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("expectedCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("50 characters") << QString(50, QChar(0x5e93)) << 0 << QStringLiteral("成功");
        QTest::newRow("51 characters") << QString(51, QChar(0x5e93)) << 1 << QStringLiteral("清单库名称不能超过50个字符");
        QTest::newRow("empty") << QString() << 1 << QStringLiteral("清单库名称不能为空");
        QTest::newRow("blank") << QStringLiteral("   ") << 1 << QStringLiteral("清单库名称不能为空");
        QTest::newRow("taken") << QStringLiteral("我的清单库") << 5 << QStringLiteral("清单库名称已存在");
    }

    void newLibraryNames()
    {
        QFETCH(QString, name);
        QFETCH(int, expectedCode);
        QFETCH(QString, message);
        const QJsonObject r = call("kv_token_user", "editNZQDK",
                                   {{"reqeuestype", 0}, {"qyid", 0}, {"czlx", 0},
                                    {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", name}}}});
        QCOMPARE(code(r), expectedCode);
        QCOMPARE(msg(r), message);
        const int count = array(call("kv_token_user", "getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}})).size();
        QCOMPARE(count, expectedCode == 0 ? 3 : 2);
        if (expectedCode == 0)
            QCOMPARE(object(r).value("mc").toString(), name);
    }

    void renameAndDeleteLibrary()
    {
        const QString id = personalLibrary("我的安装清单库");
        QCOMPARE(code(call("kv_token_user", "editNZQDK",
                           {{"czlx", 1}, {"para", QJsonObject{{"qdkid", id}, {"qdkmc", "安装库"}}}})),
                 0);
        QCOMPARE(personalLibrary("安装库"), id);
        QCOMPARE(code(call("kv_token_user", "editNZQDK", {{"czlx", 2}, {"para", QJsonObject{{"qdkid", id}}}})), 0);
        QVERIFY(personalLibrary("安装库").isEmpty());
        QCOMPARE(code(call("kv_token_user", "getchaptertreeforperson", {{"bzqdkid", id}})), 4);
        QCOMPARE(msg(call("kv_token_user", "editNZQDK", {{"czlx", 9}, {"para", QJsonObject{{"qdkid", id}}}})),
                 QStringLiteral("参数czlx格式错误"));
        QCOMPARE(msg(call("kv_token_user", "editNZQDK", {{"czlx", 0}})), QStringLiteral("缺少参数para"));
    }

    void permissionChecks_data()
    {
        QTest::addColumn<QString>("tokenKind");
        QTest::addColumn<QString>("method");
        QTest::addColumn<QJsonObject>("fields");
        QTest::addColumn<int>("expectedCode");
        QTest::addColumn<QString>("message");
        QTest::newRow("not logged in") << "anonymous" << "getBZQDKList" << QJsonObject{{"qyid", 0}} << 2
                                       << "未登录Korvane云或登录已失效，请重新登录";
        QTest::newRow("personal") << "personal" << "listeditpermissionjudgmentforperson"
                                  << QJsonObject{{"qiyeID", -1}, {"usetype", 1}} << 0 << "成功";
        QTest::newRow("enterprise admin") << "east" << "listeditpermissionjudgmentforenterprise"
                                          << QJsonObject{{"qiyeID", 1001}, {"usetype", 2}} << 0 << "成功";
        QTest::newRow("enterprise reader") << "west" << "listeditpermissionjudgmentforenterprise"
                                           << QJsonObject{{"qiyeID", 1002}, {"usetype", 2}} << 3
                                           << "您在该企业只有查看权限，没有编辑权限";
        QTest::newRow("korvane") << "korvane" << "listeditpermissionjudgmentforenterprise"
                                 << QJsonObject{{"qiyeID", 0}, {"usetype", 3}} << 3 << "Korvane云为只读的案例库，不能写入";
        QTest::newRow("big data as enterprise") << "bigdata" << "getchaptertreeforenterprise"
                                                << QJsonObject{{"qiyeID", 0}, {"usetype", 2}, {"bzqdkid", "7"}} << 0 << "成功";
        QTest::newRow("korvane with person method") << "korvane" << "listeditpermissionjudgmentforperson"
                                                    << QJsonObject{{"qiyeID", -1}, {"usetype", 1}} << 1
                                                    << "请求的方法与所选服务器不符";
        QTest::newRow("other enterprise id") << "east" << "listeditpermissionjudgmentforenterprise"
                                             << QJsonObject{{"qiyeID", 1002}, {"usetype", 2}} << 3
                                             << "请求的企业与登录的企业服务器不一致";
        QTest::newRow("library write, admin") << "east" << "getQDKQX" << QJsonObject{{"qyid", 1001}, {"qdkid", "4"}} << 0
                                              << "成功";
        QTest::newRow("library write, reader") << "west" << "getQDKQX" << QJsonObject{{"qyid", 1002}, {"qdkid", "6"}}
                                               << 3 << "您在该企业只有查看权限，没有编辑权限";
        QTest::newRow("library of other tier") << "east" << "getQDKQX" << QJsonObject{{"qyid", 1001}, {"qdkid", "6"}}
                                               << 4 << "清单库不存在";
    }

    void permissionChecks()
    {
        QFETCH(QString, tokenKind);
        QFETCH(QString, method);
        QFETCH(QJsonObject, fields);
        QFETCH(int, expectedCode);
        QFETCH(QString, message);
        if (tokenKind == "anonymous")
            session.clear();
        const QJsonObject r = call(tokenOf(tokenKind == "anonymous" ? "personal" : tokenKind), method, fields);
        QCOMPARE(code(r), expectedCode);
        QCOMPARE(msg(r), message);
    }

    void chapterTreeLoadsLazilyOrWhole()
    {
        const QString lib = personalLibrary("我的清单库");
        const QJsonArray top = array(call("kv_token_user", "getchaptertreeforperson", {{"bzqdkid", lib}, {"zjid", ""}}));
        QCOMPARE(texts(top, "zjmc"), (QStringList{"建筑工程", "装饰工程"}));
        QCOMPARE(texts(top, "state"), (QStringList{"closed", "closed"}));
        const QString building = top.at(0).toObject().value("_id").toString();
        QCOMPARE(chapterNames(lib, building), (QStringList{"土石方工程", "砌筑工程", "混凝土及钢筋混凝土工程"}));
        const QJsonArray whole =
            array(call("kv_token_user", "getchaptertreeforperson", {{"bzqdkid", lib}, {"sfjzzsm", "1"}}));
        const QJsonArray earth = whole.at(0).toObject().value("children").toArray().at(0).toObject().value("children").toArray();
        QCOMPARE(texts(earth, "zjmc"), (QStringList{"土方工程", "石方工程", "回填"}));
        QCOMPARE(texts(earth, "state"), (QStringList{"open", "open", "open"}));
        // An enterprise's tree through the enterprise method.
        const QJsonArray ent = array(call(east, "getchaptertreeforenterprise", {{"qiyeID", 1001}, {"bzqdkid", "5"}}));
        QCOMPARE(texts(ent, "zjmc"), QStringList{"安装工程"});
        QCOMPARE(code(call("kv_token_user", "getchaptertreeforperson", {{"bzqdkid", lib}, {"zjid", "zj4-1"}})), 4);
        QCOMPARE(msg(call("kv_token_user", "getchaptertreeforperson", {{"zjid", ""}})), QStringLiteral("缺少参数bzqdkid"));
        QCOMPARE(code(call("kv_token_user", "getchaptertreeforkv", {{"bzqdkid", lib}})), 1);
    }

    void savingTaskAndUpload()
    {
        const QString lib = personalLibrary("我的清单库");
        const QString chapter = QStringLiteral("zj%1-1").arg(lib);
        QCOMPARE(code(beginTask(lib, "{task-1}", chapter, "0", 2)), 0);
        QCOMPARE(msg(beginTask(lib, "{task-1}", chapter, "0")), QStringLiteral("保存任务已存在"));
        const QJsonObject up = call("kv_token_user", "uploadsavingtaskbills",
                                    {{"taskid", "{task-1}"},
                                     {"bills", QJsonArray{bill("g1", "平整场地"), bill("g2", ""), bill("g3", "挖一般土方"),
                                                          bill("g4", "多余的清单")}}});
        QCOMPARE(code(up), 0);
        QCOMPARE(object(up).value("saved").toInt(), 2);
        QCOMPARE(object(up).value("failed").toArray(), (QJsonArray{"g2", "g4"}));
        QCOMPARE(object(up).value("zjid").toString(), chapter);
    }

    void replaceClearsChapterOnFirstUpload()
    {
        const QString lib = personalLibrary("我的清单库");
        const QString chapter = QStringLiteral("zj%1-1").arg(lib);
        QVERIFY(code(beginTask(lib, "t-append", chapter, "0")) == 0);
        call("kv_token_user", "uploadsavingtaskbills", {{"taskid", "t-append"}, {"bills", QJsonArray{bill("a", "旧清单甲")}}});
        QVERIFY(code(beginTask(lib, "t-replace", chapter, "1")) == 0);
        call("kv_token_user", "uploadsavingtaskbills", {{"taskid", "t-replace"}, {"bills", QJsonArray{bill("b", "新清单乙")}}});
        call("kv_token_user", "uploadsavingtaskbills", {{"taskid", "t-replace"}, {"bills", QJsonArray{bill("c", "新清单丙")}}});
        const QJsonObject found = call("kv_token_user", "matchqdtz",
                                       {{"xmmc", "清单"}, {"sourceMask", 1}, {"params", QJsonObject{{"keyword", "清单"}}}});
        const QStringList names = texts(object(found).value("bzqds").toArray(), "xmmc");
        QVERIFY2(!names.contains("旧清单甲"), qPrintable(names.join(',')));
        QVERIFY(names.contains("新清单乙"));
        QVERIFY(names.contains("新清单丙"));
    }

    void defaultChapterAndSubChapters()
    {
        const QString lib = personalLibrary("我的安装清单库");
        QCOMPARE(code(beginTask(lib, "t-default", "", "0")), 0);
        QJsonObject b = bill("x", "配管");
        b.insert("zjlj", QJsonArray{"1#楼", "电气"});
        const QJsonObject up = call("kv_token_user", "uploadsavingtaskbills",
                                    {{"taskid", "t-default"}, {"mrzjid", "{mr-1}"}, {"bills", QJsonArray{b}}});
        QCOMPARE(object(up).value("zjid").toString(), QStringLiteral("{mr-1}"));
        QVERIFY(chapterNames(lib, "").contains("默认章节"));
        QCOMPARE(chapterNames(lib, "{mr-1}"), QStringList{"1#楼"});
    }

    void taskRefusals()
    {
        const QString lib = personalLibrary("我的清单库");
        QCOMPARE(msg(beginTask(lib, "t", "", "0", 0)), QStringLiteral("保存的清单数量应在1到100000之间"));
        QCOMPARE(msg(beginTask(lib, "t", "", "x")), QStringLiteral("参数mark格式错误"));
        QCOMPARE(msg(beginTask("4", "t", "", "0")), QStringLiteral("清单库不存在"));
        QCOMPARE(msg(beginTask(lib, "t", "zj4-1", "0")), QStringLiteral("章节不存在"));
        QCOMPARE(msg(call("kv_token", "listsavingtaskbeginforenterprise",
                          {{"qiyeID", 0}, {"taskid", "k"}, {"qdcount", "1"}, {"bzqdkid", "7"}, {"mark", "0"}})),
                 QStringLiteral("Korvane云为只读的案例库，不能写入"));
        QCOMPARE(msg(call(west, "listsavingtaskbeginforenterprise",
                          {{"qiyeID", 1002}, {"taskid", "w"}, {"qdcount", "1"}, {"bzqdkid", "6"}, {"mark", "0"}})),
                 QStringLiteral("您在该企业只有查看权限，没有编辑权限"));
        QCOMPARE(msg(call("kv_token_user", "uploadsavingtaskbills", {{"taskid", "none"}, {"bills", QJsonArray{}}})),
                 QStringLiteral("保存任务不存在或已失效"));
        QCOMPARE(msg(call("kv_token_user", "uploadsavingtaskbills", {{"taskid", "none"}, {"bills", "x"}})),
                 QStringLiteral("参数bills格式错误"));
    }

    void chapterInfoForUploadWithoutToken()
    {
        const QJsonObject r = svc->call(QString(), method("personchapterinfoforuploadqd"), session);
        QCOMPARE(code(r), 0);
        QCOMPARE(texts(array(r), "mc"), (QStringList{"我的清单库", "我的安装清单库"}));
        const QJsonArray zjs = array(r).at(0).toObject().value("zjs").toArray();
        QVERIFY(texts(zjs, "zjmc").contains("土方工程"));
    }

    void uploadSurvivesReopen()
    {
        const QString lib = personalLibrary("我的清单库");
        QCOMPARE(code(beginTask(lib, "t-keep", "", "0")), 0);
        call("kv_token_user", "uploadsavingtaskbills", {{"taskid", "t-keep"}, {"bills", QJsonArray{bill("k", "独特的保温隔热屋面")}}});
        svc->reopen();
        const QJsonObject found = call("kv_token_user", "matchqdtz",
                                       {{"xmmc", "独特的保温隔热屋面"}, {"sourceMask", 1}, {"params", QJsonObject{{"keyword", "独特"}}}});
        QCOMPARE(texts(object(found).value("bzqds").toArray(), "xmmc"), QStringList{"独特的保温隔热屋面"});
    }
};

QTEST_MAIN(TestLibraries)
#include "tst_libraries.moc"
