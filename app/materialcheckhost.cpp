#include "materialcheckhost.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "materialtablemodel.h"
#include "pricecheckhost.h"
#include "projectdocument.h"

#include <cloud/cloudexchange.h>
#include <cloud/cloudrequest.h>
#include <materials/cloudcldialog.h>
#include <materials/materialcheckrules.h>
#include <materials/tcjyjc.h>
#include <materials/velcjyjc_checkresult.h>

#include <hostapi/exceptionguard.h>
#include <hostapi/generaltablebase.h>
#include <hostapi/gljbean.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QJsonArray>

namespace {
const char kSource[] = "velora-host";

QList<GljBean *> projectMaterials(HostContext &host)
{
    return host.materials ? host.materials->materials() : QList<GljBean *>();
}
}

QWidget *MaterialCheckHost::open(HostContext &host)
{
    Choice choice;
    {
        TCjyjc dialog(host.window);
        prepare(dialog, host, choice);
        dialog.ShowModal();
    }
    if (choice.chosen)
        run(host, choice);
    return nullptr;
}

QWidget *MaterialCheckHost::tour(HostContext &host)
{
    Choice choice;
    {
        TCjyjc dialog(host.window);
        prepare(dialog, host, choice);
        dialog.ShowModal();
        dialog.Modify();
        dialog.libraryView()->selectRowAt(0);
        dialog.QdButton();
    }
    {
        CloudCLDialog sample(host.window);
        sample.ShowModal();
    }
    if (choice.chosen)
        run(host, choice, true);
    return nullptr;
}

void MaterialCheckHost::prepare(TCjyjc &dialog, HostContext &host, Choice &choice)
{
    dialog.CreateUI();
    const ProjectSettingsInfo settings = ProjectSettingHelper::GetProjectSettingsInfo();
    dialog.setLblSjsz(settings.time);
    dialog.setLblDdsz(settings.place);
    dialog.setLblHbsz(settings.taxMode);
    dialog.setLblDqjjb(host.scopeLabel());
    dialog.setClCount(projectMaterials(host).size());
    HostContext *context = &host;
    QObject::connect(&dialog, &TCjyjc::signalYxysChanged, &dialog,
                     [context](const QString &time, const QString &place) {
                         PriceCheckHost::writeYxys(*context, time, place);
                     });
    TCjyjc *setup = &dialog;
    QObject::connect(&dialog, &TCjyjc::signalCheckData, &dialog,
                     [setup, &choice](LtdInfo *server, QString &id, CloudParams &params, QString &name) {
                         choice.server = server;
                         choice.libraryId = id;
                         choice.libraryName = name;
                         choice.params = params;
                         choice.params.setTime(setup->timeText());
                         choice.params.setPlace(setup->placeText());
                         choice.chosen = true;
                     });
}

std::optional<QList<CloudCjyjcBean>> MaterialCheckHost::fetchRecords(const Choice &choice,
                                                                     const QList<GljBean *> &materials,
                                                                     QWidget *parent)
{
    QJsonArray list;
    for (const GljBean *m : materials)
        list.append(QJsonObject{{QStringLiteral("guid"), m->GetGuid()}, {QStringLiteral("clmc"), m->GetClmc()},
                                {QStringLiteral("ggxh"), m->GetGgxh()}, {QStringLiteral("dw"), m->GetDw()}});
    const CloudRequest request = CloudRequest(choice.server, QStringLiteral("getmaterialcheckrecords"))
                                     .withTierFields()
                                     .set(QStringLiteral("params"), choice.params.toJson())
                                     .set(QStringLiteral("sjksyid"), choice.libraryId)
                                     .set(QStringLiteral("materials"), list);
    const auto reply = CloudExchange(GuardSite(kSource, parent)).call(request);
    if (!reply)
        return std::nullopt;
    QList<CloudCjyjcBean> records;
    for (const QJsonValue &record : reply->dataArray())
        records << CloudCjyjcBean::fromJson(record.toObject());
    return records;
}

void MaterialCheckHost::run(HostContext &host, const Choice &choice, bool tour)
{
    GUARDED(kSource, [&] {
        QList<GljBean *> materials = projectMaterials(host);
        std::optional<QList<CloudCjyjcBean>> records = fetchRecords(choice, materials, host.window);
        if (!records)
            return;
        QList<CloudCjyjcBean> results;
        GeneralTableBase *table = host.project ? host.project->materialTable() : nullptr;
        VelCjyjc_CheckResult dialog(choice.params.getTaxBasis() != 0, *records, results, table, host.window);
        dialog.setGljBean(materials, true);
        ProjectDocument *project = host.project;
        QObject::connect(&dialog, &VelCjyjc_CheckResult::signalGbButtonClicked, &dialog,
                         [project](QList<CloudCjyjcBean> &chosen) {
                             if (project)
                                 project->applyMaterialPrices(chosen);
                         });
        if (tour) {
            // A reviewer sees a ticked row and its details.
            for (int row = 0; row < results.size(); ++row)
                if (results.at(row).getYdj() != MaterialCheckRules::NoCloudPrice) {
                    const QModelIndex cell = dialog.model()->index(row, dialog.model()->columnOf(QStringLiteral("xy")));
                    dialog.model()->setCheckState(cell, Qt::Checked);
                    dialog.slotClCheckBoxClicked(cell, Qt::Checked);
                    dialog.ShowModal();
                    dialog.slotLinkClicked(cell);
                    break;
                }
        } else {
            dialog.ShowModal();
        }
        if (host.materials)
            host.materials->setCheckResults(results);
    });
}

VELORA_REGISTER_DIALOG(materialcheck, {QStringLiteral("materialcheck"), QStringLiteral("材价云检查"),
                                       MaterialCheckHost::open, MaterialCheckHost::tour, false});
