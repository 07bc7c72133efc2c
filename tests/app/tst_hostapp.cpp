#include "hosttestcase.h"

#include <billdetailpanel.h>
#include <billstoragehost.h>
#include <billtreemodel.h>
#include <channelsetup.h>
#include <dialogregistry.h>
#include <elidedlabel.h>
#include <hostprogram.h>
#include <mainwindow.h>
#include <materialtablemodel.h>
#include <projectdocument.h>
#include <settingspanel.h>

#include <hostapi/hostconfig.h>
#include <hostapi/modalrun.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/round.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/staticpriloginobj.h>
#include <hostapi/tablebaseobject.h>
#include <hostapi/users.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDialog>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeView>
#include <QUndoStack>
#include <QtTest>

namespace {
int s_tourOpens = 0;

QWidget *openTestDialog(HostContext &host)
{
    ++s_tourOpens;
    QDialog dialog(host.window);
    dialog.resize(320, 200);
    ModalRun::exec(&dialog);
    return nullptr;
}

QWidget *openBlocking(HostContext &host)
{
    QDialog dialog(host.window);
    dialog.resize(300, 150);
    dialog.exec();
    return nullptr;
}

CloudCjyjcBean priceResult(int guid, double price, bool checked)
{
    CloudCjyjcBean r;
    r.setGuid(guid);
    r.setYdj(price);
    r.setChecked(checked);
    return r;
}

QWidget *openNonModal(HostContext &host)
{
    auto *window = new QWidget(host.window, Qt::Window);
    window->resize(200, 120);
    window->show();
    return window;
}
}

