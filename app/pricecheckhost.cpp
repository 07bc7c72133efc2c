#include "pricecheckhost.h"
#include "dialogregistry.h"
#include "hostcontext.h"
#include "pricecheckbrowserhost.h"

#include <pricecheck/tinitial.h>
#include <pricecheck/tqdtjyjc.h>

#include <hostapi/exceptionguard.h>
#include <hostapi/hostlog.h>
#include <hostapi/jjbtablebase.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/placedictionary.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <QObject>

QWidget *PriceCheckHost::open(HostContext &host)
{
    TQdtjyjc dialog(host.window);
    prepare(dialog, host);
    dialog.ShowModal();
    return nullptr;
}

QWidget *PriceCheckHost::tour(HostContext &host)
{
    TQdtjyjc dialog(host.window);
    prepare(dialog, host);
    dialog.ShowModal();
    if (TInitial *page = dialog.initialPage())
        page->Modify();
    // "下一步" as the user would press it; the guards leave page one up when
    // no server is logged in.
    QMetaObject::invokeMethod(&dialog, "NextStep");
    dialog.ShowModal();
    // The browser the wizard leads to, on the current bill.
    PriceCheckBrowserHost::tour(host, dialog.initialPage() ? dialog.initialPage()->getCurrServer() : nullptr);
    return nullptr;
}

void PriceCheckHost::prepare(TQdtjyjc &dialog, HostContext &host)
{
    dialog.CreateUI();
    const ProjectSettingsInfo settings = ProjectSettingHelper::GetProjectSettingsInfo();
    QString sj = settings.time;
    QString dd = settings.place;
    QString hb = settings.altitude.isEmpty() ? QStringLiteral("<2.0km") : settings.altitude;
    dialog.setSjDdHb(sj, dd, hb);
    dialog.setYyfwText(host.scopeLabel());
    HostContext *context = &host;
    QObject::connect(&dialog, &TQdtjyjc::signalYxysChanged, &dialog,
                     [context](const QString &time, const QString &place) { writeYxys(*context, time, place); });
    QObject::connect(&dialog, &TQdtjyjc::signalQdButtonClicked, &dialog,
                     [context](LtdInfo *server, int matchNum) { startCheck(*context, server, matchNum); });
}

void PriceCheckHost::writeYxys(HostContext &host, const QString &sj, const QString &dd)
{
    GUARDED("velora-host", [&] {
        const ProjectSettingsInfo before = ProjectSettingHelper::GetProjectSettingsInfo();
        ProjectSettingsInfo after = before;
        after.time = sj;
        after.place = dd;
        if (dd != before.place)
            after.placeCode = PlaceDictionary::codeForPath(dd);
        if (after == before)
            return;
        RURecordControl::BeginRecord(
            TableBaseObject::GetTableRedoUIInfo(host.currentTable, 0, QStringLiteral("修改工程设置")));
        ProjectSettingHelper::SetProjectSettingsInfo(after);
        RURecordControl::RecordChange([before] { ProjectSettingHelper::SetProjectSettingsInfo(before); },
                                      [after] { ProjectSettingHelper::SetProjectSettingsInfo(after); });
        RURecordControl::EndRecord();
    });
}

void PriceCheckHost::startCheck(HostContext &host, LtdInfo *server, int matchNum)
{
    HostLog::write(QStringLiteral("pricecheck:"),
                   QStringLiteral("unit-price check on %1, %2 similar bill(s)")
                       .arg(server ? server->getServerName() : QStringLiteral("-"))
                       .arg(matchNum));
    PriceCheckBrowserHost::open(host, server, matchNum);
}

VELORA_REGISTER_DIALOG(pricecheck, {QStringLiteral("pricecheck"), QStringLiteral("清单单价云检查"),
                                    PriceCheckHost::open, PriceCheckHost::tour});
