#pragma once
#include <QList>
#include <QString>
#include <QStringList>

#include <array>

class JJBTableBase;

// Turns spreadsheet rows into bills: which column holds which field (guessed
// from the header row, confirmed by the user), and the bills themselves.
class BillListImport
{
public:
    enum Field { Code, Name, Features, Unit, Quantity, FieldCount };
    struct Mapping
    {
        // The row holding the titles (-1: none, every row is a bill).
        int headerRow = -1;
        // The column of each field, -1 when the sheet has none.
        std::array<int, FieldCount> columns{{-1, -1, -1, -1, -1}};
    };

    static QString fieldTitle(int field);
    // The first of the top rows that names at least two fields is the header.
    static Mapping guess(const QList<QStringList> &rows);
    // Appends a bill for every data row with a code or a name to `table`,
    // a section for a row with a name alone
    // (which is not shown yet: no undo record). Checks every row first: on
    // an error nothing is added. Returns the number of bills, -1 on error.
    static int fill(const QList<QStringList> &rows, const Mapping &mapping, const QString &sjkm, JJBTableBase *table,
                    QString *error);
};
