#pragma once
#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

class LtdInfo;

// The rules behind the project filter (CloudProCheck), without a window: the
// host-only request "getaccumulatedprojects", the reading of its reply, and the
// text form of a chosen project handed to the owner.
//
// A chosen project travels as the compact JSON text of its reply object
// ({"tid", "xmmc", "dq", "sj", "gcType"}), so an owner reads "tid" and "xmmc"
// back with choiceId/choiceName and can store the list as it is.
class AccumulatedProjectQuery
{
public:
    // Envelope "cmd" "cloudSoft", "app_type", "orgin_token" (the server's
    // token) and "data" {"method", "qiyeID", "usetype"} by the server's tier
    // (personal -1/1, Korvane 0/3, enterprise getQyid()/2). Unless
    // `conditionNull`, "gcType" is added when above 0 and "keyword" when not
    // blank (trimmed).
    static QJsonObject buildRequest(const LtdInfo &server, int gcType, const QString &keyword, bool conditionNull);

    // The projects of a reply, in reply order. False with `error` set to the
    // text to show: the reply's "msg" on a failure code, or a connection
    // message when there is no usable reply. Array entries that are not
    // objects or lack "tid" are skipped.
    static bool readReply(const QByteArray &bytes, QList<QJsonObject> *projects, QString *error);

    static QString choiceText(const QJsonObject &project);
    static QJsonObject choiceObject(const QString &text);
    static QString choiceId(const QString &text);
    static QString choiceName(const QString &text);
    static QStringList choiceIds(const QStringList &choices);

    static QString noReplyText();
};
