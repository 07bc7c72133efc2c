#pragma once
#include "billstore.h"
#include "servicecontext.h"
#include "tierscope.h"

#include <QHash>

// Bill libraries, chapter trees and bill-saving tasks: "getBZQDKList",
// "getQDKQX", "editNZQDK", "listeditpermissionjudgment...",
// "getchaptertree...", "listsavingtaskbegin...", "personchapterinfoforuploadqd"
// and the host's "uploadsavingtaskbills".
class LibraryHandlers
{
public:
    explicit LibraryHandlers(const ServiceContext &context);
    void registerOn(QHash<QString, MethodHandler> &table);

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

    ServiceContext m_context;
};
