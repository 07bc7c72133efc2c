#pragma once
#include "billupload.h"

#include <QList>
#include <QString>

class BaseDataItem;
class HostContext;
class QWidget;
class TTotalYcc;

// The host's side of bill cloud storage: the storage wizard and the feature
// and scheme storage dialogs, and the upload of the project's bills.
class BillStorageHost
{
public:
    static QWidget *openBills(HostContext &host);
    static QWidget *tourBills(HostContext &host);
    static QWidget *openFeatures(HostContext &host);
    static QWidget *tourFeatures(HostContext &host);
    static QWidget *openSchemes(HostContext &host);

    // The bills the wizard saves: every bill of the project.
    static QList<BaseDataItem *> billsToSave(const HostContext &host);
    // Builds the wizard for `bills` and connects its result to the upload.
    static void prepare(TTotalYcc &dialog, HostContext &host, const QList<BaseDataItem *> &bills);
    // Uploads into the task the wizard opened, marks refused bills (one undo
    // step) and tells the user how many were saved.
    static BillUpload::Result upload(HostContext &host, const BillUpload::Task &task,
                                     const QList<BaseDataItem *> &bills, const QString &markColor);
    // Marks `bills` in `color` as one undo step.
    static void markFailed(HostContext &host, const QList<BaseDataItem *> &bills, const QString &color);
    // Stores the features (content 2) or schemes (content 0) of `bills` in
    // the personal (0) or enterprise (1) cloud.
    static BillUpload::Result storeInTier(HostContext &host, const QList<BaseDataItem *> &bills, int target,
                                          int content, const QString &libraryName);

private:
    static void summarize(HostContext &host, const BillUpload::Result &result, bool marked);
};
