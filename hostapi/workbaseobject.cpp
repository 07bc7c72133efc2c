#include "workbaseobject.h"

WorkBaseObject::WorkBaseObject(const QString &name)
    : m_name(name), m_materials(std::make_unique<GeneralTableBase>(QStringLiteral("人材机汇总")))
{
    m_materials->setUnitWork(this);
}

WorkBaseObject::~WorkBaseObject() = default;

JJBTableBase *WorkBaseObject::addPricingTable(const QString &name, int tableKind)
{
    m_tables.push_back(std::make_unique<JJBTableBase>(name, tableKind));
    m_tables.back()->setUnitWork(this);
    return m_tables.back().get();
}

QList<JJBTableBase *> WorkBaseObject::pricingTables() const
{
    QList<JJBTableBase *> list;
    for (const auto &t : m_tables)
        list.append(t.get());
    return list;
}

JJBTableBase *WorkBaseObject::tableOfKind(int tableKind) const
{
    for (const auto &t : m_tables) {
        if (t->GetTableKind() == tableKind)
            return t.get();
    }
    return nullptr;
}
