#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QObject>
#include <QString>

// One request in flight on a channel. The channel finishes it exactly once, on
// the thread that called CloudChannel::start (queue the call from elsewhere).
class CloudCall : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    bool isFinished() const { return m_finished; }
    QByteArray reply() const { return m_reply; }
    // Empty bytes mean "no reply" (transport failure, time-out).
    void finish(const QByteArray &reply);

signals:
    void finished(const QByteArray &reply);

private:
    QByteArray m_reply;
    bool m_finished = false;
};

// The transport under ServicesUtil: embedded service, HTTP, or a test script.
class CloudChannel
{
public:
    virtual ~CloudChannel();
    // Starts one request. `session` is the caller's cloud login session (may be
    // empty); it travels beside the envelope, not inside it. The caller owns
    // the returned call.
    virtual CloudCall *start(const QJsonObject &request, const QString &session) = 0;
    virtual QString name() const = 0;
    // Why the server could not be reached on the last call that got no
    // answer (refused, unknown host, no connection in time, no reply in
    // time); empty while it answers. A cancelled call leaves it unchanged.
    virtual QString unreachableReason() const { return QString(); }
};
