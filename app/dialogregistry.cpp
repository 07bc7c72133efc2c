#include "dialogregistry.h"

#include <QPair>

namespace {
QList<HostDialogEntry> &registered()
{
    static QList<HostDialogEntry> list;
    return list;
}
}

bool DialogRegistry::add(const HostDialogEntry &entry)
{
    QList<HostDialogEntry> &list = registered();
    for (HostDialogEntry &e : list) {
        if (e.id == entry.id) {
            e = entry;
            return true;
        }
    }
    list.append(entry);
    return true;
}

QList<HostDialogEntry> DialogRegistry::entries()
{
    QList<HostDialogEntry> ordered;
    for (const auto &planned : plannedEntries()) {
        if (const HostDialogEntry *e = find(planned.first))
            ordered.append(*e);
    }
    for (const HostDialogEntry &e : registered()) {
        bool planned = false;
        for (const auto &p : plannedEntries())
            planned = planned || p.first == e.id;
        if (!planned)
            ordered.append(e);
    }
    return ordered;
}

const HostDialogEntry *DialogRegistry::find(const QString &id)
{
    for (const HostDialogEntry &e : registered()) {
        if (e.id == id)
            return &e;
    }
    return nullptr;
}

QList<QPair<QString, QString>> DialogRegistry::plannedEntries()
{
    return {
        {QStringLiteral("billstorage"), QStringLiteral("清单云存储")},
        {QStringLiteral("featurestorage"), QStringLiteral("项目特征存储")},
        {QStringLiteral("schemestorage"), QStringLiteral("组价方案存储")},
        {QStringLiteral("pricecheck"), QStringLiteral("清单单价云检查")},
        {QStringLiteral("batchpricing"), QStringLiteral("智能云组价")},
        {QStringLiteral("currentpricing"), QStringLiteral("当前清单智能组价")},
        {QStringLiteral("featureguide"), QStringLiteral("项目特征描述指南")},
        {QStringLiteral("projectfeatures"), QStringLiteral("项目云特征")},
        {QStringLiteral("materialstorage"), QStringLiteral("材料价格存储")},
        {QStringLiteral("materialcheck"), QStringLiteral("材价云检查")},
    };
}
