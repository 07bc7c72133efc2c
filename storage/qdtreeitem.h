#pragma once
#include "qdtreenode.h"

#include <QList>

// One item of the chapter tree. An item owns its children and deletes them,
// with their subtrees, when it dies.
//
// A copy shares the child pointers of its source instead of duplicating them;
// it is a view and does not own them, so the source alone deletes them.
class QDTreeItem
{
public:
    QDTreeItem();
    explicit QDTreeItem(QDTreeItem *parent);
    QDTreeItem(const QDTreeNode &node, QDTreeItem *parent);
    QDTreeItem(const QDTreeItem &other);
    QDTreeItem &operator=(const QDTreeItem &other);
    virtual ~QDTreeItem();

    void appendChild(QDTreeItem *item);
    void insertChild(int row, QDTreeItem *item);
    // Takes `item` out of the children and deletes it with its subtree;
    // nothing happens when it is not a child of this item.
    void removeChild(QDTreeItem *item);
    // Takes `item` out of the children without deleting it.
    QDTreeItem *takeChild(int row);

    QDTreeItem *child(int row) const;
    int childCount() const;
    QList<QDTreeItem *> &children();

    QDTreeNode &data();
    const QDTreeNode &data() const;
    void setData(const QDTreeNode &node);
    QDTreeItem *parent() const;

    // 0 without a parent, else the position among the parent's children
    // (-1 when the parent does not list it).
    int row() const;

private:
    void deleteOwnedChildren();

    QDTreeNode m_node;
    QDTreeItem *m_parent = nullptr;
    QList<QDTreeItem *> m_children;
    bool m_ownsChildren = true;
};
