#include "storagerequests.h"

#include <hostapi/ltdinfo.h>

#include <QJsonObject>

CloudRequest StorageRequests::libraryList(const LtdInfo *server)
{
    return CloudRequest::library(server, QStringLiteral("getBZQDKList"));
}

CloudRequest StorageRequests::libraryPermission(const LtdInfo *server, const QString &qdkid)
{
    return CloudRequest::library(server, QStringLiteral("getQDKQX")).set(QStringLiteral("qdkid"), qdkid);
}

CloudRequest StorageRequests::newLibrary(const LtdInfo *server, const QString &name)
{
    return CloudRequest::library(server, QStringLiteral("editNZQDK"))
        .withOperation(0, QJsonObject{{QStringLiteral("qdkid"), QString()}, {QStringLiteral("qdkmc"), name}});
}

CloudRequest StorageRequests::editPermission(const LtdInfo *server)
{
    const QString enterprise = QStringLiteral("listeditpermissionjudgmentforenterprise");
    return CloudRequest::tiered(server, QStringLiteral("listeditpermissionjudgmentforperson"), enterprise, enterprise)
        .withTierFields();
}

CloudRequest StorageRequests::chapterTree(const LtdInfo *server, const QString &bzqdkid, const QString &zjid)
{
    return CloudRequest::tiered(server, QStringLiteral("getchaptertreeforperson"), QStringLiteral("getchaptertreeforkv"),
                                QStringLiteral("getchaptertreeforenterprise"))
        .withEnterpriseQiyeId()
        .set(QStringLiteral("sfjzzsm"), QStringLiteral("0"))
        .set(QStringLiteral("zjid"), zjid)
        .set(QStringLiteral("bzqdkid"), bzqdkid);
}

CloudRequest StorageRequests::savingTask(const LtdInfo *server, bool replace, const QString &taskId,
                                         const QString &qdcount, const QString &bzqdkid, const QString &zjid)
{
    const QString enterprise = QStringLiteral("listsavingtaskbeginforenterprise");
    return CloudRequest::tiered(server, QStringLiteral("listsavingtaskbeginforperson"), enterprise, enterprise)
        .withQiyeId()
        .set(QStringLiteral("mark"), replace ? QStringLiteral("1") : QStringLiteral("0"))
        .set(QStringLiteral("taskid"), taskId)
        .set(QStringLiteral("qdcount"), qdcount)
        .set(QStringLiteral("bzqdkid"), bzqdkid)
        .set(QStringLiteral("zjid"), zjid);
}

bool StorageRequests::usesLibraryPermission(const LtdInfo *server)
{
    return server && (server->getType() == 1 || server->getType() == -1);
}

QString StorageRequests::newLibraryNameError(const QString &name)
{
    if (name.isEmpty())
        return QStringLiteral("名称不能为空！");
    if (name.size() > MaxLibraryName)
        return QStringLiteral("请输入50个字符以内任意文本！");
    return QString();
}
