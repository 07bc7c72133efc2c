// Every cloud call of the module and of the host's flows, answered with a
// broken reply: the message the flow owes the user (or none), no crash, no
// exception report, the project untouched. The flows run against the embedded
// cloud; one method at a time is answered with the fault instead.
#include "hosttestcase.h"

#include <billstoragehost.h>
#include <channelsetup.h>
#include <featurelibraryseeder.h>
#include <featureshost.h>
#include <hostcontext.h>
#include <mainwindow.h>
#include <materialcheckhost.h>
#include <materialstoragehost.h>
#include <pricecheckhost.h>
#include <projectdocument.h>
#include <smartpricinghost.h>

#include <features/featurestore.h>
#include <features/gqdxmtzmszn.h>
#include <materials/cloudclsavedialogm.h>
#include <materials/tcloudclsavedialog_xjbc.h>
#include <smartpricing/veldqqdznzj.h>
#include <storage/ttotalycc.h>

#include <cloud/cloudworkerrequest.h>

#include <hostapi/cloudprocheck.h>
#include <hostapi/hostconfig.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/serverregistry.h>
#include <hostapi/servicesutil.h>
#include <hostapi/users.h>
#include <hostapi/tqdnodeinfo.h>
#include <service/cloudservice.h>
#include <service/embeddedchannel.h>

#include <QRadioButton>
#include <QTimer>
#include <QUndoStack>
#include <QtTest>

#include <functional>
#include <map>
#include <mutex>

namespace {

// Forwards every request to the real channel except those of one method,
// which get `fault` as their reply.
class FaultChannel : public CloudChannel
{
public:
    explicit FaultChannel(std::shared_ptr<CloudChannel> inner) : m_inner(std::move(inner)) {}
    void arm(const QString &method, const QByteArray &fault)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_method = method;
        m_fault = fault;
    }
    int hits() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_hits;
    }
    CloudCall *start(const QJsonObject &request, const QString &session) override
    {
        QByteArray fault;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (request.value("data").toObject().value("method").toString() != m_method)
                return m_inner->start(request, session);
            ++m_hits;
            fault = m_fault;
        }
        auto *call = new CloudCall;
        QTimer::singleShot(0, call, [call, fault] { call->finish(fault); });
        return call;
    }
    QString name() const override { return QStringLiteral("fault"); }

private:
    std::shared_ptr<CloudChannel> m_inner;
    // std::mutex: the batch's sender threads call in, and the thread
    // sanitizer cannot see QMutex.
    mutable std::mutex m_mutex;
    QString m_method;
    QByteArray m_fault;
    int m_hits = 0;
};

struct Flow
{
    HostContext &host;
    HostFixture &fx;
    LtdInfo *personal;
    QString name; // a library name no earlier row has used
};

// Answers every modal run with `answer` (a dialog nobody expects is closed).
void answerModals(HostFixture &fx, const std::function<int(QDialog *)> &answer)
{
    for (int i = 0; i < 8; ++i)
        fx.answerNextModal(answer);
}

