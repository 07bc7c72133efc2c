#include "hosttestcase.h"

#include <hostapi/business.h>
#include <hostapi/configuration.h>
#include <hostapi/datarecords.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/undo.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QUndoStack>
#include <QtConcurrent>
#include <QtTest>

#include <atomic>

namespace {
ProjectSettingsInfo sampleSettings()
{
    return ProjectSettingsInfo{"2024年05月", "四川省成都市金牛区", "510106", "500m", "简易计税", "分部分项"};
}

std::unique_ptr<BaseDataItem> bill(qint64 id, const QString &code)
{
    auto item = std::make_unique<BaseDataItem>(id, BaseDataItem::BillKind);
    item->setData(BaseDataItem::CodeRole, code);
    return item;
}

QJsonObject fee(const char *bh, const char *mc)
{
    return QJsonObject{{"BH", bh}, {"MC", mc}, {"GS", "RGF+CLF+JXF"}, {"FL", "100"}, {"JE", "12.5"}, {"ZD", "ZJF"}};
}

QString text(const QJsonObject &o)
{
    return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact));
}

// A composition as the cloud writes it: a quota with a material and a fee
// template, a calculated line without unit or quantity, a line item.
QString sampleZjnr()
{
    QJsonObject quota{{"TYPE", "DE"}, {"BH", "03-4-12"}, {"XMMC", "配电箱安装"}, {"GCL", "2"}, {"DW", "台"}, {"DJ", 312.675}, {"HJ", "625.35"}};
    quota.insert("ZhfMbMx", QJsonObject{{"MB", QJsonObject{{"ROWS", QJsonObject{{"FH", QJsonArray{fee("1", "直接费"), fee("2", "管理费")}}}}}}});
    QJsonObject material{{"TYPE", "CL"}, {"BH", "C0001"}, {"XMMC", "配电箱"}, {"GCL", "2"}, {"DW", "台"}, {"TJ", "1200"}, {"HJ", "2400"}};
    material.insert("ZhfMbMx", text(QJsonObject{{"MB", QJsonObject{{"Rows", QJsonObject{{"Row", fee("9", "材料费")}}}}}}));
    quota.insert("ITEM", QJsonArray{material, QJsonObject{{"TYPE", "ZZ"}, {"BH", "ignored"}}});
    const QJsonObject calc{{"TYPE", "JS"}, {"BH", "JS1"}, {"XMMC", "安全文明施工费"}, {"DJ", ""}, {"GCL", "9"}};
    const QJsonObject item{{"TYPE", "XP"}, {"BH", "XP1"}, {"XMMC", "调试"}, {"DW", "项"}, {"DJ", "80"}, {"HJ", "80"}};
    return text(QJsonObject{{"zjnr", QJsonArray{quota, calc, QJsonObject{{"TYPE", "QQ"}, {"BH", "Q"}}, item}}});
}

QString describe(const cloudZjnr &l)
{
    return QStringList{l.getType(), QString::number(l.getId()), QString::number(l.getParentId()), l.getIsDe() ? "de" : "-",
                       l.getDebh(), l.getDemc(), l.getGcl(), l.getDw(), l.getZhdj(), l.getZhhj()}
        .join('|');
}

QString describe(const cloudFymb &f)
{
    return QStringList{f.getFybh(), f.getFymc(), f.getJsgs(), f.getFl(), f.getJe(), f.getJjbzd()}.join('|');
}
}

class TestProjectData : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<QUndoStack> stack;

