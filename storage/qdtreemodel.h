#pragma once
#include "qdtreenode.h"

#include <QAbstractItemModel>
#include <QList>

class QDTreeItem;

// One-column model over a tree of QDTreeItem. The root item is not shown; its
// children are the top-level rows and its text is the header.
class QDTreeModel : public QAbstractItemModel
{
    Q_OBJECT
public:
    explicit QDTreeModel(QObject *parent = nullptr);
    ~QDTreeModel() override;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    QDTreeItem *getRootNode() const;
    QModelIndex indexForTreeItem(QDTreeItem *item) const;
    QDTreeItem *itemForIndex(const QModelIndex &index) const;

    // Changes that keep attached views informed. A null parent means the root.
    QDTreeItem *appendNode(QDTreeItem *parent, const QDTreeNode &node);
    // Replaces every child of `parent` (a lazy placeholder, say) by `nodes`.
    QList<QDTreeItem *> setChildren(QDTreeItem *parent, const QList<QDTreeNode> &nodes);
    void removeItem(QDTreeItem *item);
    void clear();
    void setHeaderText(const QString &text);

private:
    QDTreeItem *itemOrRoot(const QModelIndex &index) const;
    QModelIndex indexOrRoot(QDTreeItem *item) const;

    QDTreeItem *m_root = nullptr;
};