// How each flow is started; every flow makes the calls named in its rows.
const std::map<QString, std::function<void(Flow &)>> &flows()
{
    static const std::map<QString, std::function<void(Flow &)>> table{
        {"sign in", [](Flow &) {
             ServerRegistry::instance()->logoutKorvane(true);
             ChannelSetup::signInDemo();
         }},
        {"project features", [](Flow &f) { FeaturesHost::fillFeatures(f.host, f.personal, false, 3, {}); }},
        {"accumulated projects", [](Flow &f) {
             CloudProCheck dialog(QStringList(), f.personal, QStringLiteral("建筑"), TQDNodeInfo());
             dialog.InitGcInfo();
         }},
        {"feature storage", [](Flow &f) {
             BillStorageHost::storeInTier(f.host, f.host.project->allBills().mid(0, 3), 0, BillUpload::BillOnly,
                                          f.name);
         }},
        {"scheme storage", [](Flow &f) {
             BillStorageHost::storeInTier(f.host, f.host.project->allBills().mid(0, 3), 0, BillUpload::FullComposition,
                                          f.name);
         }},
        {"batch pricing", [](Flow &f) {
             answerModals(f.fx, [](QDialog *) { return 0; });
             SmartPricingHost::runBatch(f.host, *f.personal, false, 0, {});
         }},
        {"current pricing", [](Flow &f) {
             answerModals(f.fx, [](QDialog *d) {
                 auto *browser = qobject_cast<VelDqqdznzj *>(d);
                 for (int i = 0; browser && browser->isLoading() && i < 250; ++i)
                     QTest::qWait(20);
                 return 0;
             });
             SmartPricingHost::openCurrent(f.host);
         }},
        {"price check", [](Flow &f) {
             answerModals(f.fx, [](QDialog *) { return 0; });
             PriceCheckHost::startCheck(f.host, f.personal, 4);
         }},
        {"material storage", [](Flow &f) {
             answerModals(f.fx, [name = f.name](QDialog *d) {
                 if (auto *prompt = qobject_cast<TCloudCLSaveDialog_Xjbc *>(d)) {
                     prompt->getEdtJbmc()->setText(name);
                     prompt->actOk();
                     return 1;
                 }
                 return 0;
             });
             CloudCLSaveDialogm dialog(MaterialStorageHost::taxArgument(), f.host.window);
             MaterialStorageHost::prepare(dialog, f.host, MaterialStorageHost::scope(f.host));
             QMetaObject::invokeMethod(&dialog, "Cloud");
             QMetaObject::invokeMethod(&dialog, "NewTable");
             QMetaObject::invokeMethod(&dialog, "Confirm");
         }},
        {"bill storage wizard", [](Flow &f) {
             TTotalYcc dialog(f.host.window);
             BillStorageHost::prepare(dialog, f.host, BillStorageHost::billsToSave(f.host));
             dialog.nextButton()->click();
         }},
        {"feature guide", [](Flow &f) {
             // Building the feature libraries takes seconds: built once, copied after.
             static QTemporaryDir built;
             const QString folder = QFileInfo(FeatureStore::libraryPath(CXMGB24EnName)).path();
             const bool first = QDir(built.path()).isEmpty();
             if (first)
                 FeatureLibrarySeeder::ensure(nullptr);
             for (const QString &name : FeatureStore::libraryNames()) {
                 const QString file = QFileInfo(FeatureStore::libraryPath(name)).fileName();
                 QFile::copy((first ? folder : built.path()) + '/' + file, (first ? built.path() : folder) + '/' + file);
             }
             std::unique_ptr<QWidget> window(FeaturesHost::openGuide(f.host));
             auto *guide = static_cast<Gqdxmtzmszn *>(window.get());
             guide->cloudRadio()->setChecked(true);
             CloudWorkerRequest::waitForWorkers(5000);
             QCoreApplication::processEvents();
             guide->requestProjectInfo(0, 0);
             CloudWorkerRequest::waitForWorkers(5000);
             QCoreApplication::processEvents();
         }},
        {"enterprise material storage", [](Flow &f) {
             for (LtdInfo *server : ServerRegistry::instance()->servers())
                 if (server->kind() == QLatin1String("cj"))
                     HostConfig::openSysSet()->setValue("CloudApp/CurrServer_all", server->getServerName());
             flows().at("material storage")(f);
         }},
        {"material check", [](Flow &f) {
             answerModals(f.fx, [](QDialog *) { return 0; });
             MaterialCheckHost::Choice choice;
             choice.server = f.personal;
             choice.libraryId = QStringLiteral("-999");
             choice.chosen = true;
             MaterialCheckHost::run(f.host, choice);
         }},
    };
    return table;
}

} // namespace

class TestCloudFaults : public HostTestCase
{
    Q_OBJECT
    QTemporaryDir cloudDir;
    std::shared_ptr<CloudService> service;
    QStringList login; // user id, name and session of the demo sign-in rows share

