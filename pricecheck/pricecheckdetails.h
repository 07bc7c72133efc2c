#pragma once
#include <cloud/cloudrequest.h>

#include <QJsonObject>
#include <QList>
#include <QString>

#include <memory>

class CloudZjBean;
class LtdInfo;
class cloudZjnr;
class zStandardTreeNodeData;

// What the check browser shows of one cloud bill: the first tab's name and
// text, the composition tree and the source project's information.
class PriceCheckDetails
{
public:
    // "工程内容" when the bill's kind contains a measure-item kind name,
    // otherwise "项目特征".
    static QString firstTabName(const QString &kind);
    // The cloud bill's work content when the upper-cased kind equals a
    // measure-item kind name, otherwise its item features.
    static QString firstTabText(const QString &kind, const CloudZjBean &bill);

    // One tree row per composition line, nested by parent id; lines with fee
    // lines get a "查看" button cell under "djjscx". Node ids are line ids.
    static std::unique_ptr<zStandardTreeNodeData> compositionTree(const QList<cloudZjnr> &lines);

    // The project-information request of `bill` on `server`'s tier.
    static CloudRequest projectInfoRequest(const LtdInfo *server, const CloudZjBean &bill);
    // The labelled lines of a project-information reply's "data", each only
    // when its value is not empty; the uploader only when "oper" is 0.
    static QString projectInfoText(const QJsonObject &data);
};
