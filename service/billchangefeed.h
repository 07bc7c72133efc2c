#pragma once
#include <QObject>
#include <QPointer>
#include <QSqlDriver>
#include <QThread>

class BillCatalog;
class QTimer;
class ServiceDb;

// Keeps this process's matching index current with the bills that other
// service processes write to the same PostgreSQL database. A trigger logs
// every changed bill id with its writer's name and notifies; on the notice
// (or every half second, should one be lost) the log after the last seen
// entry is read and the bills it names are re-read into the index. Writers
// are serialized across processes, so log entries commit in their order.
class BillChangeFeed : public QObject
{
    Q_OBJECT
public:
    // Follows the log from after entry `lastSeen` on a thread of its own.
    BillChangeFeed(ServiceDb &db, BillCatalog &catalog, qint64 lastSeen);
    ~BillChangeFeed() override;

    // The newest log entry at this moment (read before the index is loaded).
    static qint64 newestEntry(ServiceDb &db);

private:
    void begin();
    void end();
    void subscribe();
    void catchUp();
    void prune();

    ServiceDb &m_db;
    BillCatalog &m_catalog;
    qint64 m_lastSeen;
    // The connection listening; null once it is gone (then a new one listens).
    QPointer<QSqlDriver> m_listening;
    int m_polls = 0;
    QTimer *m_timer = nullptr;
    QThread m_thread;
};
