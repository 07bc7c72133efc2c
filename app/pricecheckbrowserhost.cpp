#include "pricecheckbrowserhost.h"
#include "hostcontext.h"
#include "pricecheckhost.h"
#include "projectdocument.h"

#include <pricecheck/tvelqddjjc.h>
#include <smartpricing/veldqqdznzj_fymodal.h>

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/messagebox.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/ztabcontent.h>

#include <QObject>

namespace {
const char kSource[] = "velora-host";
}

void PriceCheckBrowserHost::open(HostContext &host, LtdInfo *server, int matchNum)
{
    GUARDED(kSource, [&] {
        if (!host.currentBill)
            return;
        TVelQddjjc dialog(host.window);
        prepare(dialog, host, matchNum);
        answer(dialog, host, dialog.getCurrServer() ? dialog.getCurrServer() : server, matchNum);
        dialog.ShowModal();
    });
}

void PriceCheckBrowserHost::tour(HostContext &host, LtdInfo *server)
{
    TVelQddjjc dialog(host.window);
    prepare(dialog, host, 3);
    answer(dialog, host, dialog.getCurrServer() ? dialog.getCurrServer() : server, 3);
    dialog.ShowModal();
    dialog.detailTabs()->setCurrentIndex(1);
    dialog.ShowModal();
    VelDqqDznzj_fymodal fees(host.window);
    fees.CreateUI();
    for (const CloudZjBean &bill : dialog.cloudBills().mid(0, 1)) {
        for (const cloudZjnr &line : bill.getZjnrlist()) {
            if (!line.getFymblist().isEmpty()) {
                fees.setFymbList(line.getFymblist());
                break;
            }
        }
    }
    fees.ShowModal();
}

void PriceCheckBrowserHost::prepare(TVelQddjjc &dialog, HostContext &host, int matchNum)
{
    dialog.CreateUI();
    dialog.setMatchNum(matchNum);
    showBill(dialog, host.currentBill);
    TVelQddjjc *d = &dialog;
    HostContext *context = &host;
    QObject::connect(d, &TVelQddjjc::signalGetQjyData, d,
                     [d, context](LtdInfo *server, int &count) { answer(*d, *context, server, count); });
    QObject::connect(d, &TVelQddjjc::signalPreviousPage, d, [d, context] { step(*d, *context, false); });
    QObject::connect(d, &TVelQddjjc::signalNextPage, d, [d, context] { step(*d, *context, true); });
    QObject::connect(d, &TVelQddjjc::signalYxysChanged, d, [context](const QString &sj, const QString &dd) {
        PriceCheckHost::writeYxys(*context, sj, dd);
    });
}

void PriceCheckBrowserHost::showBill(TVelQddjjc &dialog, BaseDataItem *bill)
{
    if (!bill)
        return;
    const ProjectSettingsInfo settings = ProjectSettingHelper::GetProjectSettingsInfo();
    QString code = bill->text(BaseDataItem::CodeRole);
    QString name = bill->text(BaseDataItem::NameRole);
    QString time = settings.time;
    QString place = settings.place;
    QString altitude = settings.altitude.isEmpty() ? QStringLiteral("<2.0km") : settings.altitude;
    QString taxMode = settings.taxMode;
    dialog.setItemId(code);
    dialog.setItemName(name);
    dialog.setTime(time);
    dialog.setPlace(place);
    dialog.setAltitude(altitude);
    dialog.setJsType(taxMode);
    dialog.setZhdj(bill->data(BaseDataItem::UnitPriceRole).toDouble());
    dialog.SetCurQd(bill);
}

void PriceCheckBrowserHost::answer(TVelQddjjc &dialog, HostContext &host, LtdInfo *server, int matchNum)
{
    GUARDED(kSource, [&] {
        QStringList bills;
        QString error;
        if (!CloudBusiness::RequestSimilarBillPrices(host.currentBill, server, matchNum, bills, &error)
            && !error.isEmpty())
            showMessageBox(error, &dialog);
        dialog.setCloudDjData(bills);
    });
}

void PriceCheckBrowserHost::step(TVelQddjjc &dialog, HostContext &host, bool forward)
{
    GUARDED(kSource, [&] {
        BaseDataItem *next = host.project ? host.project->neighbourBill(host.currentBill, forward, false) : nullptr;
        if (!next) {
            showMessageBox(forward ? QStringLiteral("已是最后一条清单") : QStringLiteral("已是第一条清单"), &dialog);
            return;
        }
        host.setCurrentBill(next);
        showBill(dialog, next);
        answer(dialog, host, dialog.getCurrServer(), dialog.matchNum());
    });
}
