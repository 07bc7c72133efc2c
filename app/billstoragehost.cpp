#include "billstoragehost.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "projectdocument.h"
#include "tierbillstorage.h"

#include <storage/cloudstorage.h>
#include <storage/tbzqdycc.h>
#include <storage/tbzqdycc_xjqdk.h>
#include <storage/ttotalycc.h>
#include <storage/yccxmtzycc.h>
#include <storage/ycczjfaycc.h>

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/messagebox.h>
#include <hostapi/modalrun.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <QCoreApplication>
#include <QProgressDialog>

namespace {
const char kHost[] = "velora-host";

LtdInfo *tierServer(int target)
{
    QList<LtdInfo *> servers;
    CloudBusiness::requestServerList(servers, QString());
    for (LtdInfo *server : servers) {
        const bool personal = server->getToken() == KvTokenUser;
        const bool enterprise = server->kind() == QLatin1String("pri");
        if ((target == 0 ? personal : enterprise) && server->getServerLogin())
            return server;
    }
    return nullptr;
}
}

// Rows the user picked (more than the current row alone), else the project.
QList<BaseDataItem *> BillStorageHost::billsToSave(const HostContext &host)
{
    const QList<BaseDataItem *> selected = host.selectedBills();
    if (selected.size() > 1)
        return selected;
    return host.project ? host.project->allBills() : QList<BaseDataItem *>();
}

QWidget *BillStorageHost::openBills(HostContext &host)
{
    const QList<BaseDataItem *> bills = billsToSave(host);
    TTotalYcc dialog(host.window);
    prepare(dialog, host, bills);
    dialog.ShowModal();
    return nullptr;
}

QWidget *BillStorageHost::tourBills(HostContext &host)
{
    TTotalYcc dialog(host.window);
    prepare(dialog, host, billsToSave(host));
    dialog.ShowModal();
    TBzqdycc_Xjqdk library(nullptr, host.window);
    library.ShowModal();
    // The chapter page as it opens on a library without chapters.
    dialog.Switchover(1);
    dialog.ShowModal();
    return nullptr;
}

void BillStorageHost::prepare(TTotalYcc &dialog, HostContext &host, const QList<BaseDataItem *> &bills)
{
    dialog.CreateUI();
    dialog.setQdcount(bills.size());
    dialog.UpText(QStringLiteral("当前项目"));
    HostContext *context = &host;
    TTotalYcc *wizard = &dialog;
    QObject::connect(&dialog, &TTotalYcc::signalCheckQdData, &dialog,
                     [context, wizard, bills](LtdInfo *server, const QString &taskId, const QString &chapterId,
                                              int content, const QString &defaultChapterId, bool childChoice,
                                              int chapterLevel, bool) {
                         BillUpload::Task task;
                         task.server = server;
                         task.taskId = taskId;
                         task.chapterId = chapterId;
                         task.defaultChapterId = defaultChapterId;
                         task.content = content;
                         task.childChapters = childChoice;
                         task.chapterLevel = chapterLevel;
                         const QString color = wizard->GetIsQdChecked() ? wizard->GetQdColor() : QString();
                         upload(*context, task, bills, color);
                     });
}

BillUpload::Result BillStorageHost::upload(HostContext &host, const BillUpload::Task &task,
                                           const QList<BaseDataItem *> &bills, const QString &markColor)
{
    return GUARDED(kHost, [&] {
        const BillUpload upload(task, bills);
        std::unique_ptr<QProgressDialog> progress;
        if (upload.batchCount() > 1) {
            progress = std::make_unique<QProgressDialog>(QStringLiteral("正在上传清单…"), QString(), 0,
                                                         upload.batchCount(), host.window);
            progress->setWindowModality(Qt::WindowModal);
            progress->setMinimumDuration(0);
            progress->setValue(0);
        }
        const BillUpload::Result result = upload.run([&progress](int done) {
            if (progress)
                progress->setValue(done);
        });
        progress.reset();
        const bool mark = !markColor.isEmpty() && !result.failed.isEmpty();
        if (mark)
            markFailed(host, result.failed, markColor);
        summarize(host, result, mark);
        return result;
    });
}

void BillStorageHost::markFailed(HostContext &host, const QList<BaseDataItem *> &bills, const QString &color)
{
    RURecordControl::BeginRecord(
        TableBaseObject::GetTableRedoUIInfo(host.currentTable, 0, QStringLiteral("标记上传不成功清单")));
    for (BaseDataItem *bill : bills)
        bill->setData(BaseDataItem::MarkColorRole, color);
    RURecordControl::EndRecord();
}

void BillStorageHost::summarize(HostContext &host, const BillUpload::Result &result, bool marked)
{
    QString text = QStringLiteral("云存储完成，共保存%1条清单。").arg(result.saved);
    if (!result.failed.isEmpty())
        text += QStringLiteral("%1条清单未能保存%2。")
                    .arg(result.failed.size())
                    .arg(marked ? QStringLiteral("，已用标记色标出") : QString());
    if (!result.error.isEmpty())
        text += QStringLiteral("\n") + result.error;
    showMessageBox(text, host.window);
}

BillUpload::Result BillStorageHost::storeInTier(HostContext &host, const QList<BaseDataItem *> &bills, int target,
                                                int content, const QString &libraryName)
{
    return GUARDED(kHost, [&] {
        BillUpload::Result result;
        LtdInfo *server = tierServer(target);
        if (!server) {
            showMessageBox(target == 0 ? QStringLiteral("请先登录个人云") : QStringLiteral("请先登录企业云"), host.window);
            return result;
        }
        result = TierBillStorage(server, libraryName).store(bills, content);
        summarize(host, result, false);
        return result;
    });
}

namespace {
template <typename Dialog>
void runTierDialog(HostContext &host, int content, const QString &library)
{
    const QList<BaseDataItem *> bills = BillStorageHost::billsToSave(host);
    Dialog dialog(host.window);
    dialog.setNum(bills.size());
    int target = -1;
    QObject::connect(&dialog, &Dialog::signalCheckData, &dialog, [&target](int chosen) { target = chosen; });
    dialog.ShowModal();
    if (target >= 0)
        BillStorageHost::storeInTier(host, bills, target, content, library);
}
}

QWidget *BillStorageHost::openFeatures(HostContext &host)
{
    runTierDialog<YccXmtzycc>(host, BillUpload::BillOnly, TierBillStorage::FeatureLibrary);
    return nullptr;
}

QWidget *BillStorageHost::tourFeatures(HostContext &host)
{
    openFeatures(host);
    CloudStorage layout(host.window);
    layout.setNum(billsToSave(host).size());
    ModalRun::exec(&layout);
    return nullptr;
}

QWidget *BillStorageHost::openSchemes(HostContext &host)
{
    runTierDialog<YccZjfaycc>(host, BillUpload::FullComposition, TierBillStorage::SchemeLibrary);
    return nullptr;
}

VELORA_REGISTER_DIALOG(billstorage, {QStringLiteral("billstorage"), QStringLiteral("清单云存储"),
                                     BillStorageHost::openBills, BillStorageHost::tourBills});
VELORA_REGISTER_DIALOG(featurestorage, {QStringLiteral("featurestorage"), QStringLiteral("项目特征存储"),
                                        BillStorageHost::openFeatures, BillStorageHost::tourFeatures});
VELORA_REGISTER_DIALOG(schemestorage, {QStringLiteral("schemestorage"), QStringLiteral("组价方案存储"),
                                       BillStorageHost::openSchemes, {}});
