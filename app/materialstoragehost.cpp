#include "materialstoragehost.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "materialtablemodel.h"

#include <cloud/cloudexchange.h>
#include <cloud/cloudrequest.h>
#include <materials/cloudclsavedialog_fail.h>
#include <materials/cloudclsavedialogm.h>
#include <materials/materialpricetables.h>
#include <materials/materialsaverules.h>
#include <materials/prompt.h>
#include <materials/tcloudclsavedialog_xjbc.h>

#include <hostapi/asiderun.h>
#include <hostapi/childdialog.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/exdbm.h>
#include <hostapi/gljbean.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/ztableview.h>

#include <QItemSelectionModel>
#include <QJsonArray>
#include <QPointer>

namespace {
const char kSource[] = "velora-host";

// A new application folder creates the local price tables first: on a pool
// thread, as each CREATE waits for the disk while the windows keep painting.
void createTablesAside()
{
    try {
        if (MaterialPriceTables::hasTables())
            return;
    } catch (const DBM::exDBM &) {
        return; // the dialog's own creation reports it
    }
    AsideRun::wait([] { MaterialPriceTables::ensureTables(); });
}

QJsonArray materialsJson(const QList<GljBean *> &materials)
{
    QJsonArray out;
    for (const GljBean *m : materials)
        out.append(QJsonObject{{QStringLiteral("guid"), m->GetGuid()}, {QStringLiteral("bh"), m->GetBh()},
                               {QStringLiteral("clmc"), m->GetClmc()}, {QStringLiteral("ggxh"), m->GetGgxh()},
                               {QStringLiteral("dw"), m->GetDw()}, {QStringLiteral("cd"), m->GetCd()},
                               {QStringLiteral("cj"), m->GetCj()}, {QStringLiteral("tj"), m->GetTj()}});
    return out;
}
}

QWidget *MaterialStorageHost::open(HostContext &host)
{
    createTablesAside();
    CloudCLSaveDialogm dialog(taxArgument(), host.window);
    prepare(dialog, host, scope(host));
    dialog.ShowModal();
    return nullptr;
}

QWidget *MaterialStorageHost::tour(HostContext &host)
{
    const QList<GljBean *> all = scope(host);
    createTablesAside();
    {
        CloudCLSaveDialogm single(taxArgument(), host.window);
        prepare(single, host, all.mid(0, 1));
        single.ShowModal();
        QMetaObject::invokeMethod(&single, "NewTable");
    }
    CloudCLSaveDialogm dialog(taxArgument(), host.window);
    prepare(dialog, host, all);
    QMetaObject::invokeMethod(&dialog, "Cloud");
    dialog.cloudList()->selectRowAt(0);
    dialog.ShowModal();
    // The outcome as the host would report it, without writing to the cloud.
    const Outcome outcome = split(all);
    QList<CloudCjyjcBean> records;
    for (const GljBean *m : outcome.failed) {
        CloudCjyjcBean r;
        r.setGuid(m->GetGuid());
        r.setClmc(m->GetClmc());
        r.setGgxh(m->GetGgxh());
        r.setDw(m->GetDw());
        records << r;
    }
    showOutcome(outcome, host.window, true);
    CloudCLSaveDialog_fail failures(records, host.window);
    failures.ShowModal();
    return nullptr;
}

QList<GljBean *> MaterialStorageHost::scope(HostContext &host)
{
    const QList<GljBean *> selected = host.selectedMaterials();
    if (!selected.isEmpty() || !host.materials)
        return selected;
    return host.materials->materials();
}

int MaterialStorageHost::taxArgument()
{
    return ProjectSettingHelper::GetProjectSettingsInfo().taxMode.contains(QStringLiteral("一般计税")) ? 1 : 0;
}

