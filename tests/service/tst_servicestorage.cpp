#include "servicetestcase.h"

#include <service/servicecore.h>
#include <service/servicedb.h>
#include <service/serviceerror.h>
#include <service/serviceseed.h>

#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtConcurrent>
#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

using namespace cloudjson;

// Storage: transactions, migrations, a killed writer, concurrent callers,
// and the deterministic seed.
class TestServiceStorage : public ServiceTestCase
{
    Q_OBJECT
    static int count(ServiceDb &db, const QString &table)
    {
        return db.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + table).toInt();
    }
    // Where a service given `dir` and `db` keeps its data.
    static QString locationOf(const QTemporaryDir &dir, const ScratchDatabase &db)
    {
        return onPostgres() ? db.url() : QDir(dir.path()).filePath(ServiceCore::databaseFileName());
    }
    static std::unique_ptr<ServiceDb> serviceDb(const QString &location)
    {
        auto db = std::make_unique<ServiceDb>(location);
        db->open();
        return db;
    }
    static QStringList billDigest(const QString &location)
    {
        QStringList rows;
        const std::unique_ptr<ServiceDb> db = serviceDb(location);
        QSqlQuery q = db->exec("SELECT tier, owner, source, qdbh, xmmc, jldw, zhdj, zjnr FROM bills ORDER BY id");
        while (q.next()) {
            QStringList row;
            for (int c = 0; c < 8; ++c)
                row << q.value(c).toString();
            rows << row.join('|');
        }
        return rows;
    }

