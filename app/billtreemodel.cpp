#include "billtreemodel.h"

#include <hostapi/jjbtablebase.h>
#include <hostapi/round.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <QBrush>
#include <QFont>

BillTreeModel::BillTreeModel(JJBTableBase *table, QObject *parent) : QAbstractItemModel(parent), m_table(table)
{
    if (root())
        root()->setChangeObserver([this](BaseDataItem *item, int) { itemChanged(item); });
}

BillTreeModel::~BillTreeModel()
{
    if (root())
        root()->setChangeObserver(nullptr);
}

BaseDataItem *BillTreeModel::root() const
{
    return m_table ? m_table->rootItem() : nullptr;
}

BaseDataItem *BillTreeModel::itemAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<BaseDataItem *>(index.internalPointer()) : root();
}

QModelIndex BillTreeModel::indexOf(BaseDataItem *item, int column) const
{
    if (!item || item == root() || !item->parentItem())
        return QModelIndex();
    const BaseDataItem *top = item;
    while (top->parentItem())
        top = top->parentItem();
    if (top != root())
        return QModelIndex();
    return createIndex(rowOf(item), column, item);
}

int BillTreeModel::rowOf(const BaseDataItem *item) const
{
    const BaseDataItem *parent = item->parentItem();
    const auto known = m_rows.constFind(item);
    if (known != m_rows.constEnd() && parent->child(*known) == item)
        return *known;
    // One pass notes every sibling.
    for (int row = 0; row < parent->childCount(); ++row)
        m_rows.insert(parent->child(row), row);
    return m_rows.value(item, -1);
}

QModelIndex BillTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    BaseDataItem *owner = itemAt(parent);
    BaseDataItem *child = owner ? owner->child(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex BillTreeModel::parent(const QModelIndex &child) const
{
    if (!child.isValid())
        return QModelIndex();
    return indexOf(itemAt(child)->parentItem());
}

int BillTreeModel::rowCount(const QModelIndex &parent) const
{
    if (parent.column() > 0)
        return 0;
    BaseDataItem *owner = itemAt(parent);
    return owner ? owner->childCount() : 0;
}

int BillTreeModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QString BillTreeModel::cellText(const BaseDataItem *item, int column) const
{
    switch (column) {
    case CodeColumn:
        return item->text(BaseDataItem::CodeRole);
    case NameColumn:
        return item->text(BaseDataItem::NameRole);
    case UnitColumn:
        return item->text(BaseDataItem::UnitRole);
    case FeaturesColumn:
        return item->text(BaseDataItem::FeaturesRole);
    case WorkContentColumn:
        return item->text(BaseDataItem::WorkContentRole);
    case QuantityColumn:
        return item->isBill() ? Round(item->data(BaseDataItem::QuantityRole).toDouble(), 3, false) : QString();
    case PriceColumn:
        return item->isBill() ? Round(item->data(BaseDataItem::UnitPriceRole).toDouble(), 2, true) : QString();
    default:
        return QString();
    }
}

namespace {
// The item role and undo caption of each editable column.
struct EditColumn
{
    int column;
    int role;
    const char *caption;
};
const EditColumn kEditColumns[] = {
    {BillTreeModel::FeaturesColumn, BaseDataItem::FeaturesRole, "修改项目特征"},
    {BillTreeModel::WorkContentColumn, BaseDataItem::WorkContentRole, "修改工作内容"},
    {BillTreeModel::QuantityColumn, BaseDataItem::QuantityRole, "修改工程量"},
    {BillTreeModel::PriceColumn, BaseDataItem::UnitPriceRole, "修改综合单价"},
};

const EditColumn *editColumn(int column)
{
    for (const EditColumn &e : kEditColumns) {
        if (e.column == column)
            return &e;
    }
    return nullptr;
}
}

Qt::ItemFlags BillTreeModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = QAbstractItemModel::flags(index);
    const BaseDataItem *item = index.isValid() ? itemAt(index) : nullptr;
    if (item && item->isBill() && !item->IsReadOnly() && editColumn(index.column()))
        f |= Qt::ItemIsEditable;
    return f;
}

bool BillTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const EditColumn *edit = editColumn(index.column());
    if (role != Qt::EditRole || !edit || !(flags(index) & Qt::ItemIsEditable))
        return false;
    QVariant stored = value.toString();
    if (index.column() >= QuantityColumn) {
        bool ok = false;
        stored = value.toString().trimmed().remove(QChar(',')).toDouble(&ok);
        if (!ok)
            return false;
    }
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(m_table, 8, QString::fromUtf8(edit->caption)));
    itemAt(index)->setData(edit->role, stored);
    RURecordControl::EndRecord();
    return true;
}

QVariant BillTreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const BaseDataItem *item = itemAt(index);
    switch (role) {
    case Qt::EditRole:
        if (index.column() >= QuantityColumn)
            return QString::number(item->data(index.column() == QuantityColumn ? BaseDataItem::QuantityRole
                                                                               : BaseDataItem::UnitPriceRole)
                                       .toDouble(),
                                   'g', 15);
        return cellText(item, index.column());
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return cellText(item, index.column());
    case Qt::TextAlignmentRole:
        if (index.column() >= QuantityColumn)
            return QVariant(Qt::AlignRight | Qt::AlignVCenter);
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::FontRole:
        if (!item->isBill()) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return QVariant();
    case Qt::BackgroundRole:
        // The report's deviation shading wins over a bill's mark colour.
        if (m_highlighted.contains(itemAt(index)))
            return QBrush(QColor(0xFD, 0xE2, 0xE2));
        if (!item->text(BaseDataItem::MarkColorRole).isEmpty())
            return QBrush(QColor(item->text(BaseDataItem::MarkColorRole)));
        return QVariant();
    case Qt::ForegroundRole:
        if (item->IsExcludeInChain())
            return QBrush(Qt::darkGray);
        if (!item->text(BaseDataItem::FontColorRole).isEmpty())
            return QBrush(QColor(item->text(BaseDataItem::FontColorRole)));
        return QVariant();
    default:
        return QVariant();
    }
}

QVariant BillTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char *const titles[] = {"项目编码", "项目名称", "单位", "项目特征", "工作内容", "工程量", "综合单价"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return QVariant();
    return QString::fromUtf8(titles[section]);
}

void BillTreeModel::setHighlighted(const QList<BaseDataItem *> &bills)
{
    const QSet<BaseDataItem *> now(bills.cbegin(), bills.cend());
    QSet<BaseDataItem *> parents;
    for (BaseDataItem *item : now + m_highlighted)
        parents.insert(item->parentItem());
    m_highlighted = now;
    // One change per group of siblings: a check may shade thousands of bills.
    for (BaseDataItem *parent : qAsConst(parents)) {
        const QModelIndex owner = indexOf(parent);
        const int rows = rowCount(owner);
        if (rows > 0 && (owner.isValid() || parent == root()))
            emit dataChanged(index(0, 0, owner), index(rows - 1, ColumnCount - 1, owner));
    }
}

void BillTreeModel::itemChanged(BaseDataItem *item)
{
    const QModelIndex first = indexOf(item, 0);
    if (first.isValid())
        emit dataChanged(first, indexOf(item, ColumnCount - 1));
}
