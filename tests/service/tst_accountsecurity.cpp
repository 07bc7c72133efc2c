#include "servicetestcase.h"

#include <service/loginthrottle.h>
#include <service/passwordhash.h>
#include <service/readcache.h>
#include <service/servicedb.h>
#include <service/serviceerror.h>
#include <service/sessioncache.h>

#include <QPasswordDigestor>

using namespace cloudjson;

class TestAccountSecurity : public ServiceTestCase
{
    Q_OBJECT
    // Runs `sql` on the service's store beside the service's own connections.
    QVariant sql(const QString &statement, const QVariantList &values = {})
    {
        ServiceDb db(store());
        db.open();
        return db.scalar(statement, values);
    }

    QJsonObject loginWith(const QString &user, const QString &password)
    {
        return send("kv_token", method("login", {{"username", user}, {"password", password}}), QString());
    }

private slots:
    // Failures of account "u" (or a new account each), from address "a" (or
    // a new address each), each after the previous lock has run out; then a
    // wait, optionally a right password for "u", and one more attempt.
    void throttle_data()
    {
        QTest::addColumn<int>("failures");
        QTest::addColumn<bool>("sameAccount");
        QTest::addColumn<bool>("sameAddress");
        QTest::addColumn<int>("waitMs");
        QTest::addColumn<bool>("rightPassword");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("five are free") << 5 << true << false << 0 << false << "";
        QTest::newRow("the sixth locks for 1 s") << 6 << true << false << 0 << false << "登录失败次数过多，请1秒后再试";
        QTest::newRow("locks double") << 8 << true << false << 0 << false << "登录失败次数过多，请4秒后再试";
        QTest::newRow("a lock runs out") << 8 << true << false << 4000 << false << "";
        QTest::newRow("locks are capped") << 40 << true << false << 0 << false << "登录失败次数过多，请900秒后再试";
        QTest::newRow("forgotten after an hour") << 8 << true << false << 3601000 << false << "";
        QTest::newRow("the right password clears it") << 8 << true << false << 4000 << true << "";
        QTest::newRow("an address gets 20") << 20 << false << true << 0 << false << "";
        QTest::newRow("the 21st locks the address") << 21 << false << true << 0 << false << "登录失败次数过多，请1秒后再试";
        QTest::newRow("others' failures leave an account free") << 21 << false << false << 0 << false << "";
    }

    void throttle()
    {
        QFETCH(int, failures);
        QFETCH(bool, sameAccount);
        QFETCH(bool, sameAddress);
        QFETCH(int, waitMs);
        QFETCH(bool, rightPassword);
        qint64 clock = 0;
        LoginThrottle throttle([&clock] { return clock; });
        for (int i = 0; i < failures; ++i) {
            const QString account = sameAccount ? "u" : QString::number(i);
            const QString address = sameAddress ? "a" : QString::number(i);
            for (;; clock += 1000) {
                try {
                    throttle.begin(account, address);
                    break;
                } catch (const ServiceError &) {
                }
            }
        }
        clock += waitMs;
        if (rightPassword) {
            throttle.begin("u", "b");
            throttle.succeeded("u", "b");
            throttle.begin("u", "b"); // one more failure is free again
        }
        QString refused;
        try {
            throttle.begin(sameAccount ? "u" : "new", sameAddress ? "a" : "new");
        } catch (const ServiceError &e) {
            QCOMPARE(e.code(), int(ServiceError::TooManyAttempts));
            refused = e.message();
        }
        QTEST(refused, "refusal");
    }

    // Through the service: wrong passwords, then the right one.
    void loginFlood_data()
    {
        QTest::addColumn<int>("wrong");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("after 5 wrong") << 5 << 0 << "成功";
        QTest::newRow("after 6 wrong") << 6 << 7 << "登录失败次数过多，请1秒后再试";
        QTest::newRow("after 200 wrong") << 200 << 7 << "登录失败次数过多，请1秒后再试";
    }

    void loginFlood()
    {
        QFETCH(int, wrong);
        QFETCH(int, code);
        for (int i = 0; i < wrong; ++i)
            QVERIFY(cloudjson::code(loginWith("zhangsan", "wrong")) != 0);
        const QJsonObject r = loginWith("zhangsan", ServiceSeed::DemoPassword);
        QTEST(msg(r), "message");
        QCOMPARE(cloudjson::code(r), code);
    }

