#include "placedictionary.h"
#include "apppaths.h"
#include "asiderun.h"
#include "clsdac.h"
#include "hostlog.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStringList>
#include <QThread>

#include <mutex>

// Outside any namespace, as Q_INIT_RESOURCE requires.
static void initDivisionResources()
{
    Q_INIT_RESOURCE(divisions);
}

namespace {
std::mutex s_buildMutex;

// One CSV field list per data line; the header line is skipped. Fields may be
// quoted, with "" standing for a quote inside.
QList<QStringList> parseCsv(const QByteArray &bytes, const QString &table, int columns)
{
    QList<QStringList> rows;
    const QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    for (int n = 1; n < lines.size(); ++n) {
        QString line = lines.at(n);
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.trimmed().isEmpty())
            continue;
        QStringList fields;
        QString field;
        bool quoted = false;
        for (int i = 0; i < line.size(); ++i) {
            const QChar c = line.at(i);
            if (quoted && c == QLatin1Char('"') && i + 1 < line.size() && line.at(i + 1) == QLatin1Char('"')) {
                field += c;
                ++i;
            } else if (c == QLatin1Char('"')) {
                quoted = !quoted;
            } else if (c == QLatin1Char(',') && !quoted) {
                fields << field;
                field.clear();
            } else {
                field += c;
            }
        }
        fields << field;
        if (quoted || fields.size() != columns || fields.at(0).trimmed().isEmpty() || fields.at(1).isEmpty()) {
            throw DBM::exDBM(QStringLiteral("地点字典数据有误：%1 第%2行：%3").arg(table).arg(n + 1).arg(line));
        }
        rows << fields;
    }
    if (rows.isEmpty())
        throw DBM::exDBM(QStringLiteral("地点字典数据有误：%1 没有数据").arg(table));
    return rows;
}

class SetWriter
{
public:
    SetWriter(DBM::clsDAC &dac, const QString &sid) : m_dac(dac), m_sid(sid) {}

    // Writes one level; `parents` maps the parent code to its rownum (empty
    // for the top level). Returns this level's code -> rownum.
    QHash<QString, int> writeLevel(const QList<QStringList> &rows, int parentColumn,
                                   const QHash<QString, int> &parents, const QString &table)
    {
        QHash<QString, int> written;
        for (const QStringList &row : rows) {
            const QString code = row.at(0).trimmed();
            QString pid;
            if (parentColumn >= 0) {
                const QString parentCode = row.at(parentColumn).trimmed();
                if (!parents.contains(parentCode))
                    throw DBM::exDBM(QStringLiteral("地点字典数据有误：%1 中 %2 的上级 %3 不存在")
                                         .arg(table, row.at(1), parentCode));
                pid = QString::number(parents.value(parentCode));
            }
            if (written.contains(code))
                throw DBM::exDBM(QStringLiteral("地点字典数据有误：%1 中代码 %2 重复").arg(table, code));
            ++m_rownum;
            m_dac.execPrepared(QStringLiteral("INSERT INTO subset_dd (sid, name, pid, rownum, sysCode) "
                                              "VALUES (?, ?, ?, ?, ?)"),
                               {m_sid, row.at(1), pid, m_rownum, code});
            written.insert(code, m_rownum);
        }
        return written;
    }
    int count() const { return m_rownum; }

private:
    DBM::clsDAC &m_dac;
    QString m_sid;
    int m_rownum = 0;
};

int countPlaceSet(DBM::clsDAC &dac)
{
    DBM::clsDACResult r = dac.execPrepared(QStringLiteral("SELECT count(*) FROM subset_dd WHERE sid = ?"),
                                           {PlaceDictionary::placeSetId()});
    return r.next() ? r.value(0).toInt() : 0;
}

bool onGuiThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

QByteArray readResource(const QString &name)
{
    QFile file(QStringLiteral(":/divisions/") + name);
    if (!file.open(QIODevice::ReadOnly))
        throw DBM::exDBM(QStringLiteral("缺少行政区划数据：") + name);
    return file.readAll();
}
}

QString PlaceDictionary::databaseName()
{
    return QStringLiteral("IDTDICTMIDDLE");
}

QString PlaceDictionary::placeSetId()
{
    return QStringLiteral("633159985d192db4cf1623e6");
}

