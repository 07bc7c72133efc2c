#include "generaltablebase.h"
#include "rurecordcontrol.h"

GeneralTableBase::GeneralTableBase(const QString &name, int tableKind) : TableBaseObject(name, tableKind) {}

GeneralTableBase::~GeneralTableBase() = default;

QList<GljBean *> GeneralTableBase::materials() const
{
    QList<GljBean *> list;
    for (const auto &m : m_materials)
        list.append(m.get());
    return list;
}

GljBean *GeneralTableBase::materialByGuid(int guid) const
{
    for (const auto &m : m_materials) {
        if (m->GetGuid() == guid)
            return m.get();
    }
    return nullptr;
}

GljBean *GeneralTableBase::addMaterial(const GljBean &material)
{
    m_materials.push_back(std::make_unique<GljBean>(material));
    return m_materials.back().get();
}

void GeneralTableBase::updateMaterial(GljBean *material, const GljBean &values)
{
    if (!material)
        return;
    const GljBean old = *material;
    apply(material, values);
    RURecordControl::RecordChange([this, material, old] { apply(material, old); },
                                  [this, material, values] { apply(material, values); });
}

void GeneralTableBase::apply(GljBean *material, const GljBean &values)
{
    *material = values;
    if (m_observer)
        m_observer(material);
}
