#include "tablebaseobject.h"
#include "workbaseobject.h"

TableBaseObject::TableBaseObject(const QString &name, int tableKind) : m_name(name), m_tableKind(tableKind) {}

TableBaseObject::~TableBaseObject() = default;

TableRedoUIInfo TableBaseObject::GetTableRedoUIInfo(const TableBaseObject *table, int recordKind,
                                                    const QString &caption)
{
    TableRedoUIInfo info;
    info.recordKind = recordKind;
    info.caption = caption;
    if (table) {
        info.tableName = table->GetName();
        info.tableKind = table->GetTableKind();
        if (table->GetUnitWork())
            info.unitWorkName = table->GetUnitWork()->GetName();
    }
    return info;
}
