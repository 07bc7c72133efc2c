#include "featurestore.h"

#include <hostapi/apppaths.h>
#include <hostapi/hostconstants.h>
#include <hostapi/sqlaccess.h>

#include <QFileInfo>


namespace {
const QString kCreate = QStringLiteral(
    "CREATE TABLE IF NOT EXISTS %1_xmtz_ms (FID INTEGER PRIMARY KEY AUTOINCREMENT, Xmbh VARCHAR(40) NOT NULL,  "
    "Xmmc VARCHAR(40) NOT NULL, Xmtz VARCHAR(400) NOT NULL)");
const QString kUserAlias = QStringLiteral("DBuser");

QStringList specialties(const QString &libraryName)
{
    if (libraryName == CXMQGQDEnName)
        return {"tj_de", "zs_de", "az_de", "sz_de", "fg_de"};
    if (libraryName == CXMN8QDEnName)
        return {"tj_de", "zs_de", "az_de", "sz_de", "fg_de", "cs_de"};
    if (libraryName == CXMN3QDEnName || libraryName == CXMGB24EnName)
        return {"tj_de", "fg_de", "az_de", "sz_de", "yl_de", "ks_de", "gz_de", "gd_de", "bp_de"};
    return {};
}

QString text(const DBM::clsDACResult &row, const char *column)
{
    return row.value(QLatin1String(column)).toString();
}
}

QString FeatureStore::userDatabasePath()
{
    return HostDatabasePath(QStringLiteral("DB_USER"));
}

QString FeatureStore::libraryPath(const QString &libraryName)
{
    return HostDatabasePath(libraryName);
}

QStringList FeatureStore::libraryNames()
{
    return {CXMQGQDEnName, CXMN8QDEnName, CXMN3QDEnName, CXMGB24EnName};
}

void FeatureStore::ensureTables()
{
    DBM::clsDAC db(userDatabasePath());
    for (const QString &name : libraryNames())
        db.execSql(kCreate.arg(name));
}

bool FeatureStore::hasCustomTables()
{
    if (!QFileInfo::exists(userDatabasePath()))
        return false;
    QVariantList names;
    for (const QString &name : libraryNames())
        names << QVariant(name + QStringLiteral("_xmtz_ms"));
    QStringList marks;
    for (int i = 0; i < names.size(); ++i)
        marks << QStringLiteral("?");
    DBM::clsDAC db(userDatabasePath(), true);
    DBM::clsDACResult r = db.execPrepared(
        QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name IN (%1)").arg(marks.join(", ")),
        names);
    return r.next() && r.value(0).toInt() == names.size();
}

QString FeatureStore::customTable(const QString &libraryPath, const QString &previous)
{
    for (const QString &name : libraryNames()) {
        if (libraryPath == FeatureStore::libraryPath(name))
            return name + QStringLiteral("_xmtz_ms");
    }
    return previous;
}

QString FeatureStore::libraryOf(const QString &kind)
{
    const QString upper = kind.toUpper();
    return libraryNames().contains(upper) ? upper : QString();
}

QString FeatureStore::specialtyTable(const QString &libraryName, const QString &code)
{
    const QStringList tables = specialties(libraryName);
    const int digit = code.size() > 1 ? code.at(1).digitValue() : -1;
    return digit >= 1 && digit <= tables.size() ? tables.at(digit - 1) : QString();
}

int FeatureStore::countLines(const QString &libraryPath, const QString &customTable, const QString &code)
{
    DBM::clsDAC db(libraryPath, true);
    db.addSQLiteAttachDatabase(kUserAlias, userDatabasePath());
    int count = 0;
    DBM::clsDACResult all = db.execSql(
        QStringLiteral("SELECT * FROM xmtz_ms WHERE Xmbh like '%1%' UNION SELECT * FROM DBuser.'%2' WHERE Xmbh like '%3%'")
            .arg(code, customTable, code));
    while (all.next()) {
        if (!text(all, "Xmbh").isEmpty())
            ++count;
    }
    DBM::clsDACResult standard = db.execSql(QStringLiteral("SELECT * FROM xmtz_ms WHERE Xmbh like '%1%' ").arg(code));
    while (standard.next()) {
        if (!text(standard, "Xmmc").isEmpty())
            --count;
    }
    db.detachSQLiteDatabase(kUserAlias);
    return count;
}

FeatureStore::Lines FeatureStore::loadLines(const QString &libraryPath, const QString &customTable, const QString &code)
{
    Lines lines;
    lines.count = countLines(libraryPath, customTable, code);
    if (lines.count == 0)
        return lines;
    {
        DBM::clsDAC library(libraryPath, true);
        DBM::clsDACResult standard =
            library.execSql(QStringLiteral("SELECT * FROM xmtz_ms WHERE Xmbh like '%1%' ").arg(code.left(9)));
        while (standard.next()) {
            if (!text(standard, "Xmmc").isEmpty())
                lines.hint = text(standard, "Xmtz");
            else
                lines.entries << text(standard, "Xmbh") << text(standard, "Xmtz");
        }
    }
    DBM::clsDAC user(userDatabasePath());
    DBM::clsDACResult custom =
        user.execSql(QStringLiteral("SELECT * FROM '%1' WHERE Xmbh like '%2%' ").arg(customTable, code));
    while (custom.next()) {
        const QString xmbh = text(custom, "Xmbh");
        if (xmbh.isEmpty())
            break;
        lines.entries << customMark() + xmbh << text(custom, "Xmtz");
    }
    return lines;
}

QString FeatureStore::standardFeatureText(const QString &libraryPath, const QString &specialtyTable,
                                          const QString &code)
{
    if (specialtyTable.isEmpty() || libraryPath.isEmpty())
        return QString();
    DBM::clsDAC db(libraryPath, true);
    DBM::clsDACResult rows =
        db.execSql(QStringLiteral("SELECT * FROM '%1' WHERE debh = '%2' ").arg(specialtyTable, code));
    QString result;
    while (rows.next())
        result = text(rows, "xmtz");
    return result;
}

int FeatureStore::findCustomLine(const QString &table, const QString &text)
{
    DBM::clsDAC db(userDatabasePath());
    DBM::clsDACResult rows = db.execSql(QStringLiteral("SELECT * FROM '%1' WHERE Xmtz = '%2' ").arg(table, text));
    int fid = 0;
    while (rows.next())
        fid = rows.value(QStringLiteral("FID")).toInt();
    return fid;
}

void FeatureStore::updateCustomLine(const QString &table, const QString &text, int fid)
{
    DBM::clsDAC db(userDatabasePath());
    db.execSql(QStringLiteral("UPDATE '%1' SET  Xmtz = '%2' WHERE FID = %3  ").arg(table, text, QString::number(fid)));
}

void FeatureStore::deleteCustomLine(const QString &table, const QString &text)
{
    const int fid = findCustomLine(table, doubledQuotes(text));
    DBM::clsDAC db(userDatabasePath());
    db.execSql(QStringLiteral("DELETE FROM '%1' WHERE FID = %2  ").arg(table).arg(fid));
}
