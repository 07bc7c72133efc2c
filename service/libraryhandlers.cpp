#include "libraryhandlers.h"
#include "billcatalog.h"
#include "chaptertree.h"
#include "requestcontext.h"
#include "servicedb.h"
#include "serviceerror.h"

#include <QDateTime>
#include <QJsonArray>
#include <QSqlQuery>

namespace {

// The sub-chapter names of a bill's "zjlj", blanks left out.
QStringList chapterPath(const QJsonArray &names)
{
    QStringList path;
    for (const QJsonValue &name : names)
        if (!name.toString().trimmed().isEmpty())
            path.append(name.toString().trimmed().left(100));
    return path;
}

}

void LibraryHandlers::registerOn(QHash<QString, MethodHandler> &table)
{
    add(table, "getBZQDKList", &LibraryHandlers::libraryList);
    add(table, "getQDKQX", &LibraryHandlers::libraryPermission);
    add(table, "editNZQDK", &LibraryHandlers::editLibrary);
    add(table, "listeditpermissionjudgmentforperson", &LibraryHandlers::editPermission, TierScope::PersonalOnly);
    add(table, "listeditpermissionjudgmentforenterprise", &LibraryHandlers::editPermission,
        TierScope::EnterpriseOrKorvane);
    add(table, "getchaptertreeforperson", &LibraryHandlers::chapterTree, TierScope::PersonalOnly);
    add(table, "getchaptertreeforkv", &LibraryHandlers::chapterTree, TierScope::KorvaneOnly);
    add(table, "getchaptertreeforenterprise", &LibraryHandlers::chapterTree, TierScope::EnterpriseOrKorvane);
    add(table, "listsavingtaskbeginforperson", &LibraryHandlers::beginSavingTask, TierScope::PersonalOnly);
    add(table, "listsavingtaskbeginforenterprise", &LibraryHandlers::beginSavingTask, TierScope::EnterpriseOrKorvane);
    add(table, "personchapterinfoforuploadqd", &LibraryHandlers::chapterInfoForUpload);
    add(table, "uploadsavingtaskbills", &LibraryHandlers::uploadTaskBills);
}

BillStore::Library LibraryHandlers::ownLibrary(const TierScope &scope, const QString &id)
{
    bool numeric = false;
    const int libraryId = id.trimmed().toInt(&numeric);
    if (!numeric)
        throw ServiceError(ServiceError::NotFound, QStringLiteral("清单库不存在"));
    BillStore store(*m_context.db);
    const BillStore::Library library = store.library(libraryId);
    if (library.id == 0 || library.tier != scope.tier() || library.owner != scope.owner())
        throw ServiceError(ServiceError::NotFound, QStringLiteral("清单库不存在"));
    return library;
}

QJsonObject LibraryHandlers::libraryList(const RequestContext &request)
{
    request.integer(QStringLiteral("reqeuestype"));
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    return ok(m_lists.fetch(scope.scopeKey(), *m_context.db, [&](qint64 *) {
        BillStore store(*m_context.db);
        QJsonArray list;
        for (const BillStore::Library &l : store.libraries(scope.tier(), scope.owner()))
            list.append(QJsonObject{{QStringLiteral("mc"), l.name}, {QStringLiteral("id"), QString::number(l.id)}});
        return list;
    }));
}

QJsonObject LibraryHandlers::libraryPermission(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const QString qdkid = request.text(QStringLiteral("qdkid"), false, 40);
    if (!qdkid.isEmpty())
        ownLibrary(scope, qdkid);
    scope.requireWrite();
    return ok();
}

QJsonObject LibraryHandlers::editLibrary(const RequestContext &request)
{
    request.integer(QStringLiteral("reqeuestype"));
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    const int czlx = request.integer(QStringLiteral("czlx"), true);
    const QJsonObject para = request.object(QStringLiteral("para"), true);
    const QString qdkid = RequestContext::textIn(para, QStringLiteral("qdkid"), false, 40);
    BillStore store(*m_context.db);
    BillStore::Library result;
    switch (czlx) {
    case 0: {
        scope.requireWrite();
        const QString name =
            checkedName(RequestContext::textIn(para, QStringLiteral("qdkmc"), false, 200), QStringLiteral("清单库"));
        m_context.db->write([&] {
            if (store.libraryNameTaken(scope.tier(), scope.owner(), name))
                throw ServiceError(ServiceError::Conflict, QStringLiteral("清单库名称已存在"));
            result = store.library(store.createLibrary(scope.tier(), scope.owner(), name));
        });
        break;
    }
    case 1: {
        scope.requireWrite();
        const QString name =
            checkedName(RequestContext::textIn(para, QStringLiteral("qdkmc"), false, 200), QStringLiteral("清单库"));
        const BillStore::Library library = ownLibrary(scope, qdkid);
        m_context.db->write([&] {
            if (store.libraryNameTaken(scope.tier(), scope.owner(), name, library.id))
                throw ServiceError(ServiceError::Conflict, QStringLiteral("清单库名称已存在"));
            store.renameLibrary(library.id, name);
        });
        result = store.library(library.id);
        break;
    }
    case 2: {
        scope.requireAdmin();
        const BillStore::Library library = ownLibrary(scope, qdkid);
        QVector<qint64> removed;
        m_context.db->write([&] {
            QSqlQuery q = m_context.db->exec(QStringLiteral("SELECT id FROM bills WHERE library_id = ?"), {library.id});
            while (q.next())
                removed.append(q.value(0).toLongLong());
            store.deleteLibrary(library.id);
        });
        if (m_context.catalog)
            m_context.catalog->removed(removed);
        result = library;
        break;
    }
    default:
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("参数czlx格式错误"));
    }
    return ok(QJsonObject{{QStringLiteral("id"), QString::number(result.id)}, {QStringLiteral("mc"), result.name}});
}

