#include "billupload.h"

#include <cloud/cloudexchange.h>
#include <cloud/cloudrequest.h>

#include <hostapi/basedataitem.h>
#include <hostapi/cloudzjnr.h>
#include <hostapi/round.h>

#include <QHash>
#include <QJsonArray>

BillUpload::BillUpload(const Task &task, const QList<BaseDataItem *> &bills)
    : m_task(task)
    , m_bills(bills)
{
}

int BillUpload::batchCount() const
{
    return (m_bills.size() + BatchSize - 1) / BatchSize;
}

BillUpload::Result BillUpload::run(const std::function<void(int)> &progress) const
{
    Result result;
    QHash<QString, BaseDataItem *> byGuid;
    for (BaseDataItem *bill : m_bills)
        byGuid.insert(QString::number(bill->GetID()), bill);
    for (int batch = 0; batch < batchCount(); ++batch) {
        CloudRequest request(m_task.server, QStringLiteral("uploadsavingtaskbills"));
        request.withTierFields();
        const QJsonObject fields = batchRequest(batch);
        for (auto it = fields.begin(); it != fields.end(); ++it)
            request.set(it.key(), it.value());
        const CloudReply reply = CloudExchange::send(request);
        if (!reply.succeeded()) {
            result.error = reply.answered() ? reply.msg() : QStringLiteral("云端未响应");
            result.failed.append(m_bills.mid(batch * BatchSize));
            break;
        }
        const QJsonObject data = reply.dataObject();
        result.saved += data.value(QStringLiteral("saved")).toInt();
        for (const QJsonValue &guid : data.value(QStringLiteral("failed")).toArray())
            if (BaseDataItem *bill = byGuid.value(guid.toVariant().toString()))
                result.failed.append(bill);
        if (progress)
            progress(batch + 1);
    }
    return result;
}

QJsonObject BillUpload::batchRequest(int batch) const
{
    const int levels = m_task.childChapters ? qMax(0, MaxChapterDepth - qMax(1, m_task.chapterLevel)) : 0;
    QJsonArray bills;
    for (const BaseDataItem *bill : m_bills.mid(batch * BatchSize, BatchSize))
        bills.append(billJson(bill, m_task.content, chapterPath(bill, levels)));
    QJsonObject fields{{QStringLiteral("taskid"), m_task.taskId}, {QStringLiteral("bills"), bills}};
    const bool ownChapter = !m_task.chapterId.isEmpty() && m_task.chapterId != QLatin1String("null")
                            && m_task.chapterId != m_task.defaultChapterId;
    if (ownChapter)
        fields.insert(QStringLiteral("zjid"), m_task.chapterId);
    if (!m_task.defaultChapterId.isEmpty())
        fields.insert(QStringLiteral("mrzjid"), m_task.defaultChapterId);
    return fields;
}

QJsonObject BillUpload::billJson(const BaseDataItem *bill, int content, const QStringList &chapterPath)
{
    QJsonObject o{{QStringLiteral("guidb"), QString::number(bill->GetID())},
                  {QStringLiteral("qdbh"), bill->text(BaseDataItem::CodeRole)},
                  {QStringLiteral("xmmc"), bill->text(BaseDataItem::NameRole)},
                  {QStringLiteral("jldw"), bill->text(BaseDataItem::UnitRole)},
                  {QStringLiteral("xmtz"), bill->text(BaseDataItem::FeaturesRole)},
                  {QStringLiteral("gznr"), bill->text(BaseDataItem::WorkContentRole)}};
    if (content != BillOnly)
        o.insert(QStringLiteral("zhdj"), bill->data(BaseDataItem::UnitPriceRole).toDouble());
    if (content == FullComposition)
        o.insert(QStringLiteral("zjnr"), compositionText(bill));
    if (!chapterPath.isEmpty())
        o.insert(QStringLiteral("zjlj"), QJsonArray::fromStringList(chapterPath));
    return o;
}

QStringList BillUpload::chapterPath(const BaseDataItem *bill, int levels)
{
    QStringList path;
    for (const BaseDataItem *p = bill->parentItem(); p; p = p->parentItem())
        if (p->GetKind() == BaseDataItem::SectionKind)
            path.prepend(p->text(BaseDataItem::NameRole));
    return path.mid(0, levels);
}

QString BillUpload::compositionText(const BaseDataItem *bill)
{
    const QString price = Round(bill->data(BaseDataItem::UnitPriceRole).toDouble(), 2, true);
    cloudZjnr line;
    line.setId(1);
    line.setType(QStringLiteral("XP"));
    line.setIsDe(true);
    line.setDebh(bill->text(BaseDataItem::CodeRole));
    line.setDemc(bill->text(BaseDataItem::NameRole));
    line.setGcl(QStringLiteral("1"));
    line.setDw(bill->text(BaseDataItem::UnitRole));
    line.setZhdj(price);
    line.setZhhj(price);
    return cloudZjnr::toZjnrText({line});
}