void MaterialStorageHost::prepare(CloudCLSaveDialogm &dialog, HostContext &host, const QList<GljBean *> &materials)
{
    const bool whole = host.selectedMaterials().isEmpty();
    if (materials.size() == 1) {
        dialog.StoreData(materials.first());
        dialog.SomeData(1, materials.first()->GetClmc());
    } else {
        dialog.singleMaterial = whole;
        dialog.singleDykMaterial = !whole;
        dialog.SomeData(materials.size(), whole ? QStringLiteral("人材机汇总") : QStringLiteral("所选材料"));
    }
    QPointer<CloudCLSaveDialogm> owner(&dialog);
    auto local = [materials, owner](const QString &id, const QString &lyid) {
        GUARDED(kSource, [&] { showOutcome(saveLocally(materials, id, lyid), owner); });
    };
    QObject::connect(&dialog, &CloudCLSaveDialogm::MultipleData, &dialog, local);
    QObject::connect(&dialog, &CloudCLSaveDialogm::DykMultipleData, &dialog, local);
    QObject::connect(&dialog, &CloudCLSaveDialogm::signalCheckData, &dialog,
                     [materials, owner](LtdInfo *server, QString &libraryId) {
                         GUARDED(kSource, [&] {
                             Outcome outcome;
                             if (saveToCloud(materials, server, libraryId, owner, outcome))
                                 showOutcome(outcome, owner);
                         });
                     });
}

MaterialStorageHost::Outcome MaterialStorageHost::saveLocally(const QList<GljBean *> &materials,
                                                              const QString &tableId, const QString &lyid)
{
    Outcome outcome;
    outcome.total = materials.size();
    MaterialPriceTables::TableRef table;
    table.id = tableId;
    table.lyid = lyid;
    for (GljBean *m : materials) {
        if (!MaterialSaveRules::storable(*m)) {
            outcome.failed << m;
            continue;
        }
        int matches = 0;
        MaterialPriceTables::saveMaterial(table, *m, matches);
        ++outcome.saved;
    }
    return outcome;
}

bool MaterialStorageHost::saveToCloud(const QList<GljBean *> &materials, LtdInfo *server, const QString &libraryId,
                                      QWidget *parent, Outcome &outcome)
{
    outcome = split(materials);
    QList<GljBean *> sent;
    for (GljBean *m : materials)
        if (MaterialSaveRules::storable(*m))
            sent << m;
    const ProjectSettingsInfo settings = ProjectSettingHelper::GetProjectSettingsInfo();
    CloudRequest request = CloudRequest(server, QStringLiteral("savematerialprices"))
                               .withTierFields()
                               .set(QStringLiteral("sjksyid"), libraryId)
                               .set(QStringLiteral("materials"), materialsJson(sent))
                               .set(QStringLiteral("hsbz"), taxArgument() < 1 ? 1 : 0)
                               .set(QStringLiteral("sj"), settings.time)
                               .set(QStringLiteral("dd"), settings.place);
    const auto reply = CloudExchange(GuardSite(kSource, parent)).call(request);
    if (!reply)
        return false;
    outcome.saved = reply->dataObject().value(QStringLiteral("saved")).toInt();
    for (const QJsonValue &guid : reply->dataObject().value(QStringLiteral("failed")).toArray())
        for (GljBean *m : qAsConst(sent))
            if (m->GetGuid() == guid.toVariant().toInt())
                outcome.failed << m;
    return true;
}

MaterialStorageHost::Outcome MaterialStorageHost::split(const QList<GljBean *> &materials)
{
    Outcome outcome;
    outcome.total = materials.size();
    for (GljBean *m : materials)
        if (MaterialSaveRules::storable(*m))
            ++outcome.saved;
        else
            outcome.failed << m;
    return outcome;
}

void MaterialStorageHost::showOutcome(const Outcome &outcome, QWidget *parent, bool withFailures)
{
    QStringList codes;
    QStringList names;
    for (const GljBean *m : outcome.failed) {
        codes << m->GetBh();
        names << m->GetClmc() + QLatin1Char(' ') + m->GetGgxh();
    }
    auto *prompt = new Prompt(parent);
    prompt->GljPrompt(QString::number(outcome.total), QString::number(outcome.saved), codes, names);
    ChildDialog::run(parent, prompt, [prompt, withFailures](int) {
        if (withFailures)
            prompt->showFailed();
    });
}

VELORA_REGISTER_DIALOG(materialstorage, {QStringLiteral("materialstorage"), QStringLiteral("材料价格存储"),
                                         MaterialStorageHost::open, MaterialStorageHost::tour, true});
