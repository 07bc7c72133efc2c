#include "zstandardtreenodedata.h"

std::unique_ptr<zStandardTreeNodeData> zStandardTreeNodeData::clone() const
{
    auto copy = std::make_unique<zStandardTreeNodeData>();
    copy->m_cells = m_cells;
    copy->m_userData = m_userData;
    copy->m_id = m_id;
    for (const auto &c : m_children) {
        std::unique_ptr<zStandardTreeNodeData> sub = c->clone();
        sub->m_parent = copy.get();
        copy->m_children.push_back(std::move(sub));
    }
    return copy;
}

zStandardTreeNodeData *zStandardTreeNodeData::addChild()
{
    m_children.push_back(std::make_unique<zStandardTreeNodeData>());
    m_children.back()->m_parent = this;
    return m_children.back().get();
}

zStandardTreeNodeData *zStandardTreeNodeData::child(int row) const
{
    return row >= 0 && row < childCount() ? m_children.at(size_t(row)).get() : nullptr;
}

int zStandardTreeNodeData::row() const
{
    if (!m_parent)
        return 0;
    for (int i = 0; i < m_parent->childCount(); ++i)
        if (m_parent->child(i) == this)
            return i;
    return 0;
}

zStandardTreeNodeData *zStandardTreeNodeData::findById(int id)
{
    if (m_id == id)
        return this;
    for (const auto &c : m_children)
        if (zStandardTreeNodeData *found = c->findById(id))
            return found;
    return nullptr;
}

void zStandardTreeNodeData::setCell(const QString &key, const QVariant &value, int kind)
{
    zTableCell &c = m_cells[key];
    c.value = value;
    c.kind = zTableCell::isValidKind(kind) ? kind : zTableCell::TextCell;
}

void zStandardTreeNodeData::setCellForeground(const QString &key, const QColor &color)
{
    m_cells[key].foreground = color;
}

void zStandardTreeNodeData::setCheckState(const QString &key, Qt::CheckState state)
{
    m_cells[key].checkState = state;
}
