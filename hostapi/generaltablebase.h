#pragma once
#include "gljbean.h"
#include "tablebaseobject.h"

#include <QList>

#include <functional>
#include <memory>
#include <vector>

// A general host table; the project's material table (工料机汇总) holds the
// project materials. Changes through updateMaterial are undoable when made
// inside an undo record.
class GeneralTableBase : public TableBaseObject
{
public:
    static constexpr int MaterialTableKind = 4001;

    GeneralTableBase(const QString &name, int tableKind = MaterialTableKind);
    ~GeneralTableBase() override;

    QList<GljBean *> materials() const;
    GljBean *materialByGuid(int guid) const;
    GljBean *addMaterial(const GljBean &material);
    // Replaces the values of `material` (one of this table's) by `values`.
    void updateMaterial(GljBean *material, const GljBean &values);

    // Sees every material change, including those of undo and redo.
    void setChangeObserver(std::function<void(GljBean *)> observer) { m_observer = std::move(observer); }

private:
    void apply(GljBean *material, const GljBean &values);

    std::vector<std::unique_ptr<GljBean>> m_materials;
    std::function<void(GljBean *)> m_observer;
};
