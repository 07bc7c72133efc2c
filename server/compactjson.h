#pragma once
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <string>

// Writes what QJsonDocument::toJson(QJsonDocument::Compact) writes, byte for
// byte, straight into a caller's buffer. Qt 5.15's writer grows its output a
// few bytes at a time and costs more than building most replies.
class CompactJson
{
public:
    static void append(const QJsonObject &object, std::string &out);
    static void append(const QJsonArray &array, std::string &out);
    static void append(const QJsonValue &value, std::string &out);
    static void appendString(const QString &text, std::string &out);
    static void appendNumber(double number, std::string &out);

private:
    static constexpr int OwnDepth = 16;
    static void appendValue(const QJsonValue &value, std::string &out, int depth);
    static void appendArray(const QJsonArray &array, std::string &out, int depth);
    static void appendObject(const QJsonObject &object, std::string &out, int depth);
    static void appendByQt(const QJsonDocument &document, std::string &out);
};
