#pragma once
#include <QString>
#include <QStringList>

// The local description sources of the feature guide: the read-only
// bill standard libraries (standard lines in "xmtz_ms", the standard feature
// text in the specialty tables) and the user's custom tables in "DB_USER".
// Every operation opens its own connection and drops it at once. Statements
// are built by text substitution; quotes are doubled only before a custom
// line is looked up for deletion.
class FeatureStore
{
public:
    // The lines of one code: `entries` holds code, then text, per line.
    struct Lines
    {
        int count = 0;
        QString hint;
        QStringList entries;
    };

    static QString userDatabasePath();
    // The library file of a library base name (QGQD, N8QD, N3QD, GB24).
    static QString libraryPath(const QString &libraryName);
    static QStringList libraryNames();

    // The four custom tables, created when missing.
    static void ensureTables();
    // True when the four custom tables are there (ensureTables creates none).
    static bool hasCustomTables();
    // The custom table of `libraryPath`; `previous` when it is none of the four.
    static QString customTable(const QString &libraryPath, const QString &previous);
    // The library of a bill kind ("GB24", ...); empty when none matches.
    static QString libraryOf(const QString &kind);
    // The specialty table of `libraryName` chosen by the second character of
    // `code`; empty where the library has none.
    static QString specialtyTable(const QString &libraryName, const QString &code);

    // Number of description lines of `code`, standard and custom.
    static int countLines(const QString &libraryPath, const QString &customTable, const QString &code);
    // Every line of `code`: the standard lines of its first 9 characters,
    // then the custom lines (codes prefixed "[自编]"), with the filling hint.
    static Lines loadLines(const QString &libraryPath, const QString &customTable, const QString &code);
    static QString standardFeatureText(const QString &libraryPath, const QString &specialtyTable,
                                       const QString &code);

    // FID of the custom line whose text is `text` (used as given); 0 when none.
    static int findCustomLine(const QString &table, const QString &text);
    static void updateCustomLine(const QString &table, const QString &text, int fid);
    // Looks the line up with its quotes doubled, then deletes that FID.
    static void deleteCustomLine(const QString &table, const QString &text);

    // The library code of a bill code: its first 9 characters (a bill code
    // is the standard item's code followed by a 3-digit sequence number).
    static QString itemCode(const QString &billCode) { return billCode.left(9); }

    static QString doubledQuotes(QString text) { return text.replace(QLatin1Char('\''), QStringLiteral("''")); }
    static bool isCustomCode(const QString &code) { return code.startsWith(customMark()); }
    static QString customMark() { return QStringLiteral("[自编]"); }
};
