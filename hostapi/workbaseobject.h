#pragma once
#include "generaltablebase.h"
#include "jjbtablebase.h"

#include <QList>
#include <QString>

#include <memory>
#include <vector>

// A unit project (单位工程): its pricing tables and its material table, with
// the pricing attributes the cloud functions send along.
class WorkBaseObject
{
public:
    explicit WorkBaseObject(const QString &name);
    ~WorkBaseObject();
    WorkBaseObject(const WorkBaseObject &) = delete;
    WorkBaseObject &operator=(const WorkBaseObject &) = delete;

    QString GetName() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    // Bill standard library identifier ("GB24", "QGQD", ...).
    QString GetQdSpec() const { return m_qdSpec; }
    void setQdSpec(const QString &v) { m_qdSpec = v; }
    // Index of the pricing file (计价文件) and of the quota category (定额类别).
    int GetJswjIndex() const { return m_jswjIndex; }
    void setJswjIndex(int v) { m_jswjIndex = v; }
    int GetDelbIndex() const { return m_delbIndex; }
    void setDelbIndex(int v) { m_delbIndex = v; }

    JJBTableBase *addPricingTable(const QString &name, int tableKind);
    QList<JJBTableBase *> pricingTables() const;
    JJBTableBase *tableOfKind(int tableKind) const;
    GeneralTableBase *materialTable() const { return m_materials.get(); }

private:
    QString m_name;
    QString m_qdSpec;
    int m_jswjIndex = 0;
    int m_delbIndex = 0;
    std::vector<std::unique_ptr<JJBTableBase>> m_tables;
    std::unique_ptr<GeneralTableBase> m_materials;
};
