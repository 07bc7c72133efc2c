#pragma once
#include "cloudjson.h"
#include "hosttestcase.h"
#include "scratchdatabase.h"

#include <service/cloudservice.h>
#include <service/serviceseed.h>

#include <QTemporaryDir>
#include <QtTest>

// Base of the tests that call the cloud service directly. The seed (with its
// slow password hashes) runs once per program into a template folder, where
// every seeded user is logged in to the Korvane cloud and to their
// enterprises; each test function gets a fresh copy of that folder (or, in
// the PostgreSQL variant, of that database). demo is
// admin of east (1001) and reader of west (1002).
class ServiceTestCase : public HostTestCase
{
    Q_OBJECT
protected:
    std::unique_ptr<CloudService> service;
    QString session; // demo's
    QString east;
    QString west;

    static QString sessionOf(const QString &user);
    // A tier's token as `user` holds it: "personal", "korvane", "bigdata",
    // "forged", or the user's login to the enterprise "east" or "west".
    static QString tokenOf(const QString &tier, const QString &user = ServiceSeed::DemoUser);

    QString dataDir() const { return m_dir->path(); }
    // Where this test's service keeps its data, for a ServiceDb beside it.
    QString store() const;
    static bool onPostgres() { return ScratchDatabase::wanted(); }
    void close() { service.reset(); }
    void reopen();

    QJsonObject send(const QString &token, const QJsonObject &data, const QString &session);
    // `method` with `fields` under `token`, in demo's session.
    QJsonObject call(const QString &token, const QString &method, const QJsonObject &fields = QJsonObject());
    // `who` is "user@tier", or just the tier for demo.
    QJsonObject callAs(const QString &who, const QString &method, const QJsonObject &fields);
    // Logs in and returns the session (empty when refused).
    QString login(const QString &user);
    QString enterpriseLogin(const QString &session, const QString &user, int qyid);

    // A table of calls and their answers: who calls (see callAs), the method,
    // its fields as JSON text, the code and message expected. checkReply()
    // runs the current row.
    static void replyColumns();
    static void replyRow(const char *row, const QString &who, const QString &method, const QByteArray &fields, int expectedCode,
                         const QString &message = QStringLiteral("成功"));
    void checkReply();

protected slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<ScratchDatabase> m_database;
};
