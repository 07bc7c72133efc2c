#include "tierbillstorage.h"

#include <cloud/cloudexchange.h>
#include <storage/storagerequests.h>

#include <QJsonArray>
#include <QUuid>

const QString TierBillStorage::FeatureLibrary = QStringLiteral("项目特征库");
const QString TierBillStorage::SchemeLibrary = QStringLiteral("组价方案库");

namespace {
QString failure(const CloudReply &reply)
{
    return reply.answered() ? reply.msg() : QStringLiteral("云端未响应");
}
}

TierBillStorage::TierBillStorage(LtdInfo *server, const QString &libraryName)
    : m_server(server)
    , m_library(libraryName)
{
}

QString TierBillStorage::libraryId(QString *error) const
{
    const CloudReply list = CloudExchange::send(StorageRequests::libraryList(m_server));
    if (!list.succeeded()) {
        *error = failure(list);
        return QString();
    }
    for (const QJsonValue &library : list.dataArray())
        if (library.toObject().value(QStringLiteral("mc")).toString() == m_library)
            return library.toObject().value(QStringLiteral("id")).toVariant().toString();
    const CloudReply made = CloudExchange::send(StorageRequests::newLibrary(m_server, m_library));
    if (!made.succeeded())
        *error = failure(made);
    return made.dataObject().value(QStringLiteral("id")).toVariant().toString();
}

BillUpload::Result TierBillStorage::store(const QList<BaseDataItem *> &bills, int content) const
{
    BillUpload::Result result;
    const QString library = libraryId(&result.error);
    if (library.isEmpty()) {
        result.failed = bills;
        return result;
    }
    BillUpload::Task task;
    task.server = m_server;
    task.taskId = QUuid::createUuid().toString();
    task.content = content;
    // One default chapter per library, reused by every later store.
    task.defaultChapterId = QStringLiteral("mrzj-%1").arg(library);
    const CloudReply opened = CloudExchange::send(StorageRequests::savingTask(
        m_server, false, task.taskId, QString::number(bills.size()), library, QString()));
    if (!opened.succeeded()) {
        result.error = failure(opened);
        result.failed = bills;
        return result;
    }
    return BillUpload(task, bills).run();
}
