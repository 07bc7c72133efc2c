#include "hosttestcase.h"

#include <hostapi/business.h>
#include <hostapi/configuration.h>
#include <hostapi/datarecords.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/undo.h>

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
        const QString first = fx->appDir();
        HostTestCase::cleanup();
        HostTestCase::init();
        QVERIFY(fx->appDir() != first);
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
        QFETCH(QString, code);
        ProjectSettingHelper::SetProjectSettingsInfo(sampleSettings());
        GlobalSettingsInfo g = ProjectSettingHelper::GetGlobalSettingsInfo();
        g.project.place = place;
        if (!given.isEmpty())
            g.project.placeCode = given;
        ProjectSettingHelper::SetGlobalSettingsInfo(g);
        QCOMPARE(ProjectSettingHelper::GetProjectSettingsInfo().placeCode, code);
    }

    void oneRecordIsOneUndoStep()
    {
        JJBTableBase table("分部分项", JJBTableBase::BillTableKind);
        BaseDataItem *a = table.rootItem()->appendChild(bill(1, "030404017001"));
        BaseDataItem *b = table.rootItem()->appendChild(bill(2, "030411001001"));
        a->setData(BaseDataItem::FeaturesRole, "旧特征");
        QList<int> seen; // what an observer of the table (a view) is told
        table.rootItem()->setChangeObserver([&seen](BaseDataItem *, int role) { seen << role; });
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(&table, 8, "修改项目特征"));
        a->setData(BaseDataItem::FeaturesRole, "新特征1");
        a->setData(BaseDataItem::FeaturesRole, "新特征2");
        b->setData(BaseDataItem::FeaturesRole, "新特征B");
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(&table, 8, "inner"));
        b->setData(BaseDataItem::NameRole, "配管");
        RURecordControl::EndRecord();
        QCOMPARE(stack->count(), 0);
        RURecordControl::EndRecord();
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

    void emptyOrUnopenedRecordsLeaveNoStep()
    {
        BaseDataItem item(1);
        RURecordControl::EndRecord();
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(nullptr, 8, "x"));
        RURecordControl::EndRecord();
        item.setData(BaseDataItem::NameRole, "outside");
        QCOMPARE(stack->count(), 0);
        QVERIFY(!RURecordControl::IsRecording());
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
        QCOMPARE(TableBaseObject::GetTableRedoUIInfo(nullptr, 8, "c").tableName, QString());
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
        QCOMPARE(inner->parentItem(), sec);
        QCOMPARE(free->row(), 1);
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
        QFETCH(QString, date);
        QFETCH(int, taxIndex);
        QFETCH(bool, ok);
        ProjectSettingsInfo p = sampleSettings();
        p.time = time;
        p.taxMode = tax;
        ProjectSettingHelper::SetProjectSettingsInfo(p);
        WorkBaseObject work("电气工程");
        work.setJswjIndex(2);
        work.setDelbIndex(3);
        TQDNodeInfo info;
        QCOMPARE(JsMsBusiness::GetQDSaveAttr(&work, nullptr, info), ok);
        QCOMPARE(info.dateB, date);
        QCOMPARE(info.jsfsIndex, taxIndex);
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
};

QTEST_MAIN(TestProjectData)
#include "tst_projectdata.moc"
