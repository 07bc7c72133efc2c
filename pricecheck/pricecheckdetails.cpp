#include "pricecheckdetails.h"

#include <hostapi/cloudzjbean.h>
#include <hostapi/hostconstants.h>
#include <hostapi/zstandardtreenodedata.h>

#include <QHash>

namespace {
bool isMeasureKind(const QString &kind)
{
    const QString upper = kind.toUpper();
    return upper == CXMZJXQDAEnName || upper == CXMZJXQDBEnName;
}

QString valueText(const QJsonValue &value)
{
    if (value.isDouble())
        return QString::number(value.toDouble(), 'g', 15);
    return value.toVariant().toString();
}
}

QString PriceCheckDetails::firstTabName(const QString &kind)
{
    const bool measure = kind.contains(CXMZJXQDAEnName) || kind.contains(CXMZJXQDBEnName);
    return measure ? QStringLiteral("工程内容") : QStringLiteral("项目特征");
}

QString PriceCheckDetails::firstTabText(const QString &kind, const CloudZjBean &bill)
{
    return isMeasureKind(kind) ? bill.GetGcnr() : bill.getXmtz();
}

std::unique_ptr<zStandardTreeNodeData> PriceCheckDetails::compositionTree(const QList<cloudZjnr> &lines)
{
    auto root = std::make_unique<zStandardTreeNodeData>();
    QHash<int, zStandardTreeNodeData *> byId;
    for (const cloudZjnr &line : lines) {
        zStandardTreeNodeData *parent = byId.value(line.getParentId(), root.get());
        zStandardTreeNodeData *node = parent->addChild();
        node->setId(line.getId());
        node->setCell(QStringLiteral("debh"), line.getDebh());
        node->setCell(QStringLiteral("demc"), line.getDemc());
        node->setCell(QStringLiteral("gcl"), line.getGcl(), zTableCell::NumberCell);
        node->setCell(QStringLiteral("dw"), line.getDw());
        node->setCell(QStringLiteral("zhdj"), line.getZhdj(), zTableCell::NumberCell);
        node->setCell(QStringLiteral("zhhj"), line.getZhhj(), zTableCell::NumberCell);
        if (!line.getFymblist().isEmpty())
            node->setCell(QStringLiteral("djjscx"), QStringLiteral("查看"), zTableCell::ButtonCell);
        byId.insert(line.getId(), node);
    }
    return root;
}

CloudRequest PriceCheckDetails::projectInfoRequest(const LtdInfo *server, const CloudZjBean &bill)
{
    CloudRequest request = CloudRequest::tiered(server, QStringLiteral("personprojectinfoforsinglepricecheck"),
                                                QStringLiteral("kvprojectinfoforsinglepricecheck"),
                                                QStringLiteral("enterpriseprojectinfoforsinglepricecheck"));
    request.withEnterpriseQiyeId().set(QStringLiteral("id"), bill.getId()).set(QStringLiteral("ly"), bill.getLy());
    return request;
}

QString PriceCheckDetails::projectInfoText(const QJsonObject &data)
{
    static const char *const lines[][2] = {
        {"xmmc", "项目名称："}, {"dxmc", "单项名称："},     {"dwmc", "单位名称："},   {"qdgf", "清单规范："},
        {"jjde", "计价定额："}, {"jsfs", "计税方式："},     {"zhdjfs", "综合单价方式："}, {"hbgd", "海拔高度："},
        {"dd", "地点："},       {"jgjzsj", "价格基准时间："}, {"jsxs", "建设形式："},   {"zjsjlx", "造价数据类型："},
        {"scrmc", "上传人："}};
    const QJsonValue oper = data.value(QStringLiteral("oper"));
    const bool showUploader = oper.isDouble() && oper.toDouble() == 0;
    QString text;
    for (const auto &line : lines) {
        const QString key = QString::fromLatin1(line[0]);
        const QString value = valueText(data.value(key));
        if (value.isEmpty() || (key == QLatin1String("scrmc") && !showUploader))
            continue;
        text += QString::fromUtf8(line[1]) + value + QLatin1Char('\n');
    }
    return text;
}
