#include "hostdialogtour.h"
#include "hostcontext.h"

#include <cloud/placedictionaryreader.h>

#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudprocheck.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/fymodel.h>
#include <hostapi/hostconstants.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/placedictionary.h>
#include <hostapi/serverregistry.h>
#include <hostapi/textpathdlg.h>
#include <hostapi/tqdnodeinfo.h>
#include <hostapi/userlogin.h>
#include <hostapi/xmgktime.h>

namespace {
LtdInfo *korvaneServer()
{
    for (LtdInfo *entry : ServerRegistry::instance()->servers())
        if (entry->getToken() == KvToken)
            return entry;
    return nullptr;
}

void showLogin(HostContext &)
{
    userLogin login;
    login.KvyExec();
}

void showMonthPicker(HostContext &host)
{
    XmgkTime picker(host.window);
    picker.SetTimeData(QStringLiteral("2024年05月"));
    picker.ShowModal();
}

void showPlacePicker(HostContext &host)
{
    PlaceDictionary::ensureDatabase();
    const QList<PlaceRow> rows =
        PlaceDictionaryReader::read(QStringLiteral("SELECT * FROM subset_dd WHERE sid = '%1';"));
    const QStringList top = PlaceDictionaryReader::topLevelNames(rows);
    if (top.isEmpty())
        return;
    TextPathDlg picker(QStringLiteral("工程地点选择"), host.window);
    picker.addFirstTabData(top.first(), top);
    picker.addTabData(QStringLiteral("类别1"), PlaceDictionaryReader::nextPageData(top.first(), rows));
    picker.ShowModal();
}

// The fee template of the first priced composition line of the cloud bill
// most like the current bill.
void showFeeTemplate(HostContext &host)
{
    LtdInfo *server = korvaneServer();
    QStringList bills;
    QList<cloudFymb> fees;
    if (server && host.currentBill && CloudBusiness::RequestSimilarBillPrices(host.currentBill, server, 1, bills)) {
        for (const QString &text : qAsConst(bills)) {
            for (const cloudZjnr &line : CloudZjBean(text).getZjnrlist()) {
                if (!line.getFymblist().isEmpty() && fees.isEmpty())
                    fees = line.getFymblist();
            }
        }
    }
    FyModel dialog(fees, host.window);
    dialog.CreateUI();
    dialog.ShowModal();
}

void showProjectFilter(HostContext &host)
{
    LtdInfo *server = korvaneServer();
    if (!server)
        return;
    CloudProCheck dialog(QStringList(), server, QString(), TQDNodeInfo(), host.window);
    dialog.setIscondNull(false);
    if (dialog.InitGcInfo())
        dialog.ShowModal();
}
}

QList<HostDialogTour::Step> HostDialogTour::steps()
{
    return {{QStringLiteral("host-login"), showLogin},
            {QStringLiteral("host-month-picker"), showMonthPicker},
            {QStringLiteral("host-place-picker"), showPlacePicker},
            {QStringLiteral("host-fee-template"), showFeeTemplate},
            {QStringLiteral("host-project-filter"), showProjectFilter}};
}
