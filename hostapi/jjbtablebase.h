#pragma once
#include "basedataitem.h"
#include "tablebaseobject.h"

#include <memory>

// A pricing table (计价表): a tree of sections and bills under a root item.
// Kind 3001 is the bill table (分部分项), 3004 the measure table (措施项目).
class JJBTableBase : public TableBaseObject
{
public:
    static constexpr int BillTableKind = 3001;
    static constexpr int MeasureTableKind = 3004;

    JJBTableBase(const QString &name, int tableKind);
    ~JJBTableBase() override;

    BaseDataItem *rootItem() const { return m_root.get(); }
    bool isMeasureTable() const { return GetTableKind() == MeasureTableKind; }

private:
    std::unique_ptr<BaseDataItem> m_root;
};