bool PlaceDictionary::hasPlaceSet(const QString &path)
{
    if (!QFileInfo::exists(path))
        return false;
    try {
        DBM::clsDAC dac(path, true);
        return countPlaceSet(dac) > 0;
    } catch (const DBM::exDBM &) {
        return false; // no table yet
    }
}

int PlaceDictionary::build(const QString &path, const QByteArray &provinces, const QByteArray &cities,
                           const QByteArray &areas)
{
    // Parse everything before touching the database.
    const QList<QStringList> provinceRows = parseCsv(provinces, QStringLiteral("provinces.csv"), 2);
    const QList<QStringList> cityRows = parseCsv(cities, QStringLiteral("cities.csv"), 3);
    const QList<QStringList> areaRows = parseCsv(areas, QStringLiteral("areas.csv"), 4);

    DBM::clsDAC dac(path);
    // Qt reads text as UTF-16: stored so, the thousands of names a picker
    // reads need no conversion. A file that already has tables keeps its own.
    dac.execSql(QStringLiteral("PRAGMA encoding = 'UTF-16le'"));
    dac.execSql(QStringLiteral("CREATE TABLE IF NOT EXISTS subset_dd "
                               "(sid TEXT, name TEXT, pid TEXT, rownum INTEGER, sysCode TEXT)"));
    dac.execSql(QStringLiteral("CREATE INDEX IF NOT EXISTS subset_dd_sid ON subset_dd (sid)"));
    dac.execSql(QStringLiteral("CREATE INDEX IF NOT EXISTS subset_dd_name ON subset_dd (name)"));
    dac.beginTransaction();
    try {
        // Another process may have built it while we waited for the lock.
        if (countPlaceSet(dac) > 0) {
            dac.rollback();
            return 0;
        }
        SetWriter writer(dac, placeSetId());
        const auto provinceRownums = writer.writeLevel(provinceRows, -1, {}, QStringLiteral("provinces.csv"));
        const auto cityRownums = writer.writeLevel(cityRows, 2, provinceRownums, QStringLiteral("cities.csv"));
        writer.writeLevel(areaRows, 2, cityRownums, QStringLiteral("areas.csv"));
        dac.commit();
        return writer.count();
    } catch (...) {
        dac.rollback();
        throw;
    }
}

QString PlaceDictionary::ensureDatabase()
{
    const QString path = HostDatabasePath(databaseName());
    if (!onGuiThread())
        return ensureAt(path);
    // A set is committed whole, so one that is seen is complete.
    if (hasPlaceSet(path))
        return path;
    // The first build takes tens of milliseconds; a failure is reported by
    // the call below.
    AsideRun::wait([path] { ensureAt(path); });
    return ensureAt(path);
}

QString PlaceDictionary::ensureAt(const QString &path)
{
    std::lock_guard<std::mutex> lock(s_buildMutex);
    if (hasPlaceSet(path))
        return path;
    initDivisionResources();
    const int rows = build(path, readResource(QStringLiteral("provinces.csv")),
                           readResource(QStringLiteral("cities.csv")), readResource(QStringLiteral("areas.csv")));
    HostLog::write(QStringLiteral("dict:"), QStringLiteral("place dictionary built, %1 rows: %2").arg(rows).arg(path));
    return path;
}

QString PlaceDictionary::codeForPath(const QString &path)
{
    if (path.isEmpty())
        return QString();
    struct Entry
    {
        QString name;
        int parent = 0;
        QString code;
    };
    QHash<int, Entry> rows;
    {
        DBM::clsDAC dac(ensureDatabase(), true);
        DBM::clsDACResult r = dac.execPrepared(
            QStringLiteral("SELECT name, pid, rownum, sysCode FROM subset_dd WHERE sid = ? ORDER BY rownum"),
            {placeSetId()});
        while (r.next()) {
            rows.insert(r.value(2).toInt(),
                        Entry{r.value(0).toString(), r.value(1).toString().toInt(), r.value(3).toString()});
        }
    }
    for (auto it = rows.cbegin(); it != rows.cend(); ++it) {
        if (!path.endsWith(it->name))
            continue;
        QString joined = it->name;
        for (int up = it->parent, depth = 0; up != 0 && rows.contains(up) && depth < 8; ++depth) {
            joined.prepend(rows.value(up).name);
            up = rows.value(up).parent;
        }
        if (joined == path)
            return it->code;
    }
    return QString();
}