private slots:
    void init()
    {
        HostTestCase::init();
        stack = std::make_unique<QUndoStack>();
        RURecordControl::setUndoStack(stack.get());
    }
    void cleanup()
    {
        RURecordControl::abandonRecord();
        RURecordControl::setUndoStack(nullptr);
        stack.reset();
        HostTestCase::cleanup();
    }

    void settingsPersistPerAppFolder()
    {
        const GlobalSettingsInfo fresh = ProjectSettingHelper::GetGlobalSettingsInfo();
        QVERIFY(!ProjectSettingHelper::HasProjectSettings());
        QCOMPARE(fresh.project, ProjectSettingsInfo());
        QVERIFY(fresh.bzqdChecked && fresh.jlqdChecked);
        QSignalSpy changed(ProjectSettingHelper::instance(), &ProjectSettingHelper::settingsChanged);
        GlobalSettingsInfo g = fresh;
        g.project = sampleSettings();
        g.bzqdChecked = false;
        const QString key = GlobalSettingsInfo::selectionKey("u1", "kv_token", 0);
        QCOMPARE(key, QStringLiteral("u1 kv_token 0"));
        g.setProjectSelection(key, QJsonArray{QJsonObject{{"tid", "p1"}, {"xmmc", "某住宅楼"}}});
        g.setProjectSelection("u1 ent_7 7", QJsonArray{QJsonObject{{"tid", "a"}}});
        g.setProjectSelection("u1 ent_7 7", QJsonArray{}); // an emptied selection is dropped
        ProjectSettingHelper::SetGlobalSettingsInfo(g);
        QCOMPARE(changed.count(), 1);
        const GlobalSettingsInfo back = ProjectSettingHelper::GetGlobalSettingsInfo();
        QVERIFY(back == g);
        QCOMPARE(back.projectSelections().keys(), QStringList{key});
        QCOMPARE(back.projectSelection(key).first().toObject().value("xmmc").toString(), QStringLiteral("某住宅楼"));
        QVERIFY(back.projectSelection("nobody").isEmpty());
        QCOMPARE(ProjectSettingHelper::GetProjectSettingsInfo(), sampleSettings());
        QVERIFY(ProjectSettingHelper::HasProjectSettings());
        // Another application folder has settings of its own.
        HostTestCase::cleanup();
        HostTestCase::init();
        QVERIFY(!ProjectSettingHelper::HasProjectSettings());
    }

    void newPlaceTextGetsItsCode_data()
    {
        QTest::addColumn<QString>("place");
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("code");
        QTest::newRow("district") << "四川省成都市金牛区" << "" << "510106";
        QTest::newRow("municipality") << "北京市市辖区东城区" << "" << "110101";
        QTest::newRow("city only") << "四川省成都市" << "" << "5101";
        QTest::newRow("unknown tail") << "四川省不存在" << "" << "51";
        QTest::newRow("unknown") << "火星" << "" << "";
        QTest::newRow("none") << "无" << "" << "";
        QTest::newRow("code given with the text is kept") << "某地" << "999999" << "999999";
    }
    void newPlaceTextGetsItsCode()
    {
        QFETCH(QString, place);
        QFETCH(QString, given);
        ProjectSettingHelper::SetProjectSettingsInfo(sampleSettings());
        GlobalSettingsInfo g = ProjectSettingHelper::GetGlobalSettingsInfo();
        g.project.place = place;
        if (!given.isEmpty())
            g.project.placeCode = given;
        ProjectSettingHelper::SetGlobalSettingsInfo(g);
        QTEST(ProjectSettingHelper::GetProjectSettingsInfo().placeCode, "code");
    }

    void oneRecordIsOneUndoStep()
    {
        JJBTableBase table("分部分项", JJBTableBase::BillTableKind);
        BaseDataItem *a = table.rootItem()->appendChild(bill(1, "030404017001"));
        BaseDataItem *b = table.rootItem()->appendChild(bill(2, "030411001001"));
        a->setData(BaseDataItem::FeaturesRole, "旧特征");
        QList<int> seen; // what an observer of the table (a view) is told
        table.rootItem()->setChangeObserver([&seen](BaseDataItem *, int role) { seen << role; });
        // A record never opened, or opened on no table, leaves no step.
        RURecordControl::EndRecord();
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(nullptr, 8, "x"));
        RURecordControl::EndRecord();
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(&table, 8, "修改项目特征"));
        a->setData(BaseDataItem::FeaturesRole, "新特征1");
        a->setData(BaseDataItem::FeaturesRole, "新特征2");
        b->setData(BaseDataItem::FeaturesRole, "新特征B");
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(&table, 8, "inner"));
        b->setData(BaseDataItem::NameRole, "配管");
        RURecordControl::EndRecord();
        QCOMPARE(stack->count(), 0);
        RURecordControl::EndRecord();
        QVERIFY(!RURecordControl::IsRecording());
        QCOMPARE(stack->count(), 1);
        QCOMPARE(stack->undoText(), QStringLiteral("修改项目特征"));
        stack->undo();
        QCOMPARE(a->text(BaseDataItem::FeaturesRole), QStringLiteral("旧特征"));
        QVERIFY(!b->data(BaseDataItem::FeaturesRole).isValid());
        QVERIFY(!b->data(BaseDataItem::NameRole).isValid());
        QCOMPARE(seen.count(BaseDataItem::FeaturesRole), 6); // three changes, three undone
        QCOMPARE(seen.count(BaseDataItem::NameRole), 2);
        stack->redo();
        QCOMPARE(a->text(BaseDataItem::FeaturesRole), QStringLiteral("新特征2"));
        QCOMPARE(b->text(BaseDataItem::NameRole), QStringLiteral("配管"));
    }

    void materialChangesUndo()
    {
        GeneralTableBase table("人材机汇总");
        GljBean m;
        m.SetGuid(5);
        m.SetTj(10.0);
        GljBean *stored = table.addMaterial(m);
        int seen = 0;
        table.setChangeObserver([&seen](GljBean *) { ++seen; });
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(&table, 0, "材料价格选用"));
        GljBean changed = *stored;
        changed.SetTj(12.34);
        table.updateMaterial(table.materialByGuid(5), changed);
        RURecordControl::EndRecord();
        QCOMPARE(stored->GetTj(), 12.34);
        stack->undo();
        QCOMPARE(stored->GetTj(), 10.0);
        QCOMPARE(seen, 2);
    }

    void tablesAndItemsAnswerTheHost()
    {
        WorkBaseObject work("电气工程");
        JJBTableBase *measures = work.addPricingTable("措施项目", JJBTableBase::MeasureTableKind);
        const TableRedoUIInfo info = TableBaseObject::GetTableRedoUIInfo(measures, 8, "修改项目特征");
        QCOMPARE(QStringList({info.tableName, QString::number(info.tableKind), info.unitWorkName, QString::number(info.recordKind)}),
                 (QStringList{"措施项目", "3004", "电气工程", "8"}));
        QVERIFY(measures->isMeasureTable());
        QCOMPARE(work.tableOfKind(3004), measures);
        BaseDataItem root(0, BaseDataItem::ProjectKind);
        auto section = std::make_unique<BaseDataItem>(10, BaseDataItem::SectionKind);
        section->setExclude(true);
        BaseDataItem *sec = root.appendChild(std::move(section));
        BaseDataItem *inner = sec->appendChild(bill(11, "011701001001"));
        BaseDataItem *free = root.appendChild(bill(12, "030404017001"));
        QVERIFY(inner->IsExcludeInChain() && !free->IsExcludeInChain());
        QCOMPARE(root.bills(), (QList<BaseDataItem *>{inner, free}));
        // A measure's number is its code until it is given one.
        QCOMPARE(inner->GetCsQdbh(), QStringLiteral("011701001001"));
        inner->setCsQdbh("1.1");
        QCOMPARE(inner->GetCsQdbh(), QStringLiteral("1.1"));
    }

    void itemValuesReadFromWorkers()
    {
        BaseDataItem item(1);
        item.setData(BaseDataItem::NameRole, "配管");
        std::atomic<bool> stop{false};
        std::atomic<int> bad{0};
        auto reader = QtConcurrent::run([&] {
            while (!stop) {
                const QString name = item.text(BaseDataItem::NameRole);
                if (name != QStringLiteral("配管") && name != QStringLiteral("配线"))
                    ++bad;
            }
        });
        for (int i = 0; i < 2000; ++i)
            item.setData(BaseDataItem::NameRole, i % 2 ? QStringLiteral("配管") : QStringLiteral("配线"));
        stop = true;
        reader.waitForFinished();
        QCOMPARE(bad.load(), 0);
    }

    void saveAttributes_data()
    {
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("tax");
        QTest::addColumn<QString>("date");
        QTest::addColumn<int>("taxIndex");
        QTest::addColumn<bool>("ok");
        QTest::newRow("simple") << "2024年05月" << "简易计税" << "2024-05" << 1 << true;
        QTest::newRow("general") << "2023年1月" << "一般计税" << "2023-01" << 0 << true;
        QTest::newRow("no time") << "" << "一般计税" << "" << 0 << false;
        QTest::newRow("bad month") << "2023年13月" << "" << "" << 0 << false;
    }
    void saveAttributes()
    {
        QFETCH(QString, time);
        QFETCH(QString, tax);
        ProjectSettingsInfo p = sampleSettings();
        p.time = time;
        p.taxMode = tax;
        ProjectSettingHelper::SetProjectSettingsInfo(p);
        WorkBaseObject work("电气工程");
        work.setJswjIndex(2);
        work.setDelbIndex(3);
        TQDNodeInfo info;
        QTEST(JsMsBusiness::GetQDSaveAttr(&work, nullptr, info), "ok");
        QTEST(info.dateB, "date");
        QTEST(info.jsfsIndex, "taxIndex");
        QCOMPARE(info.jswjIndex, 2);
        QCOMPARE(info.delbIndex, 3);
        QCOMPARE(info.ddCode, QStringLiteral("510106"));
    }

    void appTypeFollowsConfiguration()
    {
        DataLibrary::Instance()->clearAppType();
        QCOMPARE(AppType(), 16);
        HostConfig::setValue("AppType", "3");
        QCOMPARE(AppType(), 3);
        DataLibrary::Instance()->setAppType(16);
        QCOMPARE(AppType(), 16);
        DataLibrary::Instance()->clearAppType();
    }

    void zjnrLines_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("fields"); // type|id|parent|de|code|name|quantity|unit|price|total
        QTest::addColumn<QStringList>("fees");
        const QString direct = "1|直接费|RGF+CLF+JXF|100|12.5|ZJF", management = "2|管理费|RGF+CLF+JXF|100|12.5|ZJF";
        // A parent comes first, its child next; unknown kinds are skipped.
        QTest::newRow("quota, price rounded") << 0 << "DE|1|-1|de|03-4-12|配电箱安装|2|台|312.68|625.35"
                                              << QStringList{direct, management};
        // A material line's price is its adjusted price; its fee template is
        // spelled "Rows"/"Row", given as JSON text, a single row object.
        QTest::newRow("material below it") << 1 << "CL|2|1|-|C0001|配电箱|2|台|1200.00|2400.00"
                                           << QStringList{"9|材料费|RGF+CLF+JXF|100|12.5|ZJF"};
        // A calculated line reads no quantity; its empty price shows "0.00".
        QTest::newRow("calculated") << 2 << "JS|3|-1|de|JS1|安全文明施工费|||0.00|" << QStringList();
        QTest::newRow("line item") << 3 << "XP|4|-1|de|XP1|调试||项|80.00|80.00" << QStringList();
    }
    void zjnrLines()
    {
        QFETCH(int, line);
        const QList<cloudZjnr> lines = cloudZjnr::parseList(sampleZjnr());
        QCOMPARE(lines.size(), 4);
        QTEST(describe(lines[line]), "fields");
        QStringList seen;
        for (const cloudFymb &f : lines[line].getFymblist())
            seen << describe(f);
        QTEST(seen, "fees");
        QCOMPARE(cloudZjnr::parseList(cloudZjnr::toZjnrText(lines)), lines);
    }

    // Bad cloud text reads as nothing; any JSON object still makes a bean.
    void badInput_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<bool>("object");
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("not json") << "{zjnr:" << false;
        QTest::newRow("array") << "[1]" << false;
        QTest::newRow("garbage") << "id=3" << false;
        QTest::newRow("no array") << "{\"zjnr\":\"x\"}" << true;
        QTest::newRow("no type") << "{\"zjnr\":[{\"BH\":\"1\"}]}" << true;
    }
    void badInput()
    {
        QFETCH(QString, input);
        QVERIFY(cloudZjnr::parseList(input).isEmpty());
        const CloudZjBean bean(input);
        QTEST(bean.isValid(), "object");
        QCOMPARE(bean.getId(), 0);
        QVERIFY(bean.getZjnrlist().isEmpty());
    }

    void zjBeanReadsMatchReplyElementAndRoundTrips()
    {
        const QJsonObject element{{"qdbh", "030404017001"}, {"xmmc", "配电箱\n安装"}, {"jldw", "台"}, {"xmtz", "1.名称:配电箱\n2.型号:AL1"},
                                  {"gznr", "1.本体安装"}, {"zhdj", "1523.4"}, {"id", 42}, {"qdly", "2"},
                                  {"jzsj", "2024年05月"}, {"dd", "成都市"}, {"zjnr", sampleZjnr()}};
        const CloudZjBean bean(text(element));
        QVERIFY(bean.isValid());
        const QStringList fields{QString::number(bean.getId()), QString::number(bean.getLy()), bean.getXmbh(), bean.getXmmc(),
                                 bean.getDw(), QString::number(bean.getZhdj()), bean.getXmtz(), bean.GetGcnr(), bean.getJzsj(),
                                 bean.getDd()};
        QCOMPARE(fields.join('|'),
                 QStringLiteral("42|2|030404017001|配电箱\n安装|台|1523.4|1.名称:配电箱\n2.型号:AL1|1.本体安装|2024年05月|成都市"));
        QCOMPARE(bean.getZjnrlist(), cloudZjnr::parseList(sampleZjnr()));
        // The string form is one line and reads back the same.
        const QString form = bean.toString();
        QVERIFY(!form.contains('\n'));
        QCOMPARE(CloudZjBean(form), bean);
        QCOMPARE(CloudZjBean(form).toString(), form);
    }

    void znytzBeanFromBothSources()
    {
        const QJsonObject e{{"xmmc", "配电箱"}, {"xmtz", "名称"}, {"gznr", "安装"}, {"guida", 1234567}, {"bzqdkmc", "GB50856-2024"}};
        const CloudZnytzBean standard = CloudZnytzBean::fromJson(e, true);
        QCOMPARE(standard.getXmid(), QStringLiteral("1234567"));
        QVERIFY(standard.getBzQd());
        QCOMPARE(standard.getQdkMc(), QStringLiteral("GB50856-2024"));
        QCOMPARE(standard.getGcnr(), QStringLiteral("安装"));
        const CloudZnytzBean project = CloudZnytzBean::fromJson(e, false);
        QVERIFY(!project.getBzQd());
        QCOMPARE(project.getQdkMc(), QString());
        QCOMPARE(CloudZnytzBean::fromJson(QJsonObject{}, false).getXmid(), QString());
    }

    void materialRecordsRoundTrip()
    {
        CloudCjyjcBean r = CloudCjyjcBean::fromJson(
            QJsonObject{{"guid", "12"}, {"ydjhs", 5.65}, {"ydjbhs", "5"}, {"clmc", "镀锌钢管"}, {"jgjzsj", "2024年03月"}});
        QCOMPARE(r.getGuid(), 12);
        QCOMPARE(r.getYdjhs(), 5.65);
        QCOMPARE(r.getYdjbhs(), 5.0);
        QCOMPARE(CloudCjyjcBean::fromJson(r.toJson()).toJson(), r.toJson());
    }
};

QTEST_MAIN(TestProjectData)
#include "tst_projectdata.moc"
