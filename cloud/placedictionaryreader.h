#pragma once
#include <QList>
#include <QString>
#include <QStringList>

// One row of the place dictionary as the influence-factor dialogs use it.
struct PlaceRow
{
    QString pid;     // "rownum" of the parent row; empty at the top level
    QString name;
    int rownum = 0;  // the number that children refer to
};

// Reads the place set of the host's place dictionary and answers the place
// picker's questions about it.
class PlaceDictionaryReader
{
public:
    // Every row of the place set, in query order. `statement` carries `%1`
    // for the set id. Throws DBM::exDBM when the dictionary cannot be read.
    static QList<PlaceRow> read(const QString &statement);

    // Names of the rows with an empty pid, in list order.
    static QStringList topLevelNames(const QList<PlaceRow> &list);

    // Names of the children of the row called `name`: the last row of that
    // name gives the number (-1 when none); a pid that is no number reads 0.
    static QStringList nextPageData(const QString &name, const QList<PlaceRow> &list);

    // The picked path as the place text: joined without separator, the tab
    // placeholders "类别1" and "类别2" removed wherever they occur.
    static QString joinPath(const QStringList &path);
};
