#pragma once
#include "tableredouiinfo.h"

#include <QString>

class WorkBaseObject;

// Base of the host's tables (pricing tables, the material table).
class TableBaseObject
{
public:
    TableBaseObject(const QString &name, int tableKind);
    virtual ~TableBaseObject();
    TableBaseObject(const TableBaseObject &) = delete;
    TableBaseObject &operator=(const TableBaseObject &) = delete;

    QString GetName() const { return m_name; }
    int GetTableKind() const { return m_tableKind; }
    WorkBaseObject *GetUnitWork() const { return m_unitWork; }
    void setUnitWork(WorkBaseObject *work) { m_unitWork = work; }

    // The redo information of `table` for an undo record of `recordKind`
    // captioned `caption`; a null table gives the caption alone.
    static TableRedoUIInfo GetTableRedoUIInfo(const TableBaseObject *table, int recordKind, const QString &caption);

private:
    QString m_name;
    int m_tableKind;
    WorkBaseObject *m_unitWork = nullptr;
};