private slots:
    void failedWriteLeavesNothing()
    {
        QTemporaryDir dir;
        ServiceDb db(onPostgres() ? store() : dir.filePath("t.db"));
        db.open();
        const int before = count(db, "enterprises");
        const auto failing = [&] {
            db.exec("INSERT INTO enterprises(id, name) VALUES(1, 'a')");
            throw ServiceError(ServiceError::BadRequest, "x");
        };
        QVERIFY_EXCEPTION_THROWN(db.write(failing), ServiceError);
        QCOMPARE(count(db, "enterprises"), before);
    }

    void killedWriterLosesOnlyItsOpenTransaction()
    {
        if (onPostgres())
            QSKIP("the journal of a SQLite file");
        QTemporaryDir dir;
        const QString path = dir.filePath("k.db");
        const pid_t pid = fork();
        QVERIFY(pid >= 0);
        if (pid == 0) {
            ServiceDb db(path);
            db.open();
            db.write([&] { db.exec("INSERT INTO enterprises(id, name) VALUES(1, 'kept')"); });
            db.write([&] {
                for (int i = 2; i < 200; ++i)
                    db.exec("INSERT INTO enterprises(id, name) VALUES(?, ?)", {i, QString::number(i)});
                _exit(0); // killed in the middle of the transaction
            });
            _exit(1);
        }
        int status = 0;
        waitpid(pid, &status, 0);
        ServiceDb db(path);
        db.open();
        QCOMPARE(count(db, "enterprises"), 1);
        QCOMPARE(db.scalar("PRAGMA integrity_check").toString(), QStringLiteral("ok"));
        QCOMPARE(db.scalar("PRAGMA journal_mode").toString(), QStringLiteral("wal"));
    }

    void migratesAnOlderFile()
    {
        if (onPostgres())
            QSKIP("migrations of a SQLite file");
        QTemporaryDir dir;
        const QString path = dir.filePath("m.db");
        {
            ServiceDb db(path);
            db.open();
            // Make it look like a file written before the indexes existed.
            for (const char *index : {"idx_sessions_user", "idx_chapters_parent", "idx_bills_scope", "idx_bills_project",
                                      "idx_projects_scope", "idx_prices_library", "idx_enterprise_sessions_parent"})
                db.exec(QStringLiteral("DROP INDEX ") + QLatin1String(index));
            for (const char *column : {"kind", "nonce", "last_used"})
                db.exec(QStringLiteral("ALTER TABLE enterprise_sessions DROP COLUMN ") + QLatin1String(column));
            db.exec("PRAGMA user_version = 1");
        }
        ServiceDb db(path);
        db.open();
        QCOMPARE(db.schemaVersion(), ServiceDb::latestVersion());
        QCOMPARE(db.schemaVersion(), 4);
        db.exec("SELECT kind, nonce, last_used FROM enterprise_sessions");
        QCOMPARE(db.scalar("SELECT COUNT(*) FROM sqlite_master WHERE name = 'idx_bills_scope'").toInt(), 1);
    }

    void concurrentCallersAllServed()
    {
        QList<QFuture<int>> futures;
        for (int i = 0; i < 32; ++i) {
            futures << QtConcurrent::run([this, i] {
                const QJsonObject fields = i % 2 ? QJsonObject() : QJsonObject{{"czlx", 0}, {"para", QJsonObject{{"qdkmc", QStringLiteral("并发库%1").arg(i)}}}};
                return code(call("kv_token_user", i % 2 ? "getBZQDKList" : "editNZQDK", fields));
            });
        }
        for (QFuture<int> &f : futures)
            QCOMPARE(f.result(), 0);
        QCOMPARE(array(call("kv_token_user", "getBZQDKList")).size(), 2 + 16);
    }

    void fullSeedIsDeterministic()
    {
        QTemporaryDir a, b;
        ScratchDatabase dbA, dbB;
        QString notice;
        {
            CloudService first(a.path(), CloudService::Seed::Full, dbA.url());
            QVERIFY2(first.openError().isEmpty(), qPrintable(first.openError()));
            notice = first.firstRunNotice();
        }
        QVERIFY(notice.contains(ServiceSeed::DemoUser));
        QVERIFY(notice.contains(ServiceSeed::DemoPassword));
        {
            CloudService again(a.path(), CloudService::Seed::Full, dbA.url());
            QVERIFY(again.firstRunNotice().isEmpty());
        }
        { CloudService second(b.path(), CloudService::Seed::Full, dbB.url()); }
        QCOMPARE(billDigest(locationOf(a, dbA)), billDigest(locationOf(b, dbB)));

        const std::unique_ptr<ServiceDb> db = serviceDb(locationOf(a, dbA));
        QCOMPARE(db->scalar("SELECT COUNT(*) FROM bills b JOIN libraries l ON l.id = b.library_id"
                                          " WHERE l.name = 'GB/T 50856-2024 通用安装工程标准清单'").toInt(), 1182);
        // Six books of real project bills, each an accumulated project with every bill composed.
        QCOMPARE(db->scalar("SELECT COUNT(*) FROM projects WHERE jjde LIKE '%定额%' AND jjde <> '四川省2020清单计价定额'").toInt(), 6);
        QCOMPARE(db->scalar("SELECT COUNT(*) FROM bills b JOIN projects p ON p.id = b.project_id"
                                          " WHERE p.jjde LIKE '%定额%' AND p.jjde <> '四川省2020清单计价定额'").toInt(), 571);
        QCOMPARE(db->scalar("SELECT COUNT(*) FROM bills WHERE source = 2 AND (zjnr NOT LIKE '{\"zjnr\":[{\"TYPE\":\"DE\"%'"
                                          " AND zjnr NOT LIKE '{\"zjnr\":[{%\"TYPE\":\"DE\"%') ").toInt(), 0);
        // Installation bills got the standard code of their name where there is one.
        QVERIFY(db->scalar("SELECT COUNT(*) FROM bills WHERE source = 2 AND length(qdbh) = 12").toInt() > 50);
        // The standard library's chapters: appendix, then section.
        QVERIFY(db->scalar("SELECT COUNT(*) FROM chapters c JOIN chapters p ON p.id = c.parent_id"
                                          " JOIN libraries l ON l.id = c.library_id WHERE l.tier = 3").toInt() > 10);
    }

    void dataFolderOverride()
    {
        QTemporaryDir empty;
        qputenv("VELORA_DATA_DIR", empty.path().toLocal8Bit());
        QCOMPARE(ServiceSeed::sharedDataDir(), empty.path());
        QTemporaryDir dir;
        ScratchDatabase scratch;
        {
            CloudService service(dir.path(), CloudService::Seed::Full, scratch.url());
            QVERIFY(service.openError().isEmpty());
        }
        qunsetenv("VELORA_DATA_DIR");
        std::unique_ptr<ServiceDb> db = serviceDb(locationOf(dir, scratch));
        // Without the shared files only the built-in demo data is there.
        QCOMPARE(db->scalar("SELECT COUNT(*) FROM bills WHERE source = 1 AND tier = 3 AND zjnr = ''").toInt(), 0);
        QCOMPARE(count(*db, "users"), 4);
    }
};

QTEST_MAIN(TestServiceStorage)
#include "tst_servicestorage.moc"
