#include "servicetestcase.h"

#include <service/servicedb.h>

#include <QtConcurrent>
#include <QtTest>

using namespace cloudjson;

// Two service instances on one PostgreSQL database, each with its own
// matching index, as two velora-cloud processes behind a load balancer.
// `service` is instance A, `other` instance B.
class TestSharedStore : public ServiceTestCase
{
    Q_OBJECT
    std::unique_ptr<CloudService> other;

    QJsonObject on(CloudService &instance, const QString &name, const QJsonObject &fields, const QString &who = QString())
    {
        return instance.handle(envelope("kv_token_user", method(name, fields)), who.isNull() ? session : who);
    }
    QJsonObject createLibrary(CloudService &instance, const QString &name)
    {
        return on(instance, "editNZQDK", {{"czlx", 0}, {"para", QJsonObject{{"qdkid", ""}, {"qdkmc", name}}}});
    }
    // Saves one bill named `name` in task `taskId` (begun on A when `count` is given).
    int save(CloudService &instance, const QString &taskId, const QString &name, const QString &library = QString(), int count = 0)
    {
        if (count)
            on(*service, "listsavingtaskbeginforperson", {{"qiyeID", -1}, {"mark", "0"}, {"taskid", taskId},
                                                         {"qdcount", QString::number(count)}, {"bzqdkid", library}, {"zjid", ""}});
        const QJsonObject bill{{"guidb", name}, {"qdbh", "010101001001"}, {"xmmc", name}, {"jldw", "m2"}, {"zhdj", 3.5}};
        return object(on(instance, "uploadsavingtaskbills", {{"taskid", taskId}, {"bills", QJsonArray{bill}}})).value("saved").toInt();
    }
    QJsonObject list(CloudService &instance, const QString &who = QString()) { return on(instance, "getBZQDKList", {{"reqeuestype", 0}, {"qyid", 0}}, who); }
    QStringList libraries(CloudService &instance) { return texts(array(list(instance)), "mc"); }
    // Names of the bills "getppqd" through `instance` finds for `name`.
    QStringList matched(CloudService &instance, const QString &name)
    {
        const QJsonObject query{{"qdbh", "010101001001"}, {"xmmc", name}, {"dw", "m2"}, {"sjkm", "QD"}, {"guidb", "q"}};
        const QJsonObject r = on(instance, "getppqd", {{"usetype", "1"}, {"ltdID", "0"}, {"getzj", "1"}, {"tagNum", "10"},
                                                       {"cond", QJsonObject{{"qdly", 3}, {"gcids", QJsonArray()}, {"qdkey", ""}, {"jsfsIndex", 0}}},
                                                       {"data", QJsonArray{query}}});
        return texts(array(r), "xmmc");
    }

private slots:
    void initTestCase()
    {
        if (!onPostgres())
            QSKIP("several service instances share one store on PostgreSQL only");
        ServiceTestCase::initTestCase();
    }
    void init()
    {
        ServiceTestCase::init();
        other = std::make_unique<CloudService>(dataDir(), CloudService::Seed::None, store());
        QVERIFY2(other->openError().isEmpty(), qPrintable(other->openError()));
    }
    void cleanup()
    {
        other.reset();
        ServiceTestCase::cleanup();
    }

    void loginOnOneIsHonouredByTheOther()
    {
        const QString fresh = login(ServiceSeed::DemoUser);
        QCOMPARE(code(list(*other, fresh)), 0);
        const QString token = object(other->handle(envelope("kv_token", method("enterpriselogin", {{"username", "demo"},
                                                                                                {"password", ServiceSeed::DemoPassword}, {"qyid", 1001}})),
                                                   fresh)).value("token").toString();
        QCOMPARE(code(service->handle(envelope(token, method("getBZQDKList", {{"reqeuestype", 1}, {"qyid", 1001}})), fresh)), 0);
        QCOMPARE(code(service->handle(envelope("kv_token", method("logout")), fresh)), 0);
        const QJsonObject after = list(*other, fresh);
        QCOMPARE(code(after), 2);
        QCOMPARE(msg(after), QStringLiteral("未登录Korvane云或登录已失效，请重新登录"));
    }

    // Checks and the writes depending on them do not interleave across
    // instances: one library of a name, and no more bills than announced.
    void concurrentWritersAcrossInstances()
    {
        QList<QFuture<QJsonObject>> creates;
        for (int i = 0; i < 8; ++i)
            creates << QtConcurrent::run([this, i] { return createLibrary(i % 2 ? *other : *service, QStringLiteral("并发同名库")); });
        QStringList outcomes;
        for (QFuture<QJsonObject> &f : creates)
            outcomes << msg(f.result());
        QCOMPARE(outcomes.count(QStringLiteral("成功")), 1);
        QCOMPARE(outcomes.count(QStringLiteral("清单库名称已存在")), 7);

        QCOMPARE(save(*service, "t-shared", QStringLiteral("并发清单"), "1", 5), 1);
        QList<QFuture<int>> uploads;
        for (int i = 0; i < 8; ++i)
            uploads << QtConcurrent::run([this, i] { return save(i % 2 ? *other : *service, "t-shared", QStringLiteral("并发清单%1").arg(i)); });
        int saved = 1;
        for (QFuture<int> &f : uploads)
            saved += f.result();
        QCOMPARE(saved, 5);
    }

    // The database restarted or killed the service's sessions: the next
    // read and the next write run on new connections.
    void lostConnectionsAreReplaced()
    {
        ServiceDb side(store());
        side.open();
        const auto killOthers = [&] {
            side.scalar("SELECT COUNT(pg_terminate_backend(pid, 5000)) FROM pg_stat_activity"
                        " WHERE datname = current_database() AND pid <> pg_backend_pid()");
        };
        QCOMPARE(libraries(*service).size(), 2);
        killOthers();
        QCOMPARE(libraries(*service).size(), 2);
        killOthers();
        QCOMPARE(msg(createLibrary(*service, QStringLiteral("断线后的库"))), QStringLiteral("成功"));
    }

    void billsAndDeletionsReachTheOtherIndex()
    {
        const QString id = object(createLibrary(*service, QStringLiteral("共享库"))).value("id").toString();
        const QString name = QStringLiteral("共享实例独有的防腐木栈道");
        QVERIFY(!matched(*other, name).contains(name));
        QCOMPARE(save(*service, "t-reach", name, id, 1), 1);
        QTRY_VERIFY_WITH_TIMEOUT(matched(*other, name).contains(name), 10000);

        QCOMPARE(code(on(*service, "editNZQDK", {{"czlx", 2}, {"para", QJsonObject{{"qdkid", id}}}})), 0);
        QVERIFY(!libraries(*other).contains(QStringLiteral("共享库")));
        QTRY_VERIFY_WITH_TIMEOUT(!matched(*other, name).contains(name), 10000);
    }
};

QTEST_MAIN(TestSharedStore)
#include "tst_sharedstore.moc"
