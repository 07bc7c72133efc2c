#pragma once
#include "ltdinfo.h"

#include <QHash>
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
    // cloud, the Korvane cloud, "Korvane大数据", the enterprise servers ...).
    // A kind ("cj": the material price servers) names another list the cloud
    // keeps; the login index of userSyyLogin always refers to the full list.
    QList<LtdInfo *> servers(const QString &kind = QString()) const;
    // Asks the cloud for a list (host-only method); false when it failed, and
    // the last good list stays.
    bool refresh(const QString &kind = QString());

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
    LtdInfo *entryFor(const QString &kind, const QString &name);
    LtdInfo *entryNamed(const QString &name) const;
    // Login flags and tokens from the Korvane login and the enterprise sessions.
    void applyLoginState();
    std::vector<std::unique_ptr<LtdInfo>> m_entries;
    // The last list the cloud gave for each kind, in its order.
    QHash<QString, QList<LtdInfo *>> m_lists;
    // Enterprise session token by enterprise id (shared by its entries).
    QHash<int, QString> m_enterpriseSessions;
    // Entries the cloud reported as logged in.
    QHash<LtdInfo *, bool> m_cloudLogin;
};
