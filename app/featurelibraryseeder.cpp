#include "featurelibraryseeder.h"

#include <features/featurestore.h>

#include <hostapi/hostconstants.h>
#include <hostapi/sqlaccess.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVector>

#include <algorithm>

namespace {
const QStringList kSpecialtyTables{"tj_de", "zs_de", "az_de", "sz_de", "fg_de", "cs_de",
                                   "yl_de", "ks_de", "gz_de", "gd_de", "bp_de"};

QStringList strings(const QJsonValue &value)
{
    QStringList list;
    for (const QJsonValue &v : value.toArray())
        list << v.toString();
    return list;
}

// "1.名称：\n2.型号：..." from the feature names.
QString numbered(const QStringList &names)
{
    QStringList lines;
    for (int i = 0; i < names.size(); ++i)
        lines << QStringLiteral("%1.%2：").arg(i + 1).arg(names.at(i));
    return lines.join(QLatin1Char('\n'));
}

// Rows in code order, so that the index below returns the rows of a code
// prefix in the order of a scan of the table.
QVector<QJsonObject> inCodeOrder(const QJsonArray &items)
{
    QVector<QJsonObject> sorted;
    for (const QJsonValue &item : items)
        sorted << item.toObject();
    std::stable_sort(sorted.begin(), sorted.end(), [](const QJsonObject &a, const QJsonObject &b) {
        return a.value(QStringLiteral("code")).toString() < b.value(QStringLiteral("code")).toString();
    });
    return sorted;
}

void createTables(DBM::clsDAC &db)
{
    db.execSql(QStringLiteral("CREATE TABLE xmtz_ms (FID INTEGER PRIMARY KEY AUTOINCREMENT, Xmbh VARCHAR(40) NOT NULL,"
                              " Xmmc VARCHAR(40) NOT NULL, Xmtz VARCHAR(400) NOT NULL)"));
    for (const QString &table : kSpecialtyTables)
        db.execSql(QStringLiteral("CREATE TABLE %1 (debh VARCHAR(40), xmmc VARCHAR(100), jldw VARCHAR(20), xmtz TEXT)")
                       .arg(table));
}

void insertItem(DBM::clsDAC &db, const QString &libraryName, const QJsonObject &item)
{
    const QString code = item.value(QStringLiteral("code")).toString();
    const QString name = item.value(QStringLiteral("name")).toString();
    const QStringList features = strings(item.value(QStringLiteral("features")));
    const QString insertLine = QStringLiteral("INSERT INTO xmtz_ms (Xmbh, Xmmc, Xmtz) VALUES (?, ?, ?)");
    const QString hint = QStringLiteral("按设计要求描述：%1。工作内容：%2")
                             .arg(features.join(QStringLiteral("、")),
                                  strings(item.value(QStringLiteral("work_content"))).join(QStringLiteral("、")));
    db.execPrepared(insertLine, {code, name, hint});
    if (!features.isEmpty())
        db.execPrepared(insertLine, {code, QStringLiteral(""), numbered(features)});
    for (int i = 0; i < features.size(); ++i)
        db.execPrepared(insertLine, {code, QStringLiteral(""), QStringLiteral("%1.%2：").arg(i + 1).arg(features.at(i))});
    const QString specialty = FeatureStore::specialtyTable(libraryName, code);
    if (!specialty.isEmpty()) {
        db.execPrepared(QStringLiteral("INSERT INTO %1 (debh, xmmc, jldw, xmtz) VALUES (?, ?, ?, ?)").arg(specialty),
                        {code, name, item.value(QStringLiteral("unit")).toString(), numbered(features)});
    }
}
}

QString FeatureLibrarySeeder::dataFile()
{
    QString dir = qEnvironmentVariable("VELORA_DATA_DIR");
    if (dir.isEmpty())
        dir = QStringLiteral(VELORA_DATA_DIR);
    return dir + QStringLiteral("/standard-bills/gb50856-2024-installation.json");
}

void FeatureLibrarySeeder::build(const QString &path, const QString &libraryName, const QJsonArray &items)
{
    const QString partial = path + QStringLiteral(".part");
    QFile::remove(partial);
    {
        DBM::clsDAC db(partial);
        // Tables and rows in one transaction: one sync of the file, not one per table.
        db.beginTransaction();
        createTables(db);
        for (const QJsonObject &item : inCodeOrder(items))
            insertItem(db, libraryName, item);
        // The guide looks lines up with "Xmbh like 'code%'": SQLite serves a
        // prefix LIKE from an index only when the index ignores case as LIKE does.
        db.execSql(QStringLiteral("CREATE INDEX xmtz_ms_xmbh ON xmtz_ms (Xmbh COLLATE NOCASE)"));
        db.commit();
    }
    QFile::remove(path);
    if (!QFile::rename(partial, path))
        throw DBM::exDBM(QStringLiteral("cannot install ") + path);
}

bool FeatureLibrarySeeder::ensure(QString *error)
{
    QJsonArray items;
    bool loaded = false;
    for (const QString &name : FeatureStore::libraryNames()) {
        const QString path = FeatureStore::libraryPath(name);
        if (QFile::exists(path))
            continue;
        if (name == CXMGB24EnName && !loaded) {
            QFile file(dataFile());
            if (!file.open(QIODevice::ReadOnly)) {
                if (error)
                    *error = QStringLiteral("cannot read %1: %2").arg(file.fileName(), file.errorString());
                return false;
            }
            items = QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("items")).toArray();
            loaded = true;
        }
        build(path, name, name == CXMGB24EnName ? items : QJsonArray());
    }
    return true;
}
