#pragma once
#include <QString>

// Installs the four bill standard libraries of the feature guide in the
// application folder on first use. GB24 is filled from the standard
// installation bill items of the shared data (a header row with the filling
// hint per item, then description lines made of its feature names, and the
// standard feature text in its specialty table); the other three standards
// are not in the data and get their tables only.
class FeatureLibrarySeeder
{
public:
    // Builds whatever library file is missing; false with `error` set when
    // the data cannot be read. Existing files are left alone.
    static bool ensure(QString *error);
    // Builds one library file at `path` from `items` (the JSON array of the
    // data file; empty for a library without data).
    static void build(const QString &path, const QString &libraryName, const QJsonArray &items);
    static QString dataFile();
};
