#include "materialpricetables.h"

#include <hostapi/apppaths.h>
#include <hostapi/clsdac.h>
#include <hostapi/gljbean.h>
#include <hostapi/round.h>

#include <QFileInfo>

namespace {
const QString kAfterTax = QStringLiteral("【税后价】");
const QString kBeforeTax = QStringLiteral("【税前价】");

// The look-ups take names raw, so a quote makes their statement fail; a failed
// look-up finds nothing, as the stored data has always been read.
template <typename Read>
void lookUp(DBM::clsDAC &dac, const QString &sql, Read read)
{
    try {
        DBM::clsDACResult r = dac.execSql(sql);
        while (r.next())
            read(r);
    } catch (const DBM::exDBM &) {
    }
}

bool tableMissing(DBM::clsDAC &dac, const QString &name)
{
    DBM::clsDACResult r = dac.execSql(
        QStringLiteral("select count(*) from sqlite_master where type='table' and name='%1'").arg(name));
    return r.next() && r.value(0).toInt() == 0;
}
}

QString MaterialPriceTables::databasePath()
{
    return HostDatabasePath(QStringLiteral("DB_USER"));
}

void MaterialPriceTables::ensureTables()
{
    DBM::clsDAC dac(databasePath());
    if (tableMissing(dac, QStringLiteral("jb")))
        dac.execSql(QStringLiteral("CREATE TABLE jb(id INTEGER PRIMARY KEY AUTOINCREMENT, lyid  NULL, jbmc  NULL, "
                                   "dyear  NULL,kssj  NULL,jssj NULL,addtag  NULL,isTax INTEGER)"));
    if (tableMissing(dac, QStringLiteral("cljgb")))
        dac.execSql(QStringLiteral("CREATE TABLE cljgb(id INTEGER PRIMARY KEY AUTOINCREMENT, jdid  INTEGER, qkid NULL, "
                                   "lbid  NULL,clmc  NULL,clgg NULL,cldw  NULL,cldj  NULL,clcd  NULL,clpp  NULL,"
                                   "clsj  NULL,lyid  NULL)"));
    dac.closeDB();
}

bool MaterialPriceTables::hasTables()
{
    if (!QFileInfo::exists(databasePath()))
        return false;
    DBM::clsDAC dac(databasePath(), true);
    const bool present = !tableMissing(dac, QStringLiteral("jb")) && !tableMissing(dac, QStringLiteral("cljgb"));
    dac.closeDB();
    return present;
}

QStringList MaterialPriceTables::listTables()
{
    DBM::clsDAC dac(databasePath());
    QStringList texts;
    DBM::clsDACResult r = dac.execSql(QStringLiteral("SELECT * FROM jb "));
    while (r.next())
        texts << displayText(r.value(QStringLiteral("jbmc")).toString(), r.value(QStringLiteral("isTax")).toInt());
    dac.closeDB();
    return texts;
}

QString MaterialPriceTables::displayText(const QString &name, int isTax)
{
    return name + (isTax != 0 ? kAfterTax : kBeforeTax);
}

QString MaterialPriceTables::nameOf(const QString &displayText)
{
    if (displayText.contains(kBeforeTax))
        return displayText.left(displayText.indexOf(kBeforeTax));
    const int at = displayText.indexOf(kAfterTax);
    return at < 0 ? displayText : displayText.left(at);
}

QString MaterialPriceTables::taxFlagFor(int tax)
{
    return tax < 1 ? QStringLiteral("1") : QStringLiteral("0");
}

MaterialPriceTables::TableRef MaterialPriceTables::findTable(const QString &name)
{
    DBM::clsDAC dac(databasePath());
    TableRef ref;
    lookUp(dac, QStringLiteral("SELECT * FROM jb WHERE jbmc = '%1' ").arg(name), [&](DBM::clsDACResult &r) {
        ref.id = r.value(QStringLiteral("id")).toString();
        ref.lyid = r.value(QStringLiteral("lyid")).toString();
        ++ref.rows;
    });
    dac.closeDB();
    return ref;
}

bool MaterialPriceTables::createTable(const QString &name, const QString &taxFlag)
{
    if (findTable(name).rows > 0)
        return false;
    DBM::clsDAC dac(databasePath());
    dac.execSql(QStringLiteral("insert into jb(lyid,jbmc,isTax) values('%1','%2','%3')")
                    .arg(QStringLiteral("5"), name, taxFlag));
    dac.closeDB();
    return true;
}

bool MaterialPriceTables::renameTable(const QString &oldName, const QString &newName)
{
    if (findTable(newName).rows > 0)
        return false;
    DBM::clsDAC dac(databasePath());
    dac.execSql(QStringLiteral("UPDATE jb SET jbmc = '%1' WHERE jbmc = '%2' ").arg(newName, oldName));
    dac.closeDB();
    return true;
}

void MaterialPriceTables::deleteTable(const QString &name)
{
    DBM::clsDAC dac(databasePath());
    DBM::clsDACResult deleted = dac.execSql(QStringLiteral("DELETE FROM jb WHERE jbmc = '%1' ").arg(name));
    QString id;
    while (deleted.next())
        id = deleted.value(QStringLiteral("id")).toString();
    dac.execSql(QStringLiteral("DELETE FROM cljgb WHERE jdid = '%1' ").arg(id));
    dac.closeDB();
}

int MaterialPriceTables::countMaterial(const QString &tableId, const GljBean &material)
{
    DBM::clsDAC dac(databasePath());
    int rows = 0;
    lookUp(dac,
           QStringLiteral("SELECT * FROM cljgb WHERE jdid = '%1' AND clmc = '%2' AND clgg = '%3'AND cldw = '%4' ")
               .arg(tableId, material.GetClmc(), material.GetGgxh(), material.GetDw()),
           [&](DBM::clsDACResult &) { ++rows; });
    dac.closeDB();
    return rows;
}

void MaterialPriceTables::saveMaterial(const TableRef &table, const GljBean &m, int &matchCounter)
{
    matchCounter += countMaterial(table.id, m);
    DBM::clsDAC dac(databasePath());
    if (matchCounter != 0)
        dac.execSql(QStringLiteral("UPDATE cljgb SET cldj = '%1',clpp = '%6',clsj = '%7',clcd = '%8' WHERE jdid = '%2' "
                                   "AND clmc = '%3' AND clgg = '%4'AND cldw = '%5' ")
                        .arg(price(m), table.id, escaped(m.GetClmc()), escaped(m.GetGgxh()), escaped(m.GetDw()),
                             escaped(m.GetPp()), escaped(m.GetCj()), escaped(m.GetCd())));
    else
        dac.execSql(QStringLiteral("insert into cljgb(jdid,clmc,clgg,cldw,cldj,lyid,clpp,clsj,clcd) "
                                   "values('%1','%2','%3','%4','%5','%6','%7','%8','%9') ")
                        .arg(table.id, escaped(m.GetClmc()), escaped(m.GetGgxh()), escaped(m.GetDw()), price(m),
                             table.lyid, escaped(m.GetPp()), escaped(m.GetCj()), escaped(m.GetCd())));
    dac.closeDB();
}

QString MaterialPriceTables::escaped(QString text)
{
    return text.replace(QLatin1Char('\''), QStringLiteral("''"));
}

QString MaterialPriceTables::price(const GljBean &material)
{
    return Round(material.GetTj(), 8, false);
}
