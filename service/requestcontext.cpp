#include "requestcontext.h"
#include "serviceerror.h"

#include <cmath>

namespace {

ServiceError missing(const QString &key)
{
    return ServiceError(ServiceError::BadRequest, QStringLiteral("缺少参数%1").arg(key));
}

ServiceError mistyped(const QString &key)
{
    return ServiceError(ServiceError::BadRequest, QStringLiteral("参数%1格式错误").arg(key));
}

// True when `v` holds no value (with `blankText`, a blank text is none too);
// refuses a required field that has none.
bool absent(const QJsonValue &v, const QString &key, bool required, bool blankText = false)
{
    const bool none = v.isUndefined() || v.isNull() || (blankText && v.isString() && v.toString().trimmed().isEmpty());
    if (none && required)
        throw missing(key);
    return none;
}

}

RequestContext::RequestContext(const QJsonObject &request, const QString &session, const QString &client)
    : m_session(session)
    , m_client(client)
{
    if (request.isEmpty())
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("请求内容为空"));
    if (request.value(QStringLiteral("cmd")).toString() != QLatin1String("cloudSoft"))
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("不支持的请求命令"));
    const QJsonValue data = request.value(QStringLiteral("data"));
    if (!data.isObject())
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("请求缺少data对象"));
    m_data = data.toObject();
    const QJsonValue method = m_data.value(QStringLiteral("method"));
    if (!method.isString() || method.toString().isEmpty())
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("请求缺少method"));
    m_method = method.toString();
    if (m_method.size() > 100)
        throw ServiceError(ServiceError::UnknownMethod, QStringLiteral("不支持的方法"));
    const QJsonValue token = request.value(QStringLiteral("orgin_token"));
    if (!token.isUndefined()) {
        if (!token.isString() || token.toString().size() > 200)
            throw mistyped(QStringLiteral("orgin_token"));
        m_hasOriginToken = true;
        m_originToken = token.toString();
    }
    if (m_session.size() > 200)
        throw ServiceError(ServiceError::NotLoggedIn, QStringLiteral("登录已失效，请重新登录"));
}

QString RequestContext::text(const QString &key, bool required, int maxLength) const
{
    return textIn(m_data, key, required, maxLength);
}

int RequestContext::integer(const QString &key, bool required, int fallback) const
{
    return integerIn(m_data, key, required, fallback);
}

QJsonArray RequestContext::array(const QString &key, bool required, int maxSize) const
{
    return arrayIn(m_data, key, required, maxSize);
}

QJsonObject RequestContext::object(const QString &key, bool required) const
{
    return objectIn(m_data, key, required);
}

QString RequestContext::textIn(const QJsonObject &o, const QString &key, bool required, int maxLength)
{
    const QJsonValue v = o.value(key);
    if (absent(v, key, required))
        return QString();
    QString text;
    if (v.isString())
        text = v.toString();
    else if (v.isDouble())
        text = QString::number(v.toDouble(), 'g', 15);
    else
        throw mistyped(key);
    if (text.size() > maxLength)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("参数%1超出长度限制").arg(key));
    if (required && text.trimmed().isEmpty())
        throw missing(key);
    return text;
}

int RequestContext::integerIn(const QJsonObject &o, const QString &key, bool required, int fallback)
{
    const QJsonValue v = o.value(key);
    if (absent(v, key, required, true))
        return fallback;
    if (v.isDouble()) {
        const double d = v.toDouble();
        if (std::isfinite(d) && d == std::floor(d) && std::fabs(d) < 2147483647.0)
            return int(d);
        throw mistyped(key);
    }
    if (v.isString()) {
        bool ok = false;
        const int value = v.toString().trimmed().toInt(&ok);
        if (ok)
            return value;
    }
    throw mistyped(key);
}

double RequestContext::numberIn(const QJsonObject &o, const QString &key, bool required, double fallback)
{
    const QJsonValue v = o.value(key);
    if (absent(v, key, required, true))
        return fallback;
    double d = 0.0;
    bool ok = v.isDouble();
    if (ok)
        d = v.toDouble();
    else if (v.isString())
        d = v.toString().trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(d) || std::fabs(d) > 1e12)
        throw mistyped(key);
    return d;
}

QJsonArray RequestContext::arrayIn(const QJsonObject &o, const QString &key, bool required, int maxSize)
{
    const QJsonValue v = o.value(key);
    if (absent(v, key, required))
        return QJsonArray();
    if (!v.isArray())
        throw mistyped(key);
    const QJsonArray a = v.toArray();
    if (a.size() > maxSize)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("参数%1的条数超出限制").arg(key));
    return a;
}

QJsonObject RequestContext::objectIn(const QJsonObject &o, const QString &key, bool required)
{
    const QJsonValue v = o.value(key);
    if (absent(v, key, required))
        return QJsonObject();
    if (!v.isObject())
        throw mistyped(key);
    return v.toObject();
}
