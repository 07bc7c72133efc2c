#pragma once
#include <QString>
#include <QStringList>

class GljBean;

// The user's local material price tables in "DB_USER": "jb" (one row a table)
// and "cljgb" (one row a material price, tied by jdid). The statements are
// built by text substitution and kept exactly as the stored databases expect;
// their known oddities (raw names in the look-ups, the DELETE whose own empty
// result gives the id) are deliberate. Every call opens its own connection.
// SQL failures throw DBM::exDBM; the dialogs' guards report them.
class MaterialPriceTables
{
public:
    // A price table as the find statement gives it (the last row wins).
    struct TableRef
    {
        QString id;
        QString lyid;
        int rows = 0;
    };

    static QString databasePath();
    static void ensureTables();
    // True when both tables are there (nothing to create).
    static bool hasTables();

    // Display texts of every table: name plus "【税后价】" or "【税前价】".
    static QStringList listTables();
    static QString displayText(const QString &name, int isTax);
    static QString nameOf(const QString &displayText);
    // "1" when `tax` is below 1, otherwise "0".
    static QString taxFlagFor(int tax);

    static TableRef findTable(const QString &name);
    // False (nothing written) when a table of that name exists.
    static bool createTable(const QString &name, const QString &taxFlag);
    static bool renameTable(const QString &oldName, const QString &newName);
    static void deleteTable(const QString &name);

    // Rows matching the material's name, model and unit in `table`.
    static int countMaterial(const QString &tableId, const GljBean &material);
    // Adds the material's rows to `matchCounter` (the caller's, never reset),
    // then updates when it is non-zero, else inserts.
    static void saveMaterial(const TableRef &table, const GljBean &material, int &matchCounter);

private:
    static QString escaped(QString text);
    static QString price(const GljBean &material);
};
