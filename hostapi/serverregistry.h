#pragma once
#include "ltdinfo.h"

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>
#include <vector>

// The host's list of cloud server entries and their login state. It owns the
// LtdInfo objects; pointers stay valid for the life of the process (a refresh
// updates entries in place and appends new ones).
class ServerRegistry : public QObject
{
    Q_OBJECT
public:
    static ServerRegistry *instance();

    // The host's full list, in the order the cloud gives it (the personal
    // cloud, the Korvane cloud, "Korvane大数据", the enterprise servers, the
    // material price servers); userSyyLogin's index refers to it.
    QList<LtdInfo *> servers() const;
    // Asks the cloud for the list (host-only method); false when it failed,
    // and the last good list stays.
    bool refresh();
    // Takes in a "getserverlist" reply as refresh() does.
    bool take(const QJsonObject &reply);

    // Logins. On failure the returned text is the message to show; empty on
    // success. Success updates entries and announces it on staticPriLoginObj.
    QString loginKorvane(const QString &user, const QString &password);
    QString loginEnterprise(int hostIndex, const QString &user, const QString &password);
    void logoutKorvane(bool forced);
    void logoutEnterprise(const QString &serverName, bool forced);

    // Forgets every entry and login (tests).
    void reset();

signals:
    void changed();

private:
    explicit ServerRegistry(QObject *parent = nullptr);
    void sessionRejected(const QString &token);
    LtdInfo *entryFor(const QString &kind, const QString &name);
    LtdInfo *entryNamed(const QString &name) const;
    // Login flags and tokens from the Korvane login and the enterprise sessions.
    void applyLoginState();
    std::vector<std::unique_ptr<LtdInfo>> m_entries;
    // The last list the cloud gave, in its order.
    QList<LtdInfo *> m_current;
    // Enterprise session token by enterprise id (shared by its entries).
    QHash<int, QString> m_enterpriseSessions;
    // Entries the cloud reported as logged in.
    QHash<LtdInfo *, bool> m_cloudLogin;
};
