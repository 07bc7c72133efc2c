#include "qdtreemodel.h"
#include "qdtreeitem.h"

QDTreeModel::QDTreeModel(QObject *parent)
    : QAbstractItemModel(parent), m_root(new QDTreeItem())
{
}

QDTreeModel::~QDTreeModel()
{
    delete m_root;
}

QDTreeItem *QDTreeModel::itemOrRoot(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<QDTreeItem *>(index.internalPointer()) : m_root;
}

QModelIndex QDTreeModel::indexOrRoot(QDTreeItem *item) const
{
    return (!item || item == m_root) ? QModelIndex() : indexForTreeItem(item);
}

QModelIndex QDTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    QDTreeItem *child = itemOrRoot(parent)->child(row);
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex QDTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid())
        return QModelIndex();
    QDTreeItem *parentItem = static_cast<QDTreeItem *>(child.internalPointer())->parent();
    if (!parentItem || parentItem == m_root)
        return QModelIndex();
    return createIndex(parentItem->row(), 0, parentItem);
}

int QDTreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    return itemOrRoot(parent)->childCount();
}

int QDTreeModel::columnCount(const QModelIndex &) const
{
    return 1;
}

QVariant QDTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const QDTreeNode &node = static_cast<QDTreeItem *>(index.internalPointer())->data();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return node.text;
    case Qt::WhatsThisRole:
        return node.id;
    default:
        return QVariant();
    }
}

Qt::ItemFlags QDTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled;
}

QVariant QDTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_root->data().text;
    return QVariant();
}

QDTreeItem *QDTreeModel::getRootNode() const
{
    return m_root;
}

QModelIndex QDTreeModel::indexForTreeItem(QDTreeItem *item) const
{
    if (!item || item == m_root)
        return QModelIndex();
    return createIndex(item->row(), 0, item);
}

QDTreeItem *QDTreeModel::itemForIndex(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<QDTreeItem *>(index.internalPointer()) : nullptr;
}

QDTreeItem *QDTreeModel::appendNode(QDTreeItem *parent, const QDTreeNode &node)
{
    QDTreeItem *p = parent ? parent : m_root;
    const int row = p->childCount();
    beginInsertRows(indexOrRoot(p), row, row);
    auto *item = new QDTreeItem(node, p);
    endInsertRows();
    return item;
}

QList<QDTreeItem *> QDTreeModel::setChildren(QDTreeItem *parent, const QList<QDTreeNode> &nodes)
{
    QDTreeItem *p = parent ? parent : m_root;
    const QModelIndex parentIndex = indexOrRoot(p);
    if (p->childCount() > 0) {
        beginRemoveRows(parentIndex, 0, p->childCount() - 1);
        while (p->childCount() > 0)
            p->removeChild(p->child(0));
        endRemoveRows();
    }
    QList<QDTreeItem *> added;
    if (nodes.isEmpty())
        return added;
    beginInsertRows(parentIndex, 0, nodes.size() - 1);
    for (const QDTreeNode &node : nodes)
        added << new QDTreeItem(node, p);
    endInsertRows();
    return added;
}

void QDTreeModel::removeItem(QDTreeItem *item)
{
    if (!item || item == m_root || !item->parent())
        return;
    QDTreeItem *p = item->parent();
    const int row = item->row();
    if (row < 0)
        return;
    beginRemoveRows(indexOrRoot(p), row, row);
    p->removeChild(item);
    endRemoveRows();
}

void QDTreeModel::clear()
{
    beginResetModel();
    while (m_root->childCount() > 0)
        m_root->removeChild(m_root->child(0));
    endResetModel();
}

void QDTreeModel::setHeaderText(const QString &text)
{
    m_root->data().text = text;
    emit headerDataChanged(Qt::Horizontal, 0, 0);
}
