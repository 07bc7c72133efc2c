#pragma once
#include "zstandardtreenodedata.h"
#include "ztablecolumn.h"

#include <QAbstractItemModel>
#include <QList>

#include <memory>

// The tree variant of zTableModel: the same column declarations (title, key,
// width, kind 5003) over a tree of zStandardTreeNodeData. Build a tree and hand
// it over whole (setRootData, a model reset), or grow it row by row with
// appendChild/setCell. The model owns its root; the root is not shown.
class zTreeModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    explicit zTreeModel(QObject *parent = nullptr);
    ~zTreeModel() override;

    bool addColumn(const QString &title, const QString &key, int width, int kind = zTableCell::ColumnKind);
    QList<zTableColumn> columns() const { return m_columns; }
    int columnOf(const QString &key) const;

    void setRootData(std::unique_ptr<zStandardTreeNodeData> root);
    // Copies `root` and its subtree.
    void setRootData(const zStandardTreeNodeData &root);
    const zStandardTreeNodeData *root() const { return m_root.get(); }
    // Removes every row, keeps the columns.
    void clearRows();

    // A new last child under `parent` (the root for an invalid index).
    zStandardTreeNodeData *appendChild(const QModelIndex &parent = QModelIndex());
    bool setCell(const QModelIndex &index, const QVariant &value, int kind = zTableCell::TextCell);
    bool setCheckState(const QModelIndex &index, Qt::CheckState state);

    zStandardTreeNodeData *nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(const zStandardTreeNodeData *node, int column = 0) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    zStandardTreeNodeData *nodeOrRoot(const QModelIndex &index) const;

    QList<zTableColumn> m_columns;
    std::unique_ptr<zStandardTreeNodeData> m_root;
};
