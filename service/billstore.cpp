#include "billstore.h"
#include "passwordhash.h"
#include "servicedb.h"

#include <QDateTime>
#include <QSqlQuery>

namespace {

QString now()
{
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
}

const QString kBillColumns = QStringLiteral(
    "id, tier, owner, source, library_id, chapter_id, project_id, task_id, qdbh, xmmc, jldw, xmtz, gznr, zhdj, zjnr, dxmc");

BillStore::Bill billFrom(const QSqlQuery &q)
{
    BillStore::Bill b;
    b.id = q.value(0).toLongLong();
    b.tier = q.value(1).toInt();
    b.owner = q.value(2).toInt();
    b.source = q.value(3).toInt();
    b.libraryId = q.value(4).toInt();
    b.chapterId = q.value(5).toString();
    b.projectId = q.value(6).toInt();
    b.taskId = q.value(7).toString();
    b.qdbh = q.value(8).toString();
    b.xmmc = q.value(9).toString();
    b.jldw = q.value(10).toString();
    b.xmtz = q.value(11).toString();
    b.gznr = q.value(12).toString();
    b.zhdj = q.value(13).toDouble();
    b.zjnr = q.value(14).toString();
    b.dxmc = q.value(15).toString();
    return b;
}

const QString kProjectColumns = QStringLiteral(
    "id, tier, owner, xmmc, dxmc, dwmc, qdgf, jjde, jsfs, zhdjfs, hbgd, dd, jgjzsj, jsxs, zjsjlx, uploader_id, gc_type");

BillStore::Project projectFrom(const QSqlQuery &q)
{
    BillStore::Project p;
    p.id = q.value(0).toInt();
    p.tier = q.value(1).toInt();
    p.owner = q.value(2).toInt();
    QString *texts[] = {&p.xmmc, &p.dxmc, &p.dwmc, &p.qdgf, &p.jjde, &p.jsfs,
                        &p.zhdjfs, &p.hbgd, &p.dd, &p.jgjzsj, &p.jsxs, &p.zjsjlx};
    for (int i = 0; i < 12; ++i)
        *texts[i] = q.value(3 + i).toString();
    p.uploaderId = q.value(15).toInt();
    p.gcType = q.value(16).toInt();
    return p;
}

}

BillStore::BillStore(ServiceDb &db)
    : m_db(db)
{
}

int BillStore::createLibrary(int tier, int owner, const QString &name)
{
    return m_db
        .insert(QStringLiteral("INSERT INTO libraries(tier, owner, name, created) VALUES(?, ?, ?, ?)"),
              {tier, owner, name, now()})
        .toInt();
}

void BillStore::renameLibrary(int id, const QString &name)
{
    m_db.exec(QStringLiteral("UPDATE libraries SET name = ? WHERE id = ?"), {name, id});
}

void BillStore::deleteLibrary(int id)
{
    m_db.exec(QStringLiteral("DELETE FROM bills WHERE library_id = ?"), {id});
    m_db.exec(QStringLiteral("DELETE FROM chapters WHERE library_id = ?"), {id});
    m_db.exec(QStringLiteral("DELETE FROM libraries WHERE id = ?"), {id});
}

BillStore::Library BillStore::library(int id)
{
    Library l;
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT id, tier, owner, name FROM libraries WHERE id = ?"), {id});
    if (q.next())
        l = Library{q.value(0).toInt(), q.value(1).toInt(), q.value(2).toInt(), q.value(3).toString()};
    return l;
}

QList<BillStore::Library> BillStore::libraries(int tier, int owner)
{
    QList<Library> list;
    m_db.eachRow(QStringLiteral("SELECT id, tier, owner, name FROM libraries WHERE tier = ? AND owner = ? ORDER BY id"),
                 {tier, owner}, [&](const QSqlQuery &q) {
                     list.append(Library{q.value(0).toInt(), q.value(1).toInt(), q.value(2).toInt(), q.value(3).toString()});
                 });
    return list;
}

bool BillStore::libraryNameTaken(int tier, int owner, const QString &name, int exceptId)
{
    return m_db
               .scalar(QStringLiteral("SELECT COUNT(*) FROM libraries WHERE tier = ? AND owner = ? AND name = ?"
                                      " AND id <> ?"),
                       {tier, owner, name, exceptId})
               .toInt()
        > 0;
}

QString BillStore::createChapter(int libraryId, const QString &parentId, const QString &name, const QString &id)
{
    const QString chapterId = id.isEmpty() ? PasswordHash::randomToken(12) : id;
    const int sort = m_db
                         .scalar(QStringLiteral("SELECT COALESCE(MAX(sort), 0) + 1 FROM chapters"
                                                " WHERE library_id = ? AND parent_id = ?"),
                                 {libraryId, parentId}, 1)
                         .toInt();
    m_db.exec(QStringLiteral("INSERT INTO chapters(id, library_id, parent_id, name, sort) VALUES(?, ?, ?, ?, ?)"),
              {chapterId, libraryId, parentId, name, sort});
    return chapterId;
}

BillStore::Chapter BillStore::chapter(const QString &id)
{
    Chapter c;
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT id, library_id, parent_id, name,"
                                           " EXISTS(SELECT 1 FROM chapters k WHERE k.parent_id = c.id)"
                                           " FROM chapters c WHERE id = ?"),
                            {id});
    if (q.next())
        c = Chapter{q.value(0).toString(), q.value(1).toInt(), q.value(2).toString(), q.value(3).toString(),
                    q.value(4).toBool()};
    return c;
}