QJsonObject LibraryHandlers::editPermission(const RequestContext &request, TierScope::Admits admits)
{
    TierScope::resolve(request, *m_context.accounts, admits).requireWrite();
    return ok();
}

QJsonObject LibraryHandlers::chapterTree(const RequestContext &request, TierScope::Admits admits)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, admits);
    const BillStore::Library library = ownLibrary(scope, request.text(QStringLiteral("bzqdkid"), true, 40));
    const QString parent = request.text(QStringLiteral("zjid"), false, 64);
    const QString sfjzzsm = request.text(QStringLiteral("sfjzzsm"), false, 10);
    BillStore store(*m_context.db);
    if (!parent.isEmpty() && store.chapter(parent).libraryId != library.id)
        throw ServiceError(ServiceError::NotFound, QStringLiteral("章节不存在"));
    const bool subtree = sfjzzsm == QLatin1String("1") || sfjzzsm == QLatin1String("true");
    return ok(ChapterTree::records(store, library.id, parent, subtree));
}

QJsonObject LibraryHandlers::beginSavingTask(const RequestContext &request, TierScope::Admits admits)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, admits);
    scope.requireWrite();
    const BillStore::Library library = ownLibrary(scope, request.text(QStringLiteral("bzqdkid"), true, 40));
    const QString taskId = request.text(QStringLiteral("taskid"), true, 64);
    const QString mark = request.text(QStringLiteral("mark"), false, 4);
    if (!mark.isEmpty() && mark != QLatin1String("0") && mark != QLatin1String("1"))
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("参数mark格式错误"));
    const int count = request.integer(QStringLiteral("qdcount"), true);
    if (count < 1 || count > 100000)
        throw ServiceError(ServiceError::BadRequest, QStringLiteral("保存的清单数量应在1到100000之间"));
    const QString chapterId = request.text(QStringLiteral("zjid"), false, 64);
    BillStore store(*m_context.db);
    if (!chapterId.isEmpty() && store.chapter(chapterId).libraryId != library.id)
        throw ServiceError(ServiceError::NotFound, QStringLiteral("章节不存在"));
    m_context.db->write([&] {
        if (m_context.db->scalar(QStringLiteral("SELECT COUNT(*) FROM saving_tasks WHERE id = ?"), {taskId}).toInt() > 0)
            throw ServiceError(ServiceError::Conflict, QStringLiteral("保存任务已存在"));
        m_context.db->exec(QStringLiteral("INSERT INTO saving_tasks(id, tier, owner, user_id, library_id, chapter_id, mark,"
                                          " qdcount, created) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                           {taskId, int(scope.tier()), scope.owner(), scope.userId(), library.id, chapterId,
                            mark == QLatin1String("1") ? 1 : 0, count,
                            QDateTime::currentDateTimeUtc().toString(Qt::ISODate)});
    });
    return ok(QJsonObject{{QStringLiteral("taskid"), taskId}});
}

QJsonObject LibraryHandlers::chapterInfoForUpload(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts, TierScope::PersonalOnly);
    BillStore store(*m_context.db);
    QJsonArray list;
    for (const BillStore::Library &l : store.libraries(scope.tier(), scope.owner())) {
        QJsonArray chapters;
        QSqlQuery q = m_context.db->exec(
            QStringLiteral("SELECT id, name, parent_id FROM chapters WHERE library_id = ? ORDER BY parent_id, sort, id"),
            {l.id});
        while (q.next())
            chapters.append(QJsonObject{{QStringLiteral("_id"), q.value(0).toString()},
                                        {QStringLiteral("zjmc"), q.value(1).toString()},
                                        {QStringLiteral("pid"), q.value(2).toString()}});
        list.append(QJsonObject{{QStringLiteral("bzqdkid"), QString::number(l.id)},
                                {QStringLiteral("mc"), l.name},
                                {QStringLiteral("zjs"), chapters}});
    }
    return ok(list);
}

