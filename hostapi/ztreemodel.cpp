#include "ztreemodel.h"

zTreeModel::zTreeModel(QObject *parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<zStandardTreeNodeData>())
{
}

zTreeModel::~zTreeModel() = default;

bool zTreeModel::addColumn(const QString &title, const QString &key, int width, int kind)
{
    if (kind != zTableCell::ColumnKind || key.isEmpty() || columnOf(key) >= 0)
        return false;
    beginInsertColumns(QModelIndex(), m_columns.size(), m_columns.size());
    m_columns << zTableColumn(title, key, width, kind);
    endInsertColumns();
    return true;
}

int zTreeModel::columnOf(const QString &key) const
{
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns.at(i).key == key)
            return i;
    return -1;
}

void zTreeModel::setRootData(std::unique_ptr<zStandardTreeNodeData> root)
{
    beginResetModel();
    m_root = root ? std::move(root) : std::make_unique<zStandardTreeNodeData>();
    endResetModel();
}

void zTreeModel::setRootData(const zStandardTreeNodeData &root)
{
    setRootData(root.clone());
}

void zTreeModel::clearRows()
{
    setRootData(std::make_unique<zStandardTreeNodeData>());
}

zStandardTreeNodeData *zTreeModel::appendChild(const QModelIndex &parent)
{
    zStandardTreeNodeData *owner = nodeOrRoot(parent);
    const QModelIndex parentIndex = owner == m_root.get() ? QModelIndex() : indexOf(owner);
    beginInsertRows(parentIndex, owner->childCount(), owner->childCount());
    zStandardTreeNodeData *node = owner->addChild();
    endInsertRows();
    return node;
}

bool zTreeModel::setCell(const QModelIndex &index, const QVariant &value, int kind)
{
    zStandardTreeNodeData *node = nodeAt(index);
    if (!node || !zTableCell::isValidKind(kind))
        return false;
    node->setCell(m_columns.at(index.column()).key, value, kind);
    emit dataChanged(index, index);
    return true;
}

bool zTreeModel::setCheckState(const QModelIndex &index, Qt::CheckState state)
{
    zStandardTreeNodeData *node = nodeAt(index);
    const QString key = node ? m_columns.at(index.column()).key : QString();
    if (!node || node->cell(key).kind != zTableCell::CheckCell)
        return false;
    node->setCheckState(key, state);
    emit dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

zStandardTreeNodeData *zTreeModel::nodeAt(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    return static_cast<zStandardTreeNodeData *>(index.internalPointer());
}

QModelIndex zTreeModel::indexOf(const zStandardTreeNodeData *node, int column) const
{
    if (!node || node == m_root.get() || !node->parent() || column < 0 || column >= m_columns.size())
        return QModelIndex();
    return createIndex(node->row(), column, const_cast<zStandardTreeNodeData *>(node));
}

QModelIndex zTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (column < 0 || column >= m_columns.size() || (parent.isValid() && parent.column() != 0))
        return QModelIndex();
    zStandardTreeNodeData *child = nodeOrRoot(parent)->child(row);
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex zTreeModel::parent(const QModelIndex &child) const
{
    zStandardTreeNodeData *node = nodeAt(child);
    if (!node || node->parent() == m_root.get())
        return QModelIndex();
    return indexOf(node->parent(), 0);
}

int zTreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.isValid() && parent.column() != 0)
        return 0;
    return nodeOrRoot(parent)->childCount();
}

int zTreeModel::columnCount(const QModelIndex &) const
{
    return m_columns.size();
}

QVariant zTreeModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return QVariant();
    const zStandardTreeNodeData *node = nodeAt(index);
    const QString &key = m_columns.at(index.column()).key;
    if (role == zTableCell::KeyRole)
        return key;
    if (role == zTableCell::RowDataRole)
        return node->userData();
    return node->cell(key).data(role);
}

bool zTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    return setCheckState(index, Qt::CheckState(value.toInt()));
}

Qt::ItemFlags zTreeModel::flags(const QModelIndex &index) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return Qt::NoItemFlags;
    return nodeAt(index)->cell(m_columns.at(index.column()).key).flags();
}

QVariant zTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return QAbstractItemModel::headerData(section, orientation, role);
    return m_columns.at(section).headerData(role);
}

zStandardTreeNodeData *zTreeModel::nodeOrRoot(const QModelIndex &index) const
{
    zStandardTreeNodeData *node = nodeAt(index);
    return node ? node : m_root.get();
}
