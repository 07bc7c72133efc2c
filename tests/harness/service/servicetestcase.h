#pragma once
#include "cloudjson.h"
#include "hosttestcase.h"
#include "servicetestbase.h"

#include <service/serviceseed.h>

#include <QHash>

// Base of the tests that call the cloud service directly: the seeded template
// once per program, a fresh copy `svc` per test function, and demo's session
// with the tokens of the enterprises demo administers (east) and reads (west).
class ServiceTestCase : public HostTestCase
{
    Q_OBJECT
protected:
    std::unique_ptr<ServiceTestBase> svc;
    QString session;
    QString east;
    QString west;

    // A tier's token as `user` holds it: "personal", "korvane", "bigdata",
    // "forged", or the user's login to the enterprise "east" or "west".
    static QString tokenOf(const QString &tier, const QString &user = ServiceSeed::DemoUser)
    {
        static const QHash<QString, QString> fixed{{"personal", "kv_token_user"}, {"korvane", "kv_token"},
                                                   {"bigdata", "kv_token_bigdata"}, {"forged", "ent_forged"}};
        if (fixed.contains(tier))
            return fixed.value(tier);
        return ServiceTestBase::enterpriseToken(user, tier == "east" ? ServiceSeed::EastEnterprise : ServiceSeed::WestEnterprise);
    }

    QJsonObject call(const QString &token, const QString &method, QJsonObject fields = QJsonObject())
    {
        fields.insert("method", method);
        return svc->call(token, fields, session);
    }

protected slots:
    void initTestCase() { ServiceTestBase::prepareTemplate(); }
    void cleanupTestCase() { ServiceTestBase::dropTemplate(); }
    void init()
    {
        HostTestCase::init();
        svc = std::make_unique<ServiceTestBase>();
        session = ServiceTestBase::session(ServiceSeed::DemoUser);
        east = tokenOf("east");
        west = tokenOf("west");
    }
    void cleanup()
    {
        HostTestCase::cleanup();
        svc.reset();
    }
};
