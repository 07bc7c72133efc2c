#include "featureshost.h"
#include "customfeaturedialog.h"
#include "customfeaturelines.h"
#include "dialogregistry.h"
#include "featurelibraryseeder.h"
#include "hostcontext.h"
#include "projectdocument.h"
#include "projectfeaturefill.h"

#include <features/featurestore.h>
#include <features/gqdxmtzmszn.h>
#include <features/txmytz.h>

#include <hostapi/asiderun.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/exdbm.h>
#include <hostapi/hostlog.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/messagebox.h>

#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>
#include <QEventLoop>
#include <QLabel>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTimer>

#include <algorithm>

namespace {
QPointer<Gqdxmtzmszn> s_guide;
// Set while the guide itself moves to a neighbouring bill, so that the
// host's selection change does not load the bill a second time.
bool s_moving = false;

// The first use builds the library files and the user's custom tables (each
// CREATE waits for the disk): on a pool thread, while the GUI thread's loop
// keeps the windows painting. Later opens find them and need no thread.
void installLocalData()
{
    const QStringList names = FeatureStore::libraryNames();
    const bool libraries = std::all_of(names.cbegin(), names.cend(), [](const QString &name) {
        return QFile::exists(FeatureStore::libraryPath(name));
    });
    bool tables = false;
    try {
        tables = FeatureStore::hasCustomTables();
    } catch (const DBM::exDBM &) {
        // created below; a failure is the guide's own to report
    }
    if (libraries && tables)
        return;
    QString error;
    AsideRun::wait([&error] {
        FeatureLibrarySeeder::ensure(&error);
        FeatureStore::ensureTables();
    });
    if (!error.isEmpty())
        HostLog::write(QStringLiteral("featureguide:"), error);
}

void showBill(Gqdxmtzmszn *guide, HostContext &host, BaseDataItem *bill)
{
    guide->setCurrJjb(host.project ? host.project->tableOf(bill) : host.currentTable);
    guide->setSjkm(host.sjkm());
    guide->setCurrQd(bill);
}

Gqdxmtzmszn *createGuide(HostContext &host)
{
    installLocalData();
    auto *guide = new Gqdxmtzmszn(host.window);
    HostContext *context = &host;
    guide->setUnitWork(host.project ? host.project->unitWork() : nullptr);
    QObject::connect(guide, &Gqdxmtzmszn::Uptext, guide, [context, guide](const QString &text) {
        if (context->project)
            context->project->applyFeatureText(guide->currentItem(), text);
    });
    QObject::connect(guide, &Gqdxmtzmszn::TheCurrentListing, guide,
                     [context, guide](BaseDataItem *&item, const bool forward, bool &found) {
                         const bool skipPriced = guide->skipPricedBox()->isChecked();
                         BaseDataItem *next =
                             context->project ? context->project->neighbourBill(item, forward, skipPriced) : nullptr;
                         found = next != nullptr;
                         if (!next)
                             return;
                         item = next;
                         s_moving = true;
                         context->setCurrentBill(next);
                         s_moving = false;
                         guide->setCurrJjb(context->currentTable);
                         guide->setSjkm(context->sjkm());
                     });
    showBill(guide, host, host.currentBill);
    return guide;
}

// Waits for the guide's reply signal, at most a few seconds (the tour).
template <typename Signal>
void waitFor(Gqdxmtzmszn *guide, Signal signal)
{
    QEventLoop loop;
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);
    QObject::connect(guide, signal, &loop, &QEventLoop::quit);
    loop.exec();
}

QWidget *openProjectFeaturesDialog(HostContext &host)
{
    TXmytz dialog(host.window);
    dialog.setCurrJjb(host.currentTable);
    dialog.setUnitWork(host.project ? host.project->unitWork() : nullptr);
    dialog.SetSjkm(host.sjkm());
    dialog.setLblDqjjb(host.scopeLabel());
    HostContext *context = &host;
    QObject::connect(&dialog, &TXmytz::signalQdButtonClicked, &dialog,
                     [context](LtdInfo *server, bool skip, int mask, const QStringList &ids) {
                         FeaturesHost::fillFeatures(*context, server, skip, mask, ids);
                     });
    dialog.ShowModal();
    return nullptr;
}
}

