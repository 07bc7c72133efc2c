#include "placedictionaryreader.h"

#include <hostapi/clsdac.h>
#include <hostapi/placedictionary.h>

QList<PlaceRow> PlaceDictionaryReader::read(const QString &statement)
{
    QList<PlaceRow> rows;
    DBM::clsDAC dac(PlaceDictionary::ensureDatabase(), true);
    DBM::clsDACResult r = dac.execSql(statement.arg(PlaceDictionary::placeSetId()));
    while (r.next()) {
        PlaceRow row;
        row.pid = r.value(QStringLiteral("pid")).toString();
        row.name = r.value(QStringLiteral("name")).toString();
        row.rownum = r.value(QStringLiteral("rownum")).toInt();
        rows << row;
    }
    dac.closeDB();
    return rows;
}

QStringList PlaceDictionaryReader::topLevelNames(const QList<PlaceRow> &list)
{
    QStringList names;
    for (const PlaceRow &row : list) {
        if (row.pid.isEmpty())
            names << row.name;
    }
    return names;
}

QStringList PlaceDictionaryReader::nextPageData(const QString &name, const QList<PlaceRow> &list)
{
    int parent = -1;
    for (const PlaceRow &row : list) {
        if (row.name == name)
            parent = row.rownum;
    }
    QStringList names;
    for (const PlaceRow &row : list) {
        if (row.pid.toInt() == parent)  // no number reads as 0
            names << row.name;
    }
    return names;
}

QString PlaceDictionaryReader::joinPath(const QStringList &path)
{
    QString text = path.join(QString());
    text.replace(QStringLiteral("类别1"), QString());
    text.replace(QStringLiteral("类别2"), QString());
    return text;
}