    // Signing in hashes the password twice; rows reuse one session, which
    // keeps its enterprise logins on the cloud.
    void signIn()
    {
        if (login.isEmpty()) {
            QCOMPARE(ChannelSetup::signInDemo(), QString());
            const auto *user = Users::Instance()->Kvy();
            login = QStringList{user->UserID(), user->userName(), user->sessionToken()};
            return;
        }
        Users::Instance()->Kvy()->setLogin(login[0], login[1], login[2]);
        QVERIFY(ServerRegistry::instance()->refresh());
    }

private slots:
    void initTestCase()
    {
        qRegisterMetaType<LtdInfo *>("LtdInfo*");
        service = std::make_shared<CloudService>(cloudDir.path(), CloudService::Seed::Full);
        QVERIFY2(service->openError().isEmpty(), qPrintable(service->openError()));
    }
    void cleanup()
    {
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        ServerRegistry::instance()->reset();
        HostTestCase::cleanup();
    }

    void faultyReply_data()
    {
        QTest::addColumn<QString>("flow");
        QTest::addColumn<QString>("method");
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QStringList>("shown");
        const QList<QPair<const char *, QByteArray>> faults{
            {"empty", QByteArray()},
            {"not json", "<html>502 Bad Gateway</html>"},
            {"code and msg", R"({"code":3,"msg":"没有权限"})"},
            {"code without msg", R"({"code":3})"},
            {"no data", R"({"code":0})"},
            {"data null", R"({"code":0,"data":null})"},
            {"data string", R"({"code":0,"data":"7"})"},
            {"data object, fields of wrong types", R"({"code":0,"data":{"id":[],"saved":"3","failed":"x","data":"x"}})"},
            {"data array, items of wrong types", R"({"code":0,"data":[1,"x",null,[]]})"},
            {"records with fields of wrong types", R"({"code":0,"data":[{"id":"x","_id":[],"mc":{},"kmms":5,"zhdj":"x"}]})"},
        };
        // What each kind of fault shows: no reply, refused, refused without
        // "msg", unusable data, records with unusable fields. '|' separates
        // two messages, "-" is none.
        struct Call
        {
            const char *flow, *method;
            QString unanswered, refused, bare, badData, badRecords;
        };
        const QString stored = QStringLiteral("云存储完成，共保存%1条清单。");
        const QString lost = stored.arg(0) + QStringLiteral("3条清单未能保存。");
        const QString features = QStringLiteral("已填写0条清单的项目特征，72条未找到匹配清单，0条跳过。");
        const QString offline = QStringLiteral("无法连接云服务，请稍后重试"), timeout = QStringLiteral("云端未响应");
        const QString noTable = QStringLiteral("请先选择一条价表"), noBill = QStringLiteral("清单不存在或无权查看");
        const QString viewOnly = QStringLiteral("您在该企业只有查看权限，没有编辑权限|") + noTable;
        const QString noLibrary = QStringLiteral("请选择清单库");
        const QList<Call> calls{
            {"sign in", "login", "-", "-", "-", "-", "-"},
            {"sign in", "getserverlist", "-", "-", "-", "-", "-"},
            {"sign in", "enterpriselogin", "-", "-", "-", "-", "-"},
            {"project features", "matchqdtz", features + "\n" + timeout, features + "\n没有权限", features, features, features},
            {"accumulated projects", "getaccumulatedprojects", offline, "没有权限", "", "-", "-"},
            {"feature storage", "getBZQDKList", lost + "\n" + timeout, lost + "\n没有权限", lost, stored.arg(3), stored.arg(3)},
            {"scheme storage", "editNZQDK", lost + "\n" + timeout, lost + "\n没有权限", lost, lost, lost},
            {"feature storage", "listsavingtaskbeginforperson", lost + "\n" + timeout, lost + "\n没有权限", lost,
             lost + "\n保存任务不存在或已失效", lost + "\n保存任务不存在或已失效"},
            {"feature storage", "uploadsavingtaskbills", lost + "\n" + timeout, lost + "\n没有权限", lost, stored.arg(0),
             stored.arg(0)},
            {"batch pricing", "getppqd", timeout, "没有权限", "-", "-", "-"},
            {"current pricing", "getppqd", timeout, "没有权限", "", "-", noBill},
            {"current pricing", "intelligencezjforpersonprojectinfo", "-", "没有权限", "", "-", "-"},
            {"price check", "getsimilarbillprices", "-", "没有权限", "-", "-", noBill},
            {"material storage", "materiallist", noTable, "没有权限|没有权限|" + noTable, "||" + noTable, noTable, noTable},
            {"material storage", "personmaterialedit", noTable, "没有权限|" + noTable, "|" + noTable, noTable, noTable},
            {"material storage", "savematerialprices", "-", "没有权限", "", "-", "-"},
            {"bill storage wizard", "getBZQDKList", noLibrary, "没有权限|" + noLibrary, noLibrary, noLibrary,
             "清单库不存在"},
            {"bill storage wizard", "listeditpermissionjudgmentforperson", "-", "没有权限", "", "-", "-"},
            {"bill storage wizard", "getchaptertreeforperson", "-", "没有权限", "", "-", "-"},
            {"feature guide", "matchqdtz", "-", "没有权限", "", "-", "-"},
            {"feature guide", "getgcsldata", "-", "-", "-", "-", "-"},
            {"enterprise material storage", "getenterprisepricelist", viewOnly, "没有权限|" + viewOnly, "|" + viewOnly,
             viewOnly, viewOnly},
            {"enterprise material storage", "isauthorityforenterprise", noTable, "没有权限|" + noTable, "|" + noTable,
             viewOnly, viewOnly},
            {"material check", "getmaterialcheckrecords", "-", "没有权限", "", "-", "-"},
        };
        for (const Call &call : calls) {
            for (int i = 0; i < faults.size(); ++i) {
                const QString text = QList<QString>{call.unanswered, call.unanswered, call.refused, call.bare,
                                                    call.badData, call.badData, call.badData, call.badData,
                                                    call.badData, call.badRecords}.at(i);
                QTest::addRow("%s, %s: %s", call.flow, call.method, faults[i].first)
                    << call.flow << call.method << faults[i].second << (text == "-" ? QStringList() : text.split('|'));
            }
        }
    }
    void faultyReply()
    {
        QFETCH(QString, flow);
        QFETCH(QString, method);
        QFETCH(QByteArray, fault);
        auto channel = std::make_shared<FaultChannel>(std::make_shared<EmbeddedChannel>(service));
        ServicesUtil::setChannel(channel);
        signIn();
        ProjectDocument project;
        QString error;
        QVERIFY2(project.loadFile(ProjectDocument::samplePath(), &error), qPrintable(error));
        project.seedProjectSettings();
        MainWindow window(&project);
        LtdInfo personal(QStringLiteral("个人云"), KvTokenUser, 0, 0, true);
        static int row = 0;
        Flow f{window.context(), *fx, &personal, QStringLiteral("故障库%1").arg(++row)};
        const QByteArray before = project.toJson();
        const int steps = RURecordControl::undoStack()->count();

        channel->arm(method, fault);
        flows().at(flow)(f);
        if (flow == "sign in")
            login.clear(); // the shared session ended
        QVERIFY(CloudWorkerRequest::waitForWorkers(5000));
        QVERIFY2(channel->hits() > 0, "the flow did not make the call");
        if (flow == "project features" && QString(QTest::currentDataTag()).endsWith("empty"))
            QCOMPARE(channel->hits(), 1); // a dead cloud is not asked once per bill
        QTEST(fx->messageTexts(), "shown");
        QCOMPARE(fx->exceptionReports(), QStringList());
        QCOMPARE(RURecordControl::undoStack()->count(), steps);
        QVERIFY(project.toJson() == before);
    }
};

QTEST_MAIN(TestCloudFaults)
#include "tst_cloudfaults.moc"
