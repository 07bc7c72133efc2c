#pragma once
#include "ztablecell.h"

#include <QHash>
#include <QString>
#include <QVariant>

#include <memory>
#include <vector>

// One node of a host tree model: cells under column keys (as in zTableModel,
// with the same cell kinds), an id of the caller's choosing, user data and
// owned children. The root node of a tree is never shown; its children are the
// top-level rows.
//
//     zStandardTreeNodeData root;
//     zStandardTreeNodeData *line = root.addChild();
//     line->setId(1);
//     line->setCell("debh", "A1-1", 5004);
//     line->setCell("djjscx", "查看", 5007);
class zStandardTreeNodeData
{
public:
    zStandardTreeNodeData() = default;
    zStandardTreeNodeData(const zStandardTreeNodeData &) = delete;
    zStandardTreeNodeData &operator=(const zStandardTreeNodeData &) = delete;

    // A deep copy of this node and its subtree (the copy has no parent).
    std::unique_ptr<zStandardTreeNodeData> clone() const;

    // The new child is owned by this node.
    zStandardTreeNodeData *addChild();
    int childCount() const { return int(m_children.size()); }
    zStandardTreeNodeData *child(int row) const;
    zStandardTreeNodeData *parent() const { return m_parent; }
    // Position among the parent's children (0 for the root).
    int row() const;
    void clearChildren() { m_children.clear(); }
    // The first node of the subtree (this one included) with `id`, or null.
    zStandardTreeNodeData *findById(int id);

    void setCell(const QString &key, const QVariant &value, int kind = zTableCell::TextCell);
    zTableCell cell(const QString &key) const { return m_cells.value(key); }
    QVariant cellValue(const QString &key) const { return m_cells.value(key).value; }
    void setCellForeground(const QString &key, const QColor &color);
    void setCheckState(const QString &key, Qt::CheckState state);

    int id() const { return m_id; }
    void setId(int id) { m_id = id; }
    QVariant userData() const { return m_userData; }
    void setUserData(const QVariant &data) { m_userData = data; }

private:
    QHash<QString, zTableCell> m_cells;
    std::vector<std::unique_ptr<zStandardTreeNodeData>> m_children;
    zStandardTreeNodeData *m_parent = nullptr;
    QVariant m_userData;
    int m_id = -1;
};