    // A row of the older PBKDF2 kind logs in and is rewritten as Argon2id.
    void legacyHashIsUpgraded()
    {
        const QByteArray salt("0123456789abcdef");
        const QByteArray key = QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, "old-Secret1", salt, 20000, 32);
        close();
        sql("UPDATE users SET salt = ?, hash = ?, iterations = 20000 WHERE username = 'lisi'", {salt, key});
        reopen();
        QCOMPARE(cloudjson::code(loginWith("lisi", "old-secret1")), 2);
        QCOMPARE(cloudjson::code(loginWith("lisi", "old-Secret1")), 0);
        const QByteArray stored = sql("SELECT hash FROM users WHERE username = 'lisi'").toByteArray();
        QVERIFY2(stored.startsWith("$argon2id$"), stored.constData());
        QCOMPARE(sql("SELECT iterations FROM users WHERE username = 'lisi'").toInt(), 0);
        QCOMPARE(cloudjson::code(loginWith("lisi", "old-Secret1")), 0);
    }

    // demo's east token, used with a session after `before` was done.
    void enterpriseTokenIsBoundToItsLogin_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("sessionOf");
        QTest::addColumn<int>("expected");
        QTest::newRow("its own session") << "" << "demo" << 0;
        QTest::newRow("no session") << "" << "" << 2;
        QTest::newRow("another user's session") << "" << "zhangsan" << 2;
        QTest::newRow("after the Korvane logout") << "logout" << "demo" << 2;
        QTest::newRow("idle 119 minutes") << "-119" << "demo" << 0;
        QTest::newRow("idle 121 minutes") << "-121" << "demo" << 2;
    }

    void enterpriseTokenIsBoundToItsLogin()
    {
        QFETCH(QString, before);
        QFETCH(QString, sessionOf);
        QFETCH(int, expected);
        if (before == "logout")
            QCOMPARE(cloudjson::code(send("kv_token", method("logout"), session)), 0);
        else if (!before.isEmpty())
            sql("UPDATE enterprise_sessions SET last_used = ?",
                {QDateTime::currentDateTimeUtc().addSecs(60 * before.toInt()).toString(Qt::ISODate)});
        const QJsonObject r = send(east, method("getBZQDKList", {{"qyid", 1001}}),
                                   sessionOf.isEmpty() ? QString() : ServiceTestCase::sessionOf(sessionOf));
        QCOMPARE(cloudjson::code(r), expected);
        if (expected)
            QCOMPARE(msg(r), QStringLiteral("企业服务器未登录或登录已失效，请重新登录"));
    }

    void loginsStoredAsDigestsOwnerOnlyAndPurged()
    {
        QCOMPARE(cloudjson::code(send("kv_token", method("enterpriselogin", {{"qyid", 1001}, {"username", "demo"},
                                                                             {"password", ServiceSeed::DemoPassword}}),
                                      QString())),
                 2);
        sql("UPDATE sessions SET created = '2000-01-01T00:00:00Z' WHERE user_id = (SELECT id FROM users WHERE username = 'lisi')");
        QVERIFY(!login("wangwu").isEmpty());
        const QString tokens = "SELECT (SELECT COUNT(*) FROM sessions WHERE token IN (?, ?))"
                               " + (SELECT COUNT(*) FROM enterprise_sessions WHERE token IN (?, ?))";
        QCOMPARE(sql(tokens, {session, sessionOf("zhangsan"), east, west}).toInt(), 0);
        QCOMPARE(sql("SELECT COUNT(*) FROM enterprise_sessions WHERE parent_session = ?", {PasswordHash::tokenDigest(sessionOf("lisi"))})
                     .toInt(),
                 0);
        QCOMPARE(sql("SELECT COUNT(*) FROM sessions").toInt(), 4); // demo, zhangsan, wangwu twice
        for (const QString suffix : {"", "-wal", "-shm"}) {
            if (onPostgres())
                break;
            const QFile::Permissions p = QFile::permissions(dataDir() + "/velora-cloud.db" + suffix);
            QCOMPARE(p & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther), QFile::Permissions());
        }
    }

    // A session read moments ago is answered from memory; each row is a way
    // that answer must stop.
    void sessionCacheEntry_data()
    {
        QTest::addColumn<qint64>("createdAgoSecs");
        QTest::addColumn<qint64>("readAgoMs");
        QTest::addColumn<QString>("between"); // "", "drop", "drop other", "drop before store"
        QTest::addColumn<bool>("hit");
        const qint64 life = 30 * 86400;
        QTest::newRow("fresh") << qint64(60) << qint64(0) << "" << true;
        QTest::newRow("read just under a second ago") << qint64(60) << qint64(999) << "" << true;
        QTest::newRow("read a second ago") << qint64(60) << qint64(1000) << "" << false;
        QTest::newRow("clock went back") << qint64(60) << qint64(-5) << "" << false;
        QTest::newRow("one second short of its life") << life - 1 << qint64(0) << "" << true;
        QTest::newRow("at the end of its life") << life << qint64(0) << "" << false;
        QTest::newRow("logged out") << qint64(60) << qint64(0) << "drop" << false;
        QTest::newRow("another session logged out") << qint64(60) << qint64(0) << "drop other" << true;
        QTest::newRow("logged out while it was read") << qint64(60) << qint64(0) << "drop before store" << false;
    }

    void sessionCacheEntry()
    {
        QFETCH(qint64, createdAgoSecs);
        QFETCH(qint64, readAgoMs);
        QFETCH(QString, between);
        QFETCH(bool, hit);
        const qint64 nowMs = 1700000000000;
        SessionCache cache(30 * 86400);
        const quint64 generation = cache.generation();
        if (between == "drop before store")
            cache.drop("d1");
        cache.store("d1", SessionCache::Entry{7, "demo", "演示", nowMs / 1000 - createdAgoSecs, nowMs - readAgoMs}, generation);
        if (between == "drop")
            cache.drop("d1");
        if (between == "drop other")
            cache.drop("d2");
        SessionCache::Entry found;
        QCOMPARE(cache.find("d1", nowMs / 1000, nowMs, &found), hit);
        if (hit)
            QCOMPARE(found.userId, 7);
    }

    // A kept read (server list, library lists) and the ways it must stop
    // being answered: a write, time, a login in it idling out.
    void readCacheEntry_data()
    {
        QTest::addColumn<qint64>("readAgoMs");
        QTest::addColumn<qint64>("lapsesInMs");
        QTest::addColumn<quint64>("generationNow");
        QTest::addColumn<bool>("hit");
        QTest::newRow("fresh") << qint64(0) << ReadCache::Never << quint64(5) << true;
        QTest::newRow("read just under a second ago") << qint64(999) << ReadCache::Never << quint64(5) << true;
        QTest::newRow("read a second ago") << qint64(1000) << ReadCache::Never << quint64(5) << false;
        QTest::newRow("clock went back") << qint64(-5) << ReadCache::Never << quint64(5) << false;
        QTest::newRow("written since") << qint64(0) << ReadCache::Never << quint64(6) << false;
        QTest::newRow("a login in it idles out in 1 ms") << qint64(0) << qint64(1) << quint64(5) << true;
        QTest::newRow("a login in it idled out now") << qint64(0) << qint64(0) << quint64(5) << false;
    }

    void readCacheEntry()
    {
        QFETCH(qint64, readAgoMs);
        QFETCH(qint64, lapsesInMs);
        QFETCH(quint64, generationNow);
        QFETCH(bool, hit);
        const qint64 nowMs = 1700000000000;
        ReadCache cache;
        const qint64 lapsesMs = lapsesInMs == ReadCache::Never ? lapsesInMs : nowMs + lapsesInMs;
        cache.store("k", QJsonArray{1}, 5, nowMs - readAgoMs, lapsesMs);
        QJsonValue found;
        QCOMPARE(cache.find("k", generationNow, nowMs, &found), hit);
        QCOMPARE(found, hit ? QJsonValue(QJsonArray{1}) : QJsonValue());
    }

    // Full, it makes room by dropping stale entries, not current ones.
    void readCacheFullDropsStaleEntries()
    {
        const qint64 nowMs = 1700000000000;
        ReadCache cache(2);
        cache.store("current", 1, 5, nowMs, ReadCache::Never);
        cache.store("stale", 2, 5, nowMs - ReadCache::TrustMs, ReadCache::Never);
        cache.store("new", 3, 5, nowMs, ReadCache::Never);
        QJsonValue found;
        QVERIFY(cache.find("current", 5, nowMs, &found) && found == 1);
        QVERIFY(cache.find("new", 5, nowMs, &found) && found == 3);
        cache.store("third", 4, 5, nowMs, ReadCache::Never);
        QVERIFY(!cache.find("current", 5, nowMs, &found) && cache.find("third", 5, nowMs, &found));
    }

    // Through the service: a session just used (and so remembered) ends with
    // its own logout at once, and only with its own.
    void loggedOutSessionRefusedAtOnce_data()
    {
        QTest::addColumn<QString>("loggingOut");
        QTest::addColumn<int>("expected");
        QTest::newRow("own logout") << "demo" << 2;
        QTest::newRow("another user's logout") << "zhangsan" << 0;
    }

    void loggedOutSessionRefusedAtOnce()
    {
        QFETCH(QString, loggingOut);
        QCOMPARE(cloudjson::code(send("kv_token_user", method("getBZQDKList"), session)), 0);
        QCOMPARE(cloudjson::code(send("kv_token", method("logout"), sessionOf(loggingOut))), 0);
        QTEST(cloudjson::code(send("kv_token_user", method("getBZQDKList"), session)), "expected");
    }

    void defaultCostIsInteractive()
    {
        const QByteArray cheap = PasswordHash::hash("p", PasswordHash::minimum());
        QVERIFY(PasswordHash::verify(cheap, "p"));
        QVERIFY(PasswordHash::needsRehash(cheap, PasswordHash::interactive()));
        QVERIFY(!PasswordHash::needsRehash(cheap, PasswordHash::minimum()));
        QVERIFY(PasswordHash::interactive().memLimit >= 64u << 20);
    }
};

QTEST_MAIN(TestAccountSecurity)
#include "tst_accountsecurity.moc"
