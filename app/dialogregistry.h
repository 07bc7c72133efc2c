#pragma once
#include "hostcontext.h"

#include <QList>
#include <QString>

#include <functional>

class QWidget;

// One module function the host offers: a menu entry that opens its dialog on
// the project, and a tour step.
//
// A dialog's owner registers it from a source file in app/ (linked into the
// host as an object library, so a file-level registration is never dropped):
//
//   #include "dialogregistry.h"
//   #include <pricecheck/tqdtjyjc.h>
//   namespace {
//   QWidget *openPriceCheck(HostContext &host)
//   {
//       TQdtjyjc dialog(host.window);
//       ... setters, connect the result signal to the host's reaction ...
//       dialog.ShowModal();          // modal runs go through ModalRun::exec
//       return nullptr;               // or a shown non-modal window
//   }
//   }
//   VELORA_REGISTER_DIALOG(pricecheck, {QStringLiteral("pricecheck"),
//                                       QStringLiteral("清单单价云检查"), openPriceCheck});
//
// The ids of the menu's places are listed in DialogRegistry::plannedEntries();
// registering one of them enables that entry.
struct HostDialogEntry
{
    QString id;
    QString title;
    // Opens the dialog. Returns a non-modal window it left open (the tour
    // grabs and closes it), or nullptr when the dialog ran modally.
    std::function<QWidget *(HostContext &)> open;
    // The tour step, when it needs more than open() (e.g. to show a second
    // page); defaults to open().
    std::function<QWidget *(HostContext &)> tour;
    // Works without the cloud (local data first): opens even while the
    // cloud server cannot be reached.
    bool offline = false;
};

class DialogRegistry
{
public:
    static bool add(const HostDialogEntry &entry);
    // Registered entries, in the order of plannedEntries(), then the others
    // in registration order.
    static QList<HostDialogEntry> entries();
    static const HostDialogEntry *find(const QString &id);
    // The module functions the host menu offers, as (id, title).
    static QList<QPair<QString, QString>> plannedEntries();
};

#define VELORA_REGISTER_DIALOG(name, ...) \
    static const bool velora_registered_##name = DialogRegistry::add(HostDialogEntry __VA_ARGS__)
