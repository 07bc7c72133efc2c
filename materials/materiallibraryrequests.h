#pragma once
#include <cloud/cloudrequest.h>

#include <QString>

class LtdInfo;

// The cloud requests on material price libraries, by the server's tier.
class MaterialLibraryRequests
{
public:
    enum Oper { Create = 1, Rename = 2, Delete = 3 };

    // "materiallist" on the personal cloud, else "getenterprisepricelist".
    static CloudRequest list(const LtdInfo *server);
    // Needed before an edit on a server that is neither personal nor Korvane.
    static bool needsPermission(const LtdInfo *server);
    static CloudRequest permission(const LtdInfo *server);
    // "personmaterialedit" on the personal cloud, else "enterprisematrialedit".
    static CloudRequest edit(const LtdInfo *server, Oper oper, const QString &libraryId, const QString &name);
};