QWidget *FeaturesHost::openGuide(HostContext &host)
{
    if (!s_guide) {
        s_guide = createGuide(host);
        s_guide->setAttribute(Qt::WA_DeleteOnClose);
        host.onBillFollowed = [context = &host](BaseDataItem *bill) {
            if (s_guide && !s_moving && bill != s_guide->currentItem())
                showBill(s_guide, *context, bill);
        };
    } else {
        showBill(s_guide, host, host.currentBill);
    }
    s_guide->show();
    s_guide->raise();
    return s_guide;
}

QWidget *FeaturesHost::tourGuide(HostContext &host)
{
    Gqdxmtzmszn *guide = createGuide(host);
    guide->localGrid()->setCurrentCell(1, 0);
    guide->ShowModal();
    guide->GfButton();
    guide->cloudRadio()->setChecked(true);
    if (guide->getCurrServer())
        waitFor(guide, &Gqdxmtzmszn::signalUpdataTzData);
    if (guide->cloudGrid()->findChild<QLabel *>(QStringLiteral("lblSource"))) {
        guide->requestProjectInfo(0, 0);
        waitFor(guide, &Gqdxmtzmszn::signalUpdataGcslData);
    }
    guide->show();
    // Column widths settle once the window is laid out.
    QCoreApplication::processEvents();
    return guide;
}

QWidget *FeaturesHost::openProjectFeatures(HostContext &host)
{
    return openProjectFeaturesDialog(host);
}

QWidget *FeaturesHost::openCustomLine(HostContext &host)
{
    BaseDataItem *bill = host.currentBill;
    if (CustomFeatureLines::tableOf(bill).isEmpty()) {
        showMessageBox(QStringLiteral("当前清单不属于清单规范库，不能新增自编特征描述"), host.window);
        return nullptr;
    }
    installLocalData();
    CustomFeatureDialog dialog(bill, host.window);
    if (dialog.ShowModal() != QDialog::Accepted)
        return nullptr;
    if (!CustomFeatureLines::add(bill, dialog.text())) {
        showMessageBox(QStringLiteral("自编特征描述不能为空"), host.window);
        return nullptr;
    }
    if (s_guide && s_guide->currentItem() == bill)
        s_guide->setXmbhmc(bill);
    return nullptr;
}

void FeaturesHost::fillFeatures(HostContext &host, LtdInfo *server, bool skipPriced, int sourceMask,
                                const QStringList &projectIds)
{
    if (!host.project)
        return;
    const QList<BaseDataItem *> bills =
        host.currentTable ? host.currentTable->rootItem()->bills() : host.project->allBills();
    QProgressDialog progress(QStringLiteral("正在匹配项目云特征…"), QStringLiteral("取消"), 0, bills.size(),
                             host.window);
    progress.setWindowTitle(QStringLiteral("项目云特征"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(300);
    ProjectFeatureFill fill(host.project, server, sourceMask, projectIds);
    const ProjectFeatureFill::Summary summary = fill.run(bills, skipPriced, [&progress](int done, int) {
        progress.setValue(done);
        return !progress.wasCanceled();
    });
    progress.close();
    showMessageBox(ProjectFeatureFill::summaryText(summary), host.window);
}

VELORA_REGISTER_DIALOG(featureguide, {QStringLiteral("featureguide"), QStringLiteral("项目特征描述指南"),
                                      FeaturesHost::openGuide, FeaturesHost::tourGuide, true});
VELORA_REGISTER_DIALOG(projectfeatures, {QStringLiteral("projectfeatures"), QStringLiteral("项目云特征"),
                                         FeaturesHost::openProjectFeatures, FeaturesHost::openProjectFeatures});
VELORA_REGISTER_DIALOG(customfeature, {QStringLiteral("customfeature"), QStringLiteral("新增自编特征描述"),
                                       FeaturesHost::openCustomLine, FeaturesHost::openCustomLine, true});
