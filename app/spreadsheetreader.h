#pragma once
#include <QList>
#include <QString>
#include <QStringList>

// Reads the first sheet of an .xlsx workbook or a .csv file as rows of cell
// texts (empty cells are empty strings; numbers as written, without a
// trailing ".0").
class SpreadsheetReader
{
public:
    static bool read(const QString &path, QList<QStringList> *rows, QString *error);
    static bool readCsv(const QByteArray &bytes, QList<QStringList> *rows, QString *error);
    static bool readXlsx(const QString &path, QList<QStringList> *rows, QString *error);
};
