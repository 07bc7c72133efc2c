#pragma once
#include <QList>
#include <QString>

class CloudCLSaveDialogm;
class GljBean;
class HostContext;
class LtdInfo;
class QWidget;

// The host's side of "材料价格存储": one selected material is saved by the
// dialog itself; a selection of many (or, with none, the whole list) and
// every cloud target are saved here, the outcome shown in Prompt.
class MaterialStorageHost
{
public:
    static QWidget *open(HostContext &host);
    static QWidget *tour(HostContext &host);

    // The materials a save covers: the selection, or every material.
    static QList<GljBean *> scope(HostContext &host);
    // Sets the dialog up for `materials` and connects it to the host.
    static void prepare(CloudCLSaveDialogm &dialog, HostContext &host, const QList<GljBean *> &materials);
    // The tax argument of the dialog from the project's tax mode: 1 for
    // "一般计税" (prices before tax), else 0.
    static int taxArgument();

    struct Outcome
    {
        int total = 0;
        int saved = 0;
        QList<GljBean *> failed;
    };
    static Outcome saveLocally(const QList<GljBean *> &materials, const QString &tableId, const QString &lyid);
    // "savematerialprices"; no value when the cloud refused (its "msg" shown).
    static bool saveToCloud(const QList<GljBean *> &materials, LtdInfo *server, const QString &libraryId,
                            QWidget *parent, Outcome &outcome);
    // What a save would keep: the storable materials, the others failed.
    static Outcome split(const QList<GljBean *> &materials);
    // Prompt; with `withFailures` the failed materials are opened as well.
    static void showOutcome(const Outcome &outcome, QWidget *parent, bool withFailures = false);
};
