#pragma once
#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QMetaType>
#include <QString>

// The cloud's answer: {"code", "msg", "data"}. Bytes that are empty or not a
// JSON object give an unanswered reply.
class CloudReply
{
public:
    CloudReply() = default;
    explicit CloudReply(const QJsonObject &object) : m_object(object) {}
    static CloudReply parse(const QByteArray &bytes);

    bool answered() const { return !m_object.isEmpty(); }
    // "code" with a default of 0.
    int code() const;
    bool succeeded() const { return answered() && code() == 0; }
    QString msg() const;
    // Undefined when the reply has no "data".
    QJsonValue data() const;
    QJsonArray dataArray() const { return data().toArray(); }
    QJsonObject dataObject() const { return data().toObject(); }
    // Any other key of the reply, e.g. "allCount" and "pageRowCount" of a page.
    QJsonValue value(const QString &key) const { return m_object.value(key); }
    QJsonObject object() const { return m_object; }

private:
    QJsonObject m_object;
};

Q_DECLARE_METATYPE(CloudReply)
