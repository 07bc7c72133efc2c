#include "billchangefeed.h"
#include "billcatalog.h"
#include "servicedb.h"
#include "serviceerror.h"

#include <QSet>
#include <QTimer>

namespace {
const int kPollMs = 500;
// About once a minute, entries older than an hour leave the log; a process
// that lags further behind has bigger problems than its index.
const int kPruneEveryPolls = 120;
}

BillChangeFeed::BillChangeFeed(ServiceDb &db, BillCatalog &catalog, qint64 lastSeen)
    : m_db(db)
    , m_catalog(catalog)
    , m_lastSeen(lastSeen)
{
    m_thread.setObjectName(QStringLiteral("bill-change-feed"));
    moveToThread(&m_thread);
    connect(&m_thread, &QThread::started, this, &BillChangeFeed::begin);
    m_thread.start();
}

BillChangeFeed::~BillChangeFeed()
{
    QMetaObject::invokeMethod(this, [this] { end(); }, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

qint64 BillChangeFeed::newestEntry(ServiceDb &db)
{
    return db.scalar(QStringLiteral("SELECT COALESCE(MAX(seq), 0) FROM bill_changes"), {}, 0).toLongLong();
}

void BillChangeFeed::begin()
{
    m_timer = new QTimer(this);
    connect(m_timer, &QTimer::timeout, this, &BillChangeFeed::catchUp);
    m_timer->start(kPollMs);
    catchUp();
}

void BillChangeFeed::end()
{
    delete m_timer;
    m_timer = nullptr;
    if (m_listening)
        m_listening->unsubscribeFromNotification(ServiceDialect::billChannel());
    m_db.releaseThreadConnection();
}

void BillChangeFeed::subscribe()
{
    QSqlDriver *driver = m_db.driver();
    if (driver == m_listening || !driver->subscribeToNotification(ServiceDialect::billChannel()))
        return;
    connect(driver, QOverload<const QString &, QSqlDriver::NotificationSource, const QVariant &>::of(&QSqlDriver::notification),
            this, [this] { catchUp(); });
    m_listening = driver;
}

void BillChangeFeed::catchUp()
{
    try {
        // A connection replaced after a loss listens afresh.
        subscribe();
        QSqlQuery q = m_db.exec(QStringLiteral("SELECT seq, bill_id, origin FROM bill_changes WHERE seq > ? ORDER BY seq"),
                                {m_lastSeen});
        QSet<qint64> changed;
        while (q.next()) {
            m_lastSeen = q.value(0).toLongLong();
            if (q.value(2).toString() != m_db.instanceTag())
                changed.insert(q.value(1).toLongLong());
        }
        q.finish();
        if (!changed.isEmpty())
            m_catalog.refresh(changed.values().toVector());
        if (++m_polls % kPruneEveryPolls == 0)
            prune();
    } catch (const ServiceError &) {
        // The connection broke: a new one (and a new subscription) next time.
        m_db.releaseThreadConnection();
    }
}

void BillChangeFeed::prune()
{
    m_db.exec(QStringLiteral("DELETE FROM bill_changes WHERE at < now() - interval '1 hour'"));
}
