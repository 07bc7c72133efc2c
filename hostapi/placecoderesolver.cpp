#include "placecoderesolver.h"
#include "clsdac.h"
#include "placedictionary.h"

#include <QHash>
#include <QList>

namespace {
struct PlaceRow
{
    QString name;
    QString code;
    int rownum = 0;
};

// Children of each parent rownum ("" for the top level).
QHash<QString, QList<PlaceRow>> readTree()
{
    QHash<QString, QList<PlaceRow>> children;
    DBM::clsDAC dac(PlaceDictionary::ensureDatabase(), true);
    DBM::clsDACResult rows = dac.execPrepared(
        QStringLiteral("SELECT name, pid, rownum, sysCode FROM subset_dd WHERE sid = ? ORDER BY rownum"),
        {PlaceDictionary::placeSetId()});
    while (rows.next()) {
        PlaceRow row{rows.value(0).toString(), rows.value(3).toString(), rows.value(2).toInt()};
        children[rows.value(1).toString()].append(row);
    }
    dac.closeDB();
    return children;
}

// The longest child name the text starts with, so that "市辖区" and a
// district sharing a prefix cannot shadow each other.
const PlaceRow *longestPrefix(const QList<PlaceRow> &rows, const QString &text)
{
    const PlaceRow *best = nullptr;
    for (const PlaceRow &row : rows) {
        if (!row.name.isEmpty() && text.startsWith(row.name) && (!best || row.name.size() > best->name.size()))
            best = &row;
    }
    return best;
}
}

QString PlaceCodeResolver::codeOfPath(const QString &place)
{
    QString rest = place.trimmed();
    if (rest.isEmpty() || rest == QLatin1String("无"))
        return QString();
    const QHash<QString, QList<PlaceRow>> tree = readTree();
    QString parent;
    QString code;
    while (!rest.isEmpty()) {
        const PlaceRow *row = longestPrefix(tree.value(parent), rest);
        if (!row)
            break;
        code = row->code;
        rest = rest.mid(row->name.size());
        parent = QString::number(row->rownum);
    }
    return code;
}
