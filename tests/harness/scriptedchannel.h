#pragma once
#include <hostapi/cloudchannel.h>

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <mutex>

// A cloud channel for tests: records every request and answers from a queue.
// Replies are delivered through the caller's event loop, as a real transport
// would. An exhausted queue answers with empty bytes (no reply).
class ScriptedChannel : public CloudChannel
{
public:
    CloudCall *start(const QJsonObject &request, const QString &session) override;
    QString name() const override { return QStringLiteral("scripted"); }

    void reply(const QJsonObject &object);
    void replyBytes(const QByteArray &bytes);
    // {"code": 0, "msg": "", "data": data}
    void replyOk(const QJsonValue &data = QJsonValue());
    void replyError(int code, const QString &msg);
    // Every later request throws std::runtime_error(`what`), as a broken transport would.
    void failWith(const char *what) { m_failure = what; }

    QList<QJsonObject> requests() const;
    QJsonObject lastRequest() const;
    QStringList sessions() const;
    void clear();

private:
    // A standard mutex: the thread sanitizer cannot see QMutex's, and
    // workers take replies while a test scripts the next ones.
    mutable std::mutex m_mutex;
    QList<QByteArray> m_replies;
    QList<QJsonObject> m_requests;
    QStringList m_sessions;
    const char *m_failure = nullptr;
};
