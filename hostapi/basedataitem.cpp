#include "basedataitem.h"
#include "rurecordcontrol.h"

#include <algorithm>

BaseDataItem::BaseDataItem(qint64 id, int kind) : m_id(id), m_kind(kind) {}

BaseDataItem::~BaseDataItem() = default;

QVariant BaseDataItem::data(int role) const
{
    QReadLocker lock(&m_lock);
    return m_data.value(role);
}

QList<int> BaseDataItem::roles() const
{
    QReadLocker lock(&m_lock);
    QList<int> keys = m_data.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

void BaseDataItem::setData(int role, const QVariant &value)
{
    const QVariant old = data(role);
    if (old == value && old.isValid() == value.isValid())
        return;
    applyData(role, value);
    RURecordControl::RecordChange([this, role, old] { applyData(role, old); },
                                  [this, role, value] { applyData(role, value); });
}

void BaseDataItem::applyData(int role, const QVariant &value)
{
    {
        QWriteLocker lock(&m_lock);
        if (value.isValid())
            m_data.insert(role, value);
        else
            m_data.remove(role);
    }
    const BaseDataItem *top = root();
    if (top->m_observer)
        top->m_observer(this, role);
}

const BaseDataItem *BaseDataItem::root() const
{
    const BaseDataItem *node = this;
    while (node->m_parent)
        node = node->m_parent;
    return node;
}

BaseDataItem *BaseDataItem::child(int row) const
{
    if (row < 0 || row >= childCount())
        return nullptr;
    return m_children[static_cast<size_t>(row)].get();
}

int BaseDataItem::row() const
{
    if (!m_parent)
        return 0;
    for (size_t i = 0; i < m_parent->m_children.size(); ++i) {
        if (m_parent->m_children[i].get() == this)
            return static_cast<int>(i);
    }
    return -1;
}

QList<BaseDataItem *> BaseDataItem::children() const
{
    QList<BaseDataItem *> list;
    for (const auto &c : m_children)
        list.append(c.get());
    return list;
}

BaseDataItem *BaseDataItem::appendChild(std::unique_ptr<BaseDataItem> child)
{
    child->m_parent = this;
    m_children.push_back(std::move(child));
    return m_children.back().get();
}

QList<BaseDataItem *> BaseDataItem::bills() const
{
    QList<BaseDataItem *> list;
    for (const auto &c : m_children) {
        if (c->isBill())
            list.append(c.get());
        list.append(c->bills());
    }
    return list;
}

bool BaseDataItem::IsExcludeInChain() const
{
    for (const BaseDataItem *node = this; node; node = node->m_parent) {
        if (node->m_exclude)
            return true;
    }
    return false;
}

QString BaseDataItem::GetCsQdbh() const
{
    return m_csQdbh.isEmpty() ? text(CodeRole) : m_csQdbh;
}

void BaseDataItem::setChangeObserver(std::function<void(BaseDataItem *, int)> observer)
{
    m_observer = std::move(observer);
}
