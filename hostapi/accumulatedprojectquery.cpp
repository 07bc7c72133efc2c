#include "accumulatedprojectquery.h"
#include "jsonnesting.h"
#include "cloudenvelope.h"
#include "ltdinfo.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {
const QString kTid = QStringLiteral("tid");

QString textOf(const QJsonValue &value)
{
    return value.isDouble() ? QString::number(value.toDouble(), 'g', 15) : value.toString();
}
}

QJsonObject AccumulatedProjectQuery::buildRequest(const LtdInfo &server, int gcType, const QString &keyword,
                                                  bool conditionNull)
{
    QJsonObject fields;
    if (!conditionNull && gcType > 0)
        fields.insert(QStringLiteral("gcType"), gcType);
    if (!conditionNull && !keyword.trimmed().isEmpty())
        fields.insert(QStringLiteral("keyword"), keyword.trimmed());
    return CloudEnvelope::tiered(QStringLiteral("getaccumulatedprojects"), server, fields);
}

bool AccumulatedProjectQuery::readReply(const QByteArray &bytes, QList<QJsonObject> *projects, QString *error)
{
    projects->clear();
    const QJsonDocument doc = JsonNesting::parse(bytes);
    if (!doc.isObject() || doc.object().isEmpty()) {
        *error = noReplyText();
        return false;
    }
    const QJsonObject reply = doc.object();
    if (reply.value(QStringLiteral("code")).toInt(0) != 0) {
        *error = reply.value(QStringLiteral("msg")).toString();
        return false;
    }
    for (const QJsonValue &entry : reply.value(QStringLiteral("data")).toArray()) {
        const QJsonObject project = entry.toObject();
        if (!textOf(project.value(kTid)).isEmpty())
            projects->append(project);
    }
    error->clear();
    return true;
}

QString AccumulatedProjectQuery::choiceText(const QJsonObject &project)
{
    return QString::fromUtf8(QJsonDocument(project).toJson(QJsonDocument::Compact));
}

QJsonObject AccumulatedProjectQuery::choiceObject(const QString &text)
{
    return JsonNesting::parse(text.toUtf8()).object();
}

QString AccumulatedProjectQuery::choiceId(const QString &text)
{
    return textOf(choiceObject(text).value(kTid));
}

QString AccumulatedProjectQuery::choiceName(const QString &text)
{
    return choiceObject(text).value(QStringLiteral("xmmc")).toString();
}

QStringList AccumulatedProjectQuery::choiceIds(const QStringList &choices)
{
    QStringList ids;
    for (const QString &text : choices)
        ids << choiceId(text);
    return ids;
}

QString AccumulatedProjectQuery::noReplyText()
{
    return QStringLiteral("无法连接云服务，请稍后重试");
}
