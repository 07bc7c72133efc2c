#include "chaptertreemodel.h"
#include "qdtreeitem.h"

#include <QJsonObject>

ChapterTreeModel::ChapterTreeModel(QObject *parent)
    : QDTreeModel(parent)
    , m_open(QStringLiteral(":/Image/svg/openFolder.svg"))
    , m_closed(QStringLiteral(":/Image/svg/folder.svg"))
    , m_file(QStringLiteral(":/Image/svg/file.svg"))
{
}

QVariant ChapterTreeModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DecorationRole)
        return QDTreeModel::data(index, role);
    const QDTreeItem *item = itemForIndex(index);
    if (!item || isPlaceholder(item))
        return QVariant();
    if (item->childCount() == 0)
        return m_file;
    return m_expanded.contains(item) ? m_open : m_closed;
}

void ChapterTreeModel::fill(QDTreeItem *parent, const QJsonArray &records)
{
    QList<QDTreeNode> nodes;
    QList<bool> closed;
    for (const QJsonValue &value : records) {
        const QJsonObject record = value.toObject();
        QDTreeNode node;
        node.text = record.value(QStringLiteral("zjmc")).toString();
        node.name = node.text;
        node.id = record.value(QStringLiteral("_id")).toVariant().toString();
        nodes << node;
        closed << (record.value(QStringLiteral("state")).toString() == QLatin1String("closed"));
    }
    if (!parent)
        m_expanded.clear();
    const QList<QDTreeItem *> added = setChildren(parent, nodes);
    for (int i = 0; i < added.size(); ++i)
        if (closed.at(i))
            appendNode(added.at(i), QDTreeNode());
}

bool ChapterTreeModel::isPlaceholder(const QDTreeItem *item)
{
    return item && item->parent() && item->data().id.isEmpty() && item->data().text.isEmpty();
}

bool ChapterTreeModel::waitsForChildren(const QDTreeItem *item)
{
    return item && item->childCount() == 1 && isPlaceholder(item->child(0));
}

int ChapterTreeModel::level(const QDTreeItem *item)
{
    int depth = 0;
    for (const QDTreeItem *p = item; p && p->parent(); p = p->parent())
        ++depth;
    return depth;
}

void ChapterTreeModel::setExpanded(const QModelIndex &index, bool expanded)
{
    const QDTreeItem *item = itemForIndex(index);
    if (!item)
        return;
    if (expanded)
        m_expanded.insert(item);
    else
        m_expanded.remove(item);
    emit dataChanged(index, index, {Qt::DecorationRole});
}
