#pragma once
#include <QByteArray>
#include <QString>

// The host's place dictionary: the SQLite database "IDTDICTMIDDLE", table
// "subset_dd" (sid, name, pid, rownum, sysCode). The place set holds China's
// provinces at the top (pid empty), their cities below them and the districts
// below the cities; pid is the parent's rownum as text, sysCode the official
// division code. The host builds it on first use from the division tables
// compiled into the program.
class PlaceDictionary
{
public:
    static QString databaseName();  // "IDTDICTMIDDLE"
    static QString placeSetId();    // "633159985d192db4cf1623e6"

    // HostDatabasePath("IDTDICTMIDDLE"), after building the place set there
    // when the file or the set is missing. Throws DBM::exDBM when it cannot.
    static QString ensureDatabase();

    // Writes the place set into the database at `path` from the three CSV
    // tables (code,name / code,name,provinceCode /
    // code,name,cityCode,provinceCode), in one transaction, unless the set is
    // there already. Returns the number of rows written (0 when it was there).
    // Malformed tables throw DBM::exDBM and leave the database unchanged.
    static int build(const QString &path, const QByteArray &provinces, const QByteArray &cities,
                     const QByteArray &areas);

    // The division code of the place whose names, from the top level down,
    // join to `path` ("四川省成都市金牛区" -> "510106"); empty when no place
    // reads so. Throws DBM::exDBM when the dictionary cannot be read.
    static QString codeForPath(const QString &path);

    // True when the database at `path` holds rows of the place set.
    static bool hasPlaceSet(const QString &path);

private:
    static QString ensureAt(const QString &path);
};
