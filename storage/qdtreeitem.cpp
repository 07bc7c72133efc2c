#include "qdtreeitem.h"

QDTreeItem::QDTreeItem() = default;

QDTreeItem::QDTreeItem(QDTreeItem *parent)
    : m_parent(parent)
{
    if (parent)
        parent->appendChild(this);
}

QDTreeItem::QDTreeItem(const QDTreeNode &node, QDTreeItem *parent)
    : m_node(node), m_parent(parent)
{
    if (parent)
        parent->appendChild(this);
}

QDTreeItem::QDTreeItem(const QDTreeItem &other)
    : m_node(other.m_node), m_parent(other.m_parent), m_children(other.m_children), m_ownsChildren(false)
{
}

QDTreeItem &QDTreeItem::operator=(const QDTreeItem &other)
{
    if (this == &other)
        return *this;
    if (m_ownsChildren) {
        // Our own children die unless the source still lists them.
        for (QDTreeItem *c : qAsConst(m_children)) {
            if (!other.m_children.contains(c))
                delete c;
        }
    }
    m_node = other.m_node;
    m_parent = other.m_parent;
    m_children = other.m_children;
    m_ownsChildren = false;
    return *this;
}

QDTreeItem::~QDTreeItem()
{
    deleteOwnedChildren();
}

void QDTreeItem::deleteOwnedChildren()
{
    if (!m_ownsChildren)
        return;
    const QList<QDTreeItem *> children = m_children;
    m_children.clear();
    qDeleteAll(children);
}

void QDTreeItem::appendChild(QDTreeItem *item)
{
    if (!item)
        return;
    item->m_parent = this;
    m_children.append(item);
}

void QDTreeItem::insertChild(int row, QDTreeItem *item)
{
    if (!item)
        return;
    item->m_parent = this;
    m_children.insert(qBound(0, row, m_children.size()), item);
}

void QDTreeItem::removeChild(QDTreeItem *item)
{
    if (!item || !m_children.removeOne(item))
        return;
    delete item;
}

QDTreeItem *QDTreeItem::takeChild(int row)
{
    if (row < 0 || row >= m_children.size())
        return nullptr;
    QDTreeItem *item = m_children.takeAt(row);
    item->m_parent = nullptr;
    return item;
}

QDTreeItem *QDTreeItem::child(int row) const
{
    return m_children.value(row, nullptr);
}

int QDTreeItem::childCount() const
{
    return m_children.size();
}

QList<QDTreeItem *> &QDTreeItem::children()
{
    return m_children;
}

QDTreeNode &QDTreeItem::data()
{
    return m_node;
}

const QDTreeNode &QDTreeItem::data() const
{
    return m_node;
}

void QDTreeItem::setData(const QDTreeNode &node)
{
    m_node = node;
}

QDTreeItem *QDTreeItem::parent() const
{
    return m_parent;
}

int QDTreeItem::row() const
{
    if (!m_parent)
        return 0;
    return m_parent->m_children.indexOf(const_cast<QDTreeItem *>(this));
}
