#pragma once
#include <QString>

// What an undo step needs to bring its table back into view: which table and
// unit project it changed, the record kind and the step's caption.
struct TableRedoUIInfo
{
    QString tableName;
    int tableKind = 0;
    QString unitWorkName;
    int recordKind = 0;
    QString caption;
};
