#include "jjbtablebase.h"

JJBTableBase::JJBTableBase(const QString &name, int tableKind)
    : TableBaseObject(name, tableKind), m_root(std::make_unique<BaseDataItem>(0, BaseDataItem::ProjectKind))
{
}

JJBTableBase::~JJBTableBase() = default;
