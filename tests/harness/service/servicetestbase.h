#pragma once
#include <service/cloudservice.h>

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>

#include <memory>

// A service on a private copy of a seeded data folder. The seed (with its slow
// password hashes) runs once per test program; each test gets a fresh copy.
class ServiceTestBase
{
public:
    static void prepareTemplate(CloudService::Seed seed = CloudService::Seed::Minimal);
    static void dropTemplate();
    // Sessions made on the template (so copies share them): every seeded user
    // logged in to the Korvane cloud and to each enterprise of theirs.
    static QString session(const QString &user);
    static QString enterpriseToken(const QString &user, int qyid);

    ServiceTestBase();
    ~ServiceTestBase();

    CloudService &service() { return *m_service; }
    QString dataDir() const { return m_dir.path(); }
    void reopen();
    void close() { m_service.reset(); }

    QJsonObject call(const QString &token, const QJsonObject &data, const QString &session);
    // Logs in and returns the session token (empty when refused).
    QString login(const QString &user);
    // Logs in to an enterprise; returns its token.
    QString enterpriseLogin(const QString &session, const QString &user, int qyid);

private:
    ServiceTestBase(const QString &dir, CloudService::Seed seed);
    QTemporaryDir m_dir;
    std::unique_ptr<CloudService> m_service;
};
