#pragma once
#include <QList>
#include <QString>
#include <QStringList>

class QAbstractItemModel;

// Writes what a table or tree model shows (header row, then every row depth
// first) to .xlsx or .csv, chosen by the file's suffix. Right-aligned cells
// that hold a number go into .xlsx as numbers. The file is replaced
// atomically; on failure it is left as it was.
class TableExport
{
public:
    static bool write(const QAbstractItemModel *model, const QString &path, QString *error);
    // The header row and the rows of `model`, as written.
    static QList<QStringList> rowsOf(const QAbstractItemModel *model);
    static QByteArray csv(const QList<QStringList> &rows);

private:
    static bool writeXlsx(const QAbstractItemModel *model, const QString &path, QString *error);
};
