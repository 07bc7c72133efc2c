#pragma once
#include <QAbstractItemModel>
#include <QHash>
#include <QSet>

class BaseDataItem;
class JJBTableBase;

// The bill tree of one pricing table: sections and bills with code, name,
// unit, item features, work content, quantity and composite unit price.
// Follows every change of the table's items, undo and redo included.
class BillTreeModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { CodeColumn, NameColumn, UnitColumn, FeaturesColumn, WorkContentColumn, QuantityColumn,
                  PriceColumn, ColumnCount };

    explicit BillTreeModel(JJBTableBase *table, QObject *parent = nullptr);
    ~BillTreeModel() override;

    JJBTableBase *table() const { return m_table; }
    BaseDataItem *itemAt(const QModelIndex &index) const;
    QModelIndex indexOf(BaseDataItem *item, int column = 0) const;
    // Bills shown shaded (those a check found out of range).
    void setHighlighted(const QList<BaseDataItem *> &bills);

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    // A bill's features, work content, quantity and unit price are edited in
    // place, each edit one undo step.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

private:
    void itemChanged(BaseDataItem *item);
    BaseDataItem *root() const;
    QString cellText(const BaseDataItem *item, int column) const;

    JJBTableBase *m_table;
    QSet<BaseDataItem *> m_highlighted;
    // Rows of items as last seen, checked against the parent before use: a
    // batch change of thousands of sibling bills must not search for each.
    mutable QHash<const BaseDataItem *, int> m_rows;
    int rowOf(const BaseDataItem *item) const;
};
