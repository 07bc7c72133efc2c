#pragma once
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/cloudparams.h>

#include <QList>
#include <QString>

#include <optional>

class GljBean;
class HostContext;
class LtdInfo;
class QWidget;
class TCjyjc;

// The host's side of "材价云检查": sets the check up on the project's
// settings, fetches the cloud price records of the project's materials,
// shows the result and writes the chosen prices into the project.
class MaterialCheckHost
{
public:
    // What the set-up dialog handed over.
    struct Choice
    {
        LtdInfo *server = nullptr;
        QString libraryId;
        QString libraryName;
        CloudParams params;
        bool chosen = false;
    };

    static QWidget *open(HostContext &host);
    static QWidget *tour(HostContext &host);
    static void prepare(TCjyjc &dialog, HostContext &host, Choice &choice);

    // "getmaterialcheckrecords"; no value when the cloud refused.
    static std::optional<QList<CloudCjyjcBean>> fetchRecords(const Choice &choice, const QList<GljBean *> &materials,
                                                             QWidget *parent);
    // The check from a choice: fetch, then the result dialog.
    static void run(HostContext &host, const Choice &choice, bool tour = false);
};