class TestHostApp : public HostTestCase
{
    Q_OBJECT
    std::unique_ptr<ProjectDocument> project;

private slots:
    void init()
    {
        HostTestCase::init();
        project = std::make_unique<ProjectDocument>();
        QString error;
        QVERIFY2(project->loadFile(ProjectDocument::samplePath(), &error), qPrintable(error));
    }
    void cleanup()
    {
        project.reset();
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void sampleProjectCounts()
    {
        QCOMPARE(project->billTable()->rootItem()->childCount(), 6);
        QCOMPARE(project->billTable()->rootItem()->bills().size(), 72);
        QCOMPARE(project->measureTable()->rootItem()->bills().size(), 9);
        QCOMPARE(project->materialTable()->materials().size(), 32);
        QCOMPARE(project->unitWork()->GetQdSpec(), QStringLiteral("GB24"));
        for (BaseDataItem *bill : project->billTable()->rootItem()->bills()) {
            QCOMPARE(bill->text(BaseDataItem::CodeRole).size(), 12);
            for (int role : {BaseDataItem::NameRole, BaseDataItem::UnitRole, BaseDataItem::WorkContentRole})
                QVERIFY(!bill->text(role).isEmpty());
            QVERIFY(bill->data(BaseDataItem::UnitPriceRole).toDouble() > 0);
        }
        // Organisation measures are marked for the cloud functions to skip.
        const QList<BaseDataItem *> measures = project->measureTable()->rootItem()->bills();
        QVERIFY(!measures.first()->IsExcludeInChain());
        QVERIFY(measures.last()->IsExcludeInChain());
        QCOMPARE(measures.last()->text(BaseDataItem::KindRole), QStringLiteral("ZJXQDB"));
        QCOMPARE(measures.first()->GetCsQdbh(), QStringLiteral("1.1"));
    }

    void sampleSettingsSeedOnceAndShow()
    {
        project->seedProjectSettings();
        SettingsPanel panel;
        ProjectSettingsInfo s = ProjectSettingHelper::GetProjectSettingsInfo();
        QCOMPARE((QStringList{s.time, s.placeCode, s.taxMode}), (QStringList{"2024年05月", "420103", "一般计税"}));
        QCOMPARE(panel.valueText(0), QStringLiteral("2024年05月"));
        s.time = "2025年01月";
        s.place = "四川省成都市金牛区";
        s.placeCode = "510106";
        ProjectSettingHelper::SetProjectSettingsInfo(s);
        project->seedProjectSettings();
        QCOMPARE(ProjectSettingHelper::GetProjectSettingsInfo().time, QStringLiteral("2025年01月"));
        QCOMPARE(panel.valueText(1), QStringLiteral("四川省成都市金牛区（510106）"));
    }

    void neighbourBills()
    {
        const QList<BaseDataItem *> bills = project->allBills();
        QCOMPARE(project->neighbourBill(bills[0], true, false), bills[1]);
        QCOMPARE(project->neighbourBill(bills[0], false, false), nullptr);
        bills[1]->setData(BaseDataItem::UnitPriceRole, 0.0);
        bills[2]->setData(BaseDataItem::UnitPriceRole, 0.0);
        QCOMPARE(project->neighbourBill(bills[0], true, true), bills[1]);
        QCOMPARE(project->neighbourBill(bills[1], true, true), bills[2]);
        QCOMPARE(project->neighbourBill(bills[2], true, true), nullptr);
        QCOMPARE(project->tableOf(bills.last()), project->measureTable());
    }

    void modelsPassTester()
    {
        BillTreeModel bills(project->billTable());
        QAbstractItemModelTester billTester(&bills, QAbstractItemModelTester::FailureReportingMode::QtTest);
        MaterialTableModel materials(project->materialTable());
        QAbstractItemModelTester materialTester(&materials, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(bills.rowCount(), 6);
        const QModelIndex firstBill = bills.index(0, BillTreeModel::NameColumn, bills.index(0, 0));
        QCOMPARE(firstBill.data().toString(), project->billTable()->rootItem()->bills().first()->text(BaseDataItem::NameRole));
        QCOMPARE(bills.headerData(BillTreeModel::PriceColumn, Qt::Horizontal).toString(), QStringLiteral("综合单价"));
        QCOMPARE(materials.index(0, MaterialTableModel::NameColumn).data().toString(), QStringLiteral("镀锌钢管"));
        // An item of another table has no index here.
        QVERIFY(!bills.indexOf(project->measureTable()->rootItem()->bills().first()).isValid());
    }

    void compositionIsOneUndoStepAndViewFollows()
    {
        MainWindow window(project.get());
        BaseDataItem *bill = project->billTable()->rootItem()->bills().first();
        const double before = bill->data(BaseDataItem::UnitPriceRole).toDouble();
        const QString features = bill->text(BaseDataItem::FeaturesRole);
        auto *view = window.billView(0);
        QSignalSpy changed(view->model(), &QAbstractItemModel::dataChanged);
        project->applyComposition(bill, QJsonObject{{"zhdj", 88.5}, {"xmtz", "1.名称:新特征"}}, true);
        QCOMPARE(bill->data(BaseDataItem::UnitPriceRole).toDouble(), 88.5);
        QCOMPARE(bill->text(BaseDataItem::FeaturesRole), QStringLiteral("1.名称:新特征"));
        QCOMPARE(window.undoStack()->count(), 1);
        QCOMPARE(window.undoStack()->undoText(), QStringLiteral("智能组价"));
        QVERIFY(changed.count() >= 2);
        window.undoStack()->undo();
        QCOMPARE(bill->data(BaseDataItem::UnitPriceRole).toDouble(), before);
        QCOMPARE(bill->text(BaseDataItem::FeaturesRole), features);
        QCOMPARE(view->model()->index(0, BillTreeModel::PriceColumn, view->model()->index(0, 0)).data().toString(),
                 Round(before, 2, true));
        QCOMPARE(window.detailPanel()->featuresText(), features);
    }

    void featureTextGoesToFeaturesOrWorkContent()
    {
        MainWindow window(project.get());
        BaseDataItem *bill = project->billTable()->rootItem()->bills().first();
        BaseDataItem *measure = project->measureTable()->rootItem()->bills().first();
        window.context().setCurrentBill(measure);
        QCOMPARE(window.context().currentTable, project->measureTable());
        QCOMPARE(window.detailPanel()->headerText(), QStringLiteral("当前清单：031401001001 脚手架（项）"));
        QCOMPARE(window.context().sjkm(), QStringLiteral("ZJXQDA"));
        QCOMPARE(window.billView(1)->currentIndex().internalPointer(), measure);
        const QString oldFeatures = bill->text(BaseDataItem::FeaturesRole);
        project->applyFeatureText(bill, "1.名称:桥架配线");
        project->applyFeatureText(measure, "1.搭拆脚手架");
        QCOMPARE(bill->text(BaseDataItem::FeaturesRole), QStringLiteral("1.名称:桥架配线"));
        QCOMPARE(measure->text(BaseDataItem::WorkContentRole), QStringLiteral("1.搭拆脚手架"));
        QCOMPARE(measure->text(BaseDataItem::FeaturesRole), QString());
        QCOMPARE(window.detailPanel()->workContentText(), QStringLiteral("1.搭拆脚手架"));
        QCOMPARE(window.undoStack()->count(), 2);
        window.undoStack()->undo();
        window.undoStack()->undo();
        QCOMPARE(bill->text(BaseDataItem::FeaturesRole), oldFeatures);
        QCOMPARE(measure->text(BaseDataItem::WorkContentRole), QString());
    }

    void visibleTabDecidesBillAndScope()
    {
        MainWindow window(project.get());
        auto *tabs = window.findChild<QTabWidget *>("tabBills");
        auto *settings = window.findChild<SettingsPanel *>();
        BaseDataItem *first = project->billTable()->rootItem()->bills().first();
        QCOMPARE(window.context().currentBill, first);
        QCOMPARE(settings->valueText(4), project->billTable()->GetName());
        tabs->setCurrentIndex(1);
        QCOMPARE(window.context().currentBill, nullptr);
        QCOMPARE(window.detailPanel()->headerText(), QStringLiteral("当前清单：无"));
        QCOMPARE(settings->valueText(4), project->measureTable()->GetName());
        tabs->setCurrentIndex(0);
        QCOMPARE(window.context().currentBill, first);
        QCOMPARE(window.context().currentTable, project->billTable());
        QVERIFY(window.detailPanel()->headerText().contains(first->text(BaseDataItem::NameRole)));
    }

    void billStorageTakesTheSelectedBills()
    {
        MainWindow window(project.get());
        QTreeView *view = window.billView(0);
        auto *model = static_cast<BillTreeModel *>(view->model());
        const QList<BaseDataItem *> bills = project->billTable()->rootItem()->bills();
        // The current row alone is no choice: the whole project is saved.
        QCOMPARE(BillStorageHost::billsToSave(window.context()), project->allBills());
        view->selectionModel()->select(model->indexOf(bills[3]), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QCOMPARE(BillStorageHost::billsToSave(window.context()), (QList<BaseDataItem *>{bills[0], bills[3]}));
        // A selected section stands for its bills, in tree order, once each.
        BaseDataItem *section = project->billTable()->rootItem()->child(0);
        view->selectionModel()->select(model->indexOf(section), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        QCOMPARE(BillStorageHost::billsToSave(window.context()), section->bills());
    }

    void statusBarTextsNeverOverlap()
    {
        MainWindow window(project.get());
        window.setChannelText(QStringLiteral("嵌入式云服务（本机数据目录 /a/rather/long/path/to/the/cloud/data）"));
        Users::Instance()->Kvy()->setLogin("u1", "一个名字相当长的演示用户", "s1");
        window.refreshLoginState();
        window.resize(420, 300);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto *login = window.findChild<ElidedLabel *>("lblLoginState");
        auto *channel = window.findChild<ElidedLabel *>("lblChannel");
        QVERIFY(!login->geometry().intersects(channel->geometry()));
        QVERIFY(login->text().endsWith(QStringLiteral("…")));
        QCOMPARE(login->toolTip(), window.loginStateText());
    }

    void materialPricesAreOneStep()
    {
        MainWindow window(project.get());
        GeneralTableBase *table = project->materialTable();
        const auto prices = [table] { return QList<double>{table->materialByGuid(1)->GetTj(), table->materialByGuid(2)->GetTj(),
                                                           table->materialByGuid(3)->GetTj()}; };
        const QList<double> before = prices();
        // Only checked results with a sensible price, of materials the table has, are applied.
        const QList<CloudCjyjcBean> results{priceResult(1, 17.25, true), priceResult(2, 40.0, false), priceResult(3, -1000.0, true),
                                            priceResult(99, 5.0, true)};
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(table, 0, "材料价格选用"));
        QCOMPARE(project->applyMaterialPrices(results), 1);
        RURecordControl::EndRecord();
        QCOMPARE(prices(), (QList<double>{17.25, before[1], before[2]}));
        QCOMPARE(window.undoStack()->count(), 1);
        QCOMPARE(window.undoStack()->undoText(), QStringLiteral("材料价格选用"));
        window.undoStack()->undo();
        QCOMPARE(prices(), before);
    }

    void menuEntriesExistDisabledUntilRegistered()
    {
        MainWindow window(project.get());
        for (const auto &planned : DialogRegistry::plannedEntries()) {
            QAction *action = window.entryAction(planned.first);
            QVERIFY2(action, qPrintable(planned.first));
            QCOMPARE(action->text(), planned.second);
            if (!DialogRegistry::find(planned.first)) {
                QVERIFY(!action->isEnabled());
                QCOMPARE(action->toolTip(), QStringLiteral("该功能尚未接入"));
            }
        }
        QVERIFY(window.entryAction(QStringLiteral("pricecheck")));
    }

    void loginStateFollowsBrokerAndAction()
    {
        MainWindow window(project.get());
        auto *label = window.findChild<ElidedLabel *>("lblLoginState");
        auto *login = window.findChild<QAction *>("actLogin");
        auto *logout = window.findChild<QAction *>("actLogout");
        QVERIFY(label && login && logout);
        QCOMPARE(label->fullText(), QStringLiteral("Korvane云：未登录"));
        QVERIFY(login->isEnabled() && !logout->isEnabled());
        // The login action runs the host's login form (here closed unanswered).
        login->trigger();
        QCOMPARE(fx->modalRuns().size(), 1);
        QVERIFY(fx->channel().requests().isEmpty());
        QCOMPARE(window.loginStateText(), QStringLiteral("Korvane云：未登录"));
        Users::Instance()->Kvy()->setLogin("u1", "demo", "s1");
        emit staticPriLoginObj::GetInstance()->kvyLogin();
        QCOMPARE(label->fullText(), QStringLiteral("Korvane云：已登录（demo）"));
        Users::Instance()->Kvy()->setLogout();
        emit staticPriLoginObj::GetInstance()->kvyForceExit();
        QCOMPARE(label->fullText(), QStringLiteral("Korvane云：未登录"));
    }

    void tourWritesOnePngPerDialog()
    {
        DialogRegistry::add({"zz-test-modal", "测试", openTestDialog, nullptr});
        DialogRegistry::add({"zz-test-window", "测试窗口", openNonModal, nullptr});
        DialogRegistry::add({"zz-test-blocking", "直接运行", openBlocking, nullptr});
        s_tourOpens = 0;
        QTemporaryDir out;
        QString error;
        const QStringList files = HostProgram::runTour(out.path() + QStringLiteral("/tour"), &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(s_tourOpens, 1);
        // At least one picture per dialog; a step may add its pages and
        // nested dialogs.
        QVERIFY(files.size() >= DialogRegistry::entries().size() + 1);
        for (const HostDialogEntry &entry : DialogRegistry::entries())
            QVERIFY2(!files.filter(QStringLiteral("-%1.png").arg(entry.id)).isEmpty(), qPrintable(entry.id));
        QVERIFY(files.first().endsWith("00-main-window.png"));
        for (const char *id : {"zz-test-modal", "zz-test-window", "zz-test-blocking"})
            QCOMPARE(files.filter(QStringLiteral("%1.png").arg(id)).size(), 1);
        for (const QString &file : files) {
            const QImage image(file);
            QVERIFY2(!image.isNull(), qPrintable(file));
            QVERIFY(image.width() > 100 && image.height() > 100);
        }
        // The tour answers modal runs itself and leaves no answerer behind.
        QVERIFY(fx->modalRuns().isEmpty());
    }

    void channelFollowsConfiguration()
    {
        HostConfig::setValue("CloudChannel", "http");
        HostConfig::setValue("CloudUrl", "http://127.0.0.1:9");
        QCOMPARE(ChannelSetup::install(), QStringLiteral("云服务器 http://127.0.0.1:9"));
        QCOMPARE(ServicesUtil::channel()->name(), QStringLiteral("http"));
        QVERIFY(!QDir(ChannelSetup::embeddedDataDir()).exists());
        // "http" without a URL is no usable configuration: the embedded cloud.
        HostConfig::setValue("CloudUrl", "");
        QCOMPARE(ChannelSetup::install(), QStringLiteral("嵌入式云服务"));
        QCOMPARE(ServicesUtil::channel()->name(), QStringLiteral("embedded"));
        QVERIFY(ChannelSetup::embeddedDataDir().startsWith(fx->appDir()));
        QVERIFY(ChannelSetup::firstRunNote().contains(QStringLiteral("demo")));
        QCOMPARE(ChannelSetup::signInDemo(), QString());
        QVERIFY(Users::Instance()->Kvy()->IsLogin());
        bool enterprise = false;
        for (LtdInfo *s : ServerRegistry::instance()->servers())
            enterprise = enterprise || (s->kind() == QLatin1String("pri") && s->getServerLogin());
        QVERIFY(enterprise);
        // A second start on the same folder creates nothing new.
        ServicesUtil::setChannel(nullptr);
        ChannelSetup::install();
        QCOMPARE(ChannelSetup::firstRunNote(), QString());
    }
};

QTEST_MAIN(TestHostApp)
#include "tst_hostapp.moc"