QJsonObject LibraryHandlers::uploadTaskBills(const RequestContext &request)
{
    const TierScope scope = TierScope::resolve(request, *m_context.accounts);
    scope.requireWrite();
    const QString taskId = request.text(QStringLiteral("taskid"), true, 64);
    const QJsonArray bills = request.array(QStringLiteral("bills"), true);
    const QString chapterOverride = request.text(QStringLiteral("zjid"), false, 64);
    const QString defaultChapter = request.text(QStringLiteral("mrzjid"), false, 64);

    ServiceDb &db = *m_context.db;
    BillStore store(db);
    QVector<qint64> added, removed;
    QJsonArray failed;
    QString chapterId;
    // The task is read inside the transaction, so that two uploads to one task
    // cannot both pass its bill count.
    db.write([&] {
        QSqlQuery t = db.exec(QStringLiteral("SELECT tier, owner, library_id, chapter_id, mark, qdcount, uploaded"
                                             " FROM saving_tasks WHERE id = ?"),
                              {taskId});
        if (!t.next() || t.value(0).toInt() != scope.tier() || t.value(1).toInt() != scope.owner())
            throw ServiceError(ServiceError::NotFound, QStringLiteral("保存任务不存在或已失效"));
        const int libraryId = t.value(2).toInt();
        chapterId = chapterOverride.isEmpty() ? t.value(3).toString() : chapterOverride;
        const bool replace = t.value(4).toInt() == 1 && t.value(6).toInt() == 0;
        const int room = t.value(5).toInt() - t.value(6).toInt();
        if (!chapterId.isEmpty() && store.chapter(chapterId).libraryId != libraryId)
            throw ServiceError(ServiceError::NotFound, QStringLiteral("章节不存在"));
        if (chapterId.isEmpty()) {
            // The wizard names the default chapter's id; reuse it when it is there.
            const BillStore::Chapter existing = store.chapter(defaultChapter);
            if (!defaultChapter.isEmpty() && existing.libraryId == libraryId)
                chapterId = existing.id;
            else
                chapterId = store.createChapter(libraryId, QString(), QStringLiteral("默认章节"),
                                                existing.id.isEmpty() ? defaultChapter : QString());
        }
        if (replace)
            removed = store.clearChapter(chapterId);
        // Refuses the whole upload, with the reason, rather than failing
        // bills silently; chapters already deeper (an older database) still
        // take bills.
        const int levelsLeft = BillStore::MaxChapterDepth - store.chapterDepth(chapterId);
        for (const QJsonValue &v : bills) {
            const QJsonObject o = v.toObject();
            const int newLevels = chapterPath(o.value(QStringLiteral("zjlj")).toArray()).size();
            if (newLevels > 0 && newLevels > levelsLeft)
                throw ServiceError(ServiceError::BadRequest,
                                   QStringLiteral("章节层级不能超过%1级").arg(BillStore::MaxChapterDepth));
            const QString guid = RequestContext::textIn(o, QStringLiteral("guidb"), false, 64);
            try {
                if (added.size() >= room)
                    throw ServiceError(ServiceError::BadRequest, QStringLiteral("超出任务的清单数量"));
                BillStore::Bill b;
                b.tier = scope.tier();
                b.owner = scope.owner();
                b.source = BillStore::StandardSource;
                b.libraryId = libraryId;
                b.taskId = taskId;
                b.qdbh = RequestContext::textIn(o, QStringLiteral("qdbh"), false, 40);
                b.xmmc = RequestContext::textIn(o, QStringLiteral("xmmc"), true, 500);
                b.jldw = RequestContext::textIn(o, QStringLiteral("jldw"), false, 20);
                b.xmtz = RequestContext::textIn(o, QStringLiteral("xmtz"), false);
                b.gznr = RequestContext::textIn(o, QStringLiteral("gznr"), false);
                b.zhdj = RequestContext::numberIn(o, QStringLiteral("zhdj"), false);
                b.zjnr = RequestContext::textIn(o, QStringLiteral("zjnr"), false, 200000);
                const QStringList path = chapterPath(RequestContext::arrayIn(o, QStringLiteral("zjlj"), false, 8));
                b.chapterId = path.isEmpty() ? chapterId : store.ensureChapterPath(libraryId, chapterId, path);
                added.append(store.insertBill(b));
            } catch (const ServiceError &e) {
                if (e.code() == ServiceError::Internal)
                    throw;
                failed.append(guid);
            }
        }
        db.exec(QStringLiteral("UPDATE saving_tasks SET uploaded = uploaded + ? WHERE id = ?"), {added.size(), taskId});
    });
    if (m_context.catalog) {
        m_context.catalog->removed(removed);
        m_context.catalog->added(added);
    }
    return ok(QJsonObject{{QStringLiteral("saved"), added.size()},
                          {QStringLiteral("failed"), failed},
                          {QStringLiteral("zjid"), chapterId}});
}
