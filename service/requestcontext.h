#pragma once
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

// One parsed request: the envelope checked, the "data" body, and typed field
// readers that refuse missing, mistyped or oversize values with a ServiceError
// naming the field.
class RequestContext
{
public:
    static constexpr int MaxText = 4000;
    static constexpr int MaxArray = 2000;

    RequestContext(const QJsonObject &request, const QString &session, const QString &client = QString());

    QString method() const { return m_method; }
    QJsonObject data() const { return m_data; }
    QString session() const { return m_session; }
    // The caller's network address; empty in-process.
    QString client() const { return m_client; }
    bool hasOriginToken() const { return m_hasOriginToken; }
    QString originToken() const { return m_originToken; }

    bool has(const QString &key) const { return m_data.contains(key); }
    QString text(const QString &key, bool required = false, int maxLength = MaxText) const;
    // Accepts a JSON number or a decimal text (the dialogs send both).
    int integer(const QString &key, bool required = false, int fallback = 0) const;
    QJsonArray array(const QString &key, bool required = false, int maxSize = MaxArray) const;
    QJsonObject object(const QString &key, bool required = false) const;

    // The same readers on a nested object; `where` names it in messages.
    static QString textIn(const QJsonObject &o, const QString &key, bool required, int maxLength = MaxText);
    static int integerIn(const QJsonObject &o, const QString &key, bool required, int fallback = 0);
    static double numberIn(const QJsonObject &o, const QString &key, bool required, double fallback = 0.0);
    static QJsonArray arrayIn(const QJsonObject &o, const QString &key, bool required, int maxSize = MaxArray);
    static QJsonObject objectIn(const QJsonObject &o, const QString &key, bool required);

private:
    QJsonObject m_data;
    QString m_method;
    QString m_session;
    QString m_client;
    QString m_originToken;
    bool m_hasOriginToken = false;
};
