#pragma once
#include "servicecontext.h"

#include <QString>

// The deterministic first-run content of an empty data folder. Each step is
// public so that tests seed only what they need; each runs in one transaction.
class ServiceSeed
{
public:
    static const QString DemoUser;
    static const QString DemoPassword;
    // Enterprises of the demo data: "demo" is admin of the first and reader of
    // the second.
    static constexpr int EastEnterprise = 1001;
    static constexpr int WestEnterprise = 1002;

    explicit ServiceSeed(const ServiceContext &context);

    // True when the folder holds no accounts yet.
    bool isEmpty();
    // Runs the steps (all of them when `full`, else the small ones) and
    // returns the first-run notice with the demo login.
    QString run(bool full);

    void seedAccounts();
    void seedLibraries();
    void seedSampleBills();
    void seedPriceLibraries();
    // From the shared data folder (real bills; larger).
    void seedStandardBills();
    void seedProjectBills();

    // The shared data folder: $VELORA_DATA_DIR, else the build-time path.
    static QString sharedDataDir();

private:
    ServiceContext m_context;
};
