#pragma once
#include <QJsonObject>
#include <QString>

#include <memory>

class ServiceCore;

// The cloud service: answers one request envelope ("cmd", "app_type",
// "orgin_token", "data" with "method") for the session that sent it. Safe to
// call from any number of threads at once; never throws; always returns
// {"code", "msg", "data"} with a Chinese "msg" when "code" is not 0.
class CloudService
{
public:
    // What a fresh, empty data folder is filled with on first open.
    enum class Seed {
        Full,    // demo accounts, libraries, standard and accumulated bills, prices
        Minimal, // demo accounts, enterprises and a small library of each kind
        None     // schema only
    };

    // Opens (creating if needed) the service's data in `dataDir`, or, when
    // `database` is a "postgresql://" URL, in that database (which several
    // service processes may share; `dataDir` is then unused).
    explicit CloudService(const QString &dataDir, Seed seed = Seed::Full, const QString &database = QString());
    ~CloudService();
    CloudService(const CloudService &) = delete;
    CloudService &operator=(const CloudService &) = delete;

    QJsonObject handle(const QJsonObject &request, const QString &session);
    // `client`: the caller's network address, for throttling failed logins.
    QJsonObject handle(const QJsonObject &request, const QString &session, const QString &client);

    // Error text when the data folder could not be opened (then every request
    // is answered with a failure reply).
    QString openError() const;
    // The demo account's password when this open created the demo data, else
    // empty; the host prints it once.
    QString firstRunNotice() const;

private:
    std::unique_ptr<ServiceCore> m_core;
};