int BillStore::chapterDepth(const QString &id)
{
    // Bounded, so that an older database's deeper tree (or a broken parent
    // cycle) costs little.
    int depth = 0;
    for (QString current = id; !current.isEmpty() && depth <= MaxChapterDepth; ++depth)
        current = m_db.scalar(QStringLiteral("SELECT parent_id FROM chapters WHERE id = ?"), {current}).toString();
    return depth;
}

QList<BillStore::Chapter> BillStore::chapters(int libraryId, const QString &parentId)
{
    QList<Chapter> list;
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT id, library_id, parent_id, name,"
                                           " EXISTS(SELECT 1 FROM chapters k WHERE k.parent_id = c.id)"
                                           " FROM chapters c WHERE library_id = ? AND parent_id = ?"
                                           " ORDER BY sort, id"),
                            {libraryId, parentId});
    while (q.next())
        list.append(Chapter{q.value(0).toString(), q.value(1).toInt(), q.value(2).toString(), q.value(3).toString(),
                            q.value(4).toBool()});
    return list;
}

QString BillStore::ensureChapterPath(int libraryId, const QString &parentId, const QStringList &names)
{
    QString current = parentId;
    for (const QString &name : names) {
        const QString found = m_db
                                  .scalar(QStringLiteral("SELECT id FROM chapters WHERE library_id = ?"
                                                         " AND parent_id = ? AND name = ? ORDER BY sort LIMIT 1"),
                                          {libraryId, current, name})
                                  .toString();
        current = found.isEmpty() ? createChapter(libraryId, current, name) : found;
    }
    return current;
}

QStringList BillStore::chapterSubtree(const QString &chapterId)
{
    QStringList all{chapterId};
    for (int i = 0; i < all.size(); ++i) {
        QSqlQuery q = m_db.exec(QStringLiteral("SELECT id FROM chapters WHERE parent_id = ?"), {all.at(i)});
        while (q.next())
            all.append(q.value(0).toString());
    }
    return all;
}

QVector<qint64> BillStore::clearChapter(const QString &chapterId)
{
    QVector<qint64> removed;
    for (const QString &id : chapterSubtree(chapterId)) {
        QSqlQuery q = m_db.exec(QStringLiteral("SELECT id FROM bills WHERE chapter_id = ?"), {id});
        while (q.next())
            removed.append(q.value(0).toLongLong());
        m_db.exec(QStringLiteral("DELETE FROM bills WHERE chapter_id = ?"), {id});
    }
    return removed;
}

int BillStore::createProject(const Project &p)
{
    return m_db
        .insert(QStringLiteral("INSERT INTO projects(tier, owner, xmmc, dxmc, dwmc, qdgf, jjde, jsfs, zhdjfs, hbgd, dd,"
                             " jgjzsj, jsxs, zjsjlx, uploader_id, gc_type, created)"
                             " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
              {p.tier, p.owner, p.xmmc, p.dxmc, p.dwmc, p.qdgf, p.jjde, p.jsfs, p.zhdjfs, p.hbgd, p.dd, p.jgjzsj,
               p.jsxs, p.zjsjlx, p.uploaderId, p.gcType, now()})
        .toInt();
}

BillStore::Project BillStore::project(int id)
{
    Project p;
    m_db.eachRow(QStringLiteral("SELECT ") + kProjectColumns + QStringLiteral(" FROM projects WHERE id = ?"), {id},
                 [&](const QSqlQuery &q) { p = projectFrom(q); });
    return p;
}

QList<BillStore::Project> BillStore::projects(int tier, int owner, int gcType, const QString &keyword)
{
    QList<Project> list;
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT ") + kProjectColumns
                                + QStringLiteral(" FROM projects WHERE tier = ? AND owner = ? AND (? = 0 OR gc_type = ?)"
                                                 " AND (? = '' OR instr(xmmc, ?) > 0) ORDER BY id"),
                            {tier, owner, gcType, gcType, keyword, keyword});
    while (q.next())
        list.append(projectFrom(q));
    return list;
}

qint64 BillStore::insertBill(const Bill &b)
{
    return m_db
        .insert(QStringLiteral("INSERT INTO bills(tier, owner, source, library_id, chapter_id, project_id, task_id, qdbh,"
                             " xmmc, jldw, xmtz, gznr, zhdj, zjnr, dxmc, created)"
                             " VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
              {b.tier, b.owner, b.source, b.libraryId, b.chapterId, b.projectId, b.taskId, b.qdbh, b.xmmc, b.jldw,
               b.xmtz, b.gznr, b.zhdj, b.zjnr, b.dxmc, now()})
        .toLongLong();
}

BillStore::Bill BillStore::bill(qint64 id)
{
    Bill b;
    m_db.eachRow(QStringLiteral("SELECT ") + kBillColumns + QStringLiteral(" FROM bills WHERE id = ?"), {id},
                 [&](const QSqlQuery &q) { b = billFrom(q); });
    return b;
}

QVector<BillStore::Bill> BillStore::allBills()
{
    QVector<Bill> list;
    QSqlQuery q = m_db.exec(QStringLiteral("SELECT ") + kBillColumns + QStringLiteral(" FROM bills ORDER BY id"));
    while (q.next())
        list.append(billFrom(q));
    return list;
}
