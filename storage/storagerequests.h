#pragma once
#include <cloud/cloudrequest.h>

#include <QString>

class LtdInfo;

// The requests of bill cloud storage, built without a window, and the rule
// for a new library's name.
class StorageRequests
{
public:
    static constexpr int MaxLibraryName = 50;

    static CloudRequest libraryList(const LtdInfo *server);
    static CloudRequest libraryPermission(const LtdInfo *server, const QString &qdkid);
    static CloudRequest newLibrary(const LtdInfo *server, const QString &name);
    static CloudRequest editPermission(const LtdInfo *server);
    // Children of `zjid` (the top level when empty) of library `bzqdkid`.
    static CloudRequest chapterTree(const LtdInfo *server, const QString &bzqdkid, const QString &zjid);
    static CloudRequest savingTask(const LtdInfo *server, bool replace, const QString &taskId, const QString &qdcount,
                                   const QString &bzqdkid, const QString &zjid);

    // Type 1 and -1 entries ask for the library permission, the others for
    // the tiered edit permission.
    static bool usesLibraryPermission(const LtdInfo *server);
    // The message refusing `name`, empty when it may be used.
    static QString newLibraryNameError(const QString &name);
};
