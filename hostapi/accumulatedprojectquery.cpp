#include "accumulatedprojectquery.h"
#include "apptype.h"
#include "hostconstants.h"
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
    int qiyeId = server.getQyid();
    int useType = 2;
    if (server.getToken() == KvTokenUser) {
        qiyeId = -1;
        useType = 1;
    } else if (server.getToken() == KvToken) {
        qiyeId = 0;
        useType = 3;
    }
    QJsonObject data{{QStringLiteral("method"), QStringLiteral("getaccumulatedprojects")},
                     {QStringLiteral("qiyeID"), qiyeId},
                     {QStringLiteral("usetype"), useType}};
    if (!conditionNull && gcType > 0)
        data.insert(QStringLiteral("gcType"), gcType);
    if (!conditionNull && !keyword.trimmed().isEmpty())
        data.insert(QStringLiteral("keyword"), keyword.trimmed());
    return QJsonObject{{QStringLiteral("cmd"), QStringLiteral("cloudSoft")},
                       {QStringLiteral("app_type"), AppType()},
                       {QStringLiteral("orgin_token"), server.getToken()},
                       {QStringLiteral("data"), data}};
}

bool AccumulatedProjectQuery::readReply(const QByteArray &bytes, QList<QJsonObject> *projects, QString *error)
{
    projects->clear();
    const QJsonDocument doc = QJsonDocument::fromJson(bytes);
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
    return QJsonDocument::fromJson(text.toUtf8()).object();
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
