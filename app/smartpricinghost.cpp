#include "smartpricinghost.h"
#include "batchpricing.h"
#include "batchpricingrun.h"
#include "batchpricingsummary.h"
#include "compositionwriter.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "pricecheckhost.h"
#include "projectdocument.h"

#include <smartpricing/tznyzj.h>
#include <cloud/cloudsources.h>
#include <smartpricing/veldqqdznzj.h>

#include <hostapi/basedataitem.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/jsmsbusiness.h>
#include <hostapi/messagebox.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/ztabcontent.h>

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProgressDialog>
#include <QUndoStack>

#include <memory>

namespace {
const char kSource[] = "velora-host";

struct SetupChoice
{
    bool chosen = false;
    LtdInfo server;
    bool skipPriced = true;
    int gcType = 0;
    QStringList projectIds;
};

SetupChoice runSetup(HostContext &host, bool tour)
{
    SetupChoice choice;
    TZnyzj dialog(host.window);
    SmartPricingHost::prepareSetup(dialog, host);
    QObject::connect(&dialog, &TZnyzj::signalQdButtonClicked, &dialog,
                     [&choice](LtdInfo server, bool skip, int gcType, QStringList ids) {
                         choice = {true, server, skip, gcType, ids};
                     });
    dialog.ShowModal();
    if (tour && dialog.getCurrServer()) {
        // The tour goes on as 确定 would, without priced bills skipped.
        choice = {true, *dialog.getCurrServer(), false, dialog.sources()->mode() ? dialog.sources()->mode() : 3,
                  dialog.sources()->projectIds()};
    }
    return choice;
}

// The match requests, a slice at a time with the event loop running between
// slices: thousands of bills would keep the window from painting.
QList<QJsonObject> requestsInSlices(const BatchPricing &pricing)
{
    const int slice = 200;
    QList<QJsonObject> requests;
    for (int first = 0;; first += slice) {
        const QList<QJsonObject> part = pricing.requests(first, slice);
        requests += part;
        if (part.size() < slice)
            return requests;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

// The applied rows' bills with their matches as the run read them: the
// requested rows (all but the skipped ones) took the replies in order.
QList<CompositionWriter::Choice> preparedChoices(const BatchPricing &pricing,
                                                 const QList<CompositionWriter::Values> &best)
{
    QList<CompositionWriter::Choice> choices;
    int next = 0;
    for (const BatchPricing::Row &row : pricing.rows()) {
        if (row.outcome == BatchPricing::Skipped)
            continue;
        const CompositionWriter::Values values = best.value(next++);
        if (row.outcome == BatchPricing::Applied)
            choices.append(qMakePair(row.bill, values));
    }
    return choices;
}

bool waitForMatches(BatchPricingRun &run, HostContext &host, int total)
{
    QEventLoop loop;
    bool finished = false;
    QObject::connect(&run, &BatchPricingRun::finished, &loop, [&] { finished = true; loop.quit(); });
    QObject::connect(&run, &BatchPricingRun::cancelled, &loop, &QEventLoop::quit);
    // The tour's pictures stay the same from run to run without it.
    std::unique_ptr<QProgressDialog> progress;
    if (!host.tour) {
        progress = std::make_unique<QProgressDialog>(QStringLiteral("正在匹配清单组价…"), QStringLiteral("取消"), 0,
                                                     total, host.window);
        progress->setWindowTitle(QStringLiteral("智能云组价"));
        progress->setWindowModality(Qt::WindowModal);
        progress->setMinimumDuration(0);
        progress->setAutoReset(false);
        QProgressDialog *bar = progress.get();
        QObject::connect(&run, &BatchPricingRun::progress, bar, [bar](int done, int) { bar->setValue(done); });
        QObject::connect(bar, &QProgressDialog::canceled, &run, &BatchPricingRun::cancel);
        bar->show();
    }
    loop.exec();
    return finished;
}
}

QWidget *SmartPricingHost::openBatch(HostContext &host)
{
    GUARDED(kSource, [&] {
        const SetupChoice choice = runSetup(host, false);
        if (choice.chosen)
            runBatch(host, choice.server, choice.skipPriced, choice.gcType, choice.projectIds);
    });
    return nullptr;
}

QWidget *SmartPricingHost::tourBatch(HostContext &host)
{
    const SetupChoice choice = runSetup(host, true);
    if (choice.chosen && runBatch(host, choice.server, choice.skipPriced, choice.gcType, choice.projectIds)) {
        // The window repaints before the undo, as between two user actions.
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        RURecordControl::undoStack()->undo();
    }
    return nullptr;
}

void SmartPricingHost::prepareSetup(TZnyzj &dialog, HostContext &host)
{
    dialog.setCurrJjb(host.currentTable);
    dialog.setUnitWork(host.project ? host.project->unitWork() : nullptr);
    dialog.setSjkm(host.sjkm());
    dialog.CreateUI();
    dialog.setLblDqjjb(host.scopeLabel());
}

bool SmartPricingHost::runBatch(HostContext &host, const LtdInfo &server, bool skipPriced, int gcType,
                                const QStringList &projectIds)
{
    if (!host.project)
        return false;
    ProjectDocument *project = host.project;
    TQDNodeInfo attributes;
    JsMsBusiness::GetQDSaveAttr(project->unitWork(), host.currentTable, attributes);
    BatchPricing pricing(server, skipPriced, gcType, projectIds, attributes);
    pricing.plan(project->allBills(), [project](BaseDataItem *bill) { return project->tableOf(bill); });
    const QList<QJsonObject> requests = requestsInSlices(pricing);
    BatchPricingRun run;
    run.start(requests);
    if (!waitForMatches(run, host, requests.size())) {
        showMessageBox(QStringLiteral("已取消智能云组价，工程未作修改"), host.window);
        return false;
    }
    const QString refusal = pricing.takeReplies(run.takeReplies());
    if (!refusal.isEmpty())
        showMessageBox(refusal, host.window);
    // Thousands of bills are written in slices with the loop running between
    // them, and the window repaints before the summary is built.
    CompositionWriter writer(*project);
    writer.setSlices(400, [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); });
    const int applied = writer.applyAll(preparedChoices(pricing, run.takeBest()), false);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    BatchPricingSummary summary(host.window);
    summary.setResult(pricing);
    HostContext *context = &host;
    QObject::connect(&summary, &BatchPricingSummary::signalOpenBill, &summary,
                     [context](BaseDataItem *bill) { context->setCurrentBill(bill); });
    summary.ShowModal();
    return applied > 0;
}

QWidget *SmartPricingHost::openCurrent(HostContext &host)
{
    GUARDED(kSource, [&] {
        if (!host.currentBill)
            return;
        VelDqqdznzj dialog(host.window);
        prepareBrowser(dialog, host);
        dialog.ShowModal();
    });
    return nullptr;
}

QWidget *SmartPricingHost::tourCurrent(HostContext &host)
{
    VelDqqdznzj dialog(host.window);
    prepareBrowser(dialog, host);
    QElapsedTimer timer;
    timer.start();
    while (dialog.isLoading() && timer.elapsed() < 10000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    dialog.ShowModal();
    dialog.detailTabs()->setCurrentIndex(1);
    dialog.ShowModal();
    return nullptr;
}

void SmartPricingHost::prepareBrowser(VelDqqdznzj &dialog, HostContext &host)
{
    dialog.setCurrJjb(host.currentTable);
    dialog.setUnitWork(host.project ? host.project->unitWork() : nullptr);
    dialog.setSjkm(host.sjkm());
    dialog.CreateUI();
    VelDqqdznzj *d = &dialog;
    HostContext *context = &host;
    QObject::connect(d, &VelDqqdznzj::signalZjChecked, d, [context](QJsonObject &bill, bool replace) {
        if (context->project && context->currentBill)
            CompositionWriter(*context->project).applyOne(context->currentBill, bill, replace);
    });
    QObject::connect(d, &VelDqqdznzj::signalPreviousPage, d,
                     [d, context](bool skip) { step(*d, *context, false, skip); });
    QObject::connect(d, &VelDqqdznzj::signalNextPage, d, [d, context](bool skip) { step(*d, *context, true, skip); });
    QObject::connect(d, &VelDqqdznzj::signalYxysChanged, d, [context](const QString &sj, const QString &dd) {
        PriceCheckHost::writeYxys(*context, sj, dd);
    });
    dialog.setCurrQd(host.currentBill);
}

void SmartPricingHost::step(VelDqqdznzj &dialog, HostContext &host, bool forward, bool skipPriced)
{
    GUARDED(kSource, [&] {
        BaseDataItem *next = host.project ? host.project->neighbourBill(host.currentBill, forward, skipPriced) : nullptr;
        if (!next) {
            showMessageBox(forward ? QStringLiteral("已是最后一条清单") : QStringLiteral("已是第一条清单"), &dialog);
            return;
        }
        host.setCurrentBill(next);
        dialog.setCurrJjb(host.currentTable);
        dialog.setSjkm(host.sjkm());
        dialog.setCurrQd(next);
    });
}

VELORA_REGISTER_DIALOG(batchpricing, {QStringLiteral("batchpricing"), QStringLiteral("智能云组价"),
                                      SmartPricingHost::openBatch, SmartPricingHost::tourBatch});
VELORA_REGISTER_DIALOG(currentpricing, {QStringLiteral("currentpricing"), QStringLiteral("当前清单智能组价"),
                                        SmartPricingHost::openCurrent, SmartPricingHost::tourCurrent});
