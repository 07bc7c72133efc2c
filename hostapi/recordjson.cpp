#include "recordjson.h"

#include <cmath>

namespace RecordJson {

QString text(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Double: {
        const double d = value.toDouble();
        if (std::floor(d) == d && std::fabs(d) < 1e15)
            return QString::number(static_cast<qint64>(d));
        return QString::number(d, 'g', 15);
    }
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    default:
        return QString();
    }
}

double number(const QJsonValue &value)
{
    if (value.isDouble())
        return value.toDouble();
    if (value.isString())
        return value.toString().trimmed().toDouble();
    return 0.0;
}

int integer(const QJsonValue &value)
{
    return static_cast<int>(std::llround(number(value)));
}

QJsonValue firstOf(const QJsonObject &object, std::initializer_list<const char *> keys)
{
    for (const char *key : keys) {
        const auto it = object.constFind(QLatin1String(key));
        if (it != object.constEnd())
            return it.value();
    }
    return QJsonValue(QJsonValue::Undefined);
}

}
