#include "scriptedchannel.h"

#include <QJsonDocument>
#include <QTimer>

#include <stdexcept>

CloudCall *ScriptedChannel::start(const QJsonObject &request, const QString &session)
{
    QByteArray bytes;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_requests << request;
        m_sessions << session;
        if (m_failure)
            throw std::runtime_error(m_failure);
        if (!m_replies.isEmpty())
            bytes = m_replies.takeFirst();
    }
    auto *call = new CloudCall;
    QTimer::singleShot(0, call, [call, bytes] { call->finish(bytes); });
    return call;
}

void ScriptedChannel::reply(const QJsonObject &object)
{
    replyBytes(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void ScriptedChannel::replyBytes(const QByteArray &bytes)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_replies << bytes;
}

void ScriptedChannel::replyOk(const QJsonValue &data)
{
    QJsonObject o{{QStringLiteral("code"), 0}, {QStringLiteral("msg"), QString()}};
    if (!data.isUndefined() && !data.isNull())
        o.insert(QStringLiteral("data"), data);
    reply(o);
}

void ScriptedChannel::replyError(int code, const QString &msg)
{
    reply(QJsonObject{{QStringLiteral("code"), code}, {QStringLiteral("msg"), msg}});
}

QList<QJsonObject> ScriptedChannel::requests() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests;
}

QJsonObject ScriptedChannel::lastRequest() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests.isEmpty() ? QJsonObject() : m_requests.last();
}

QStringList ScriptedChannel::sessions() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_sessions;
}

void ScriptedChannel::clear()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_requests.clear();
    m_sessions.clear();
    m_replies.clear();
}
