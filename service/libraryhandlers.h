#pragma once
#include "billstore.h"
#include "handlergroup.h"
#include "readcache.h"
#include "tierscope.h"

// Bill libraries, chapter trees and bill-saving tasks: "getBZQDKList",
// "getQDKQX", "editNZQDK", "listeditpermissionjudgment...",
// "getchaptertree...", "listsavingtaskbegin...", "personchapterinfoforuploadqd"
// and the host's "uploadsavingtaskbills".
class LibraryHandlers : public HandlerGroup
{
public:
    using HandlerGroup::HandlerGroup;
    void registerOn(QHash<QString, MethodHandler> &table) override;

private:
    QJsonObject libraryList(const RequestContext &request);
    QJsonObject libraryPermission(const RequestContext &request);
    QJsonObject editLibrary(const RequestContext &request);
    QJsonObject editPermission(const RequestContext &request, TierScope::Admits admits);
    QJsonObject chapterTree(const RequestContext &request, TierScope::Admits admits);
    QJsonObject beginSavingTask(const RequestContext &request, TierScope::Admits admits);
    QJsonObject chapterInfoForUpload(const RequestContext &request);
    QJsonObject uploadTaskBills(const RequestContext &request);

    // The library `id` (text) of the scope's tier; throws NotFound otherwise.
    BillStore::Library ownLibrary(const TierScope &scope, const QString &id);

    // Library lists by tier scope.
    ReadCache m_lists;
};
