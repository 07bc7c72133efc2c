#pragma once
#include <QJsonObject>
#include <QJsonValue>
#include <QString>

// Reading the loosely typed JSON of cloud records: the cloud sends numbers as
// text and text as numbers depending on the source, so readers take either.
namespace RecordJson {
// The value as text: strings as they are, numbers in their shortest exact
// form ("12.5", "3"), booleans "true"/"false", anything else empty.
QString text(const QJsonValue &value);
// The value as a number: numbers as they are, text parsed (0 when it is no
// number), anything else 0.
double number(const QJsonValue &value);
int integer(const QJsonValue &value);
// The first of `keys` present in `object` (QJsonValue::Undefined when none).
QJsonValue firstOf(const QJsonObject &object, std::initializer_list<const char *> keys);
}
