#include "hostdialogtour.h"
#include "billimportdialog.h"
#include "projectdocument.h"
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

// A sheet as estimators receive it: a title row above the header, the
// header's own words, the sample's bills.
void showBillImport(HostContext &host)
{
    QList<QStringList> rows{{QStringLiteral("分部分项工程和单价措施项目清单与计价表")},
                            {QStringLiteral("序号"), QStringLiteral("项目编码"), QStringLiteral("项目名称"),
                             QStringLiteral("项目特征描述"), QStringLiteral("计量单位"), QStringLiteral("工程量")}};
    for (BaseDataItem *bill : host.project->allBills()) {
        rows.append({QString::number(rows.size() - 1), bill->text(BaseDataItem::CodeRole),
                     bill->text(BaseDataItem::NameRole), bill->text(BaseDataItem::FeaturesRole),
                     bill->text(BaseDataItem::UnitRole), bill->text(BaseDataItem::QuantityRole)});
    }
    BillImportDialog dialog(QStringLiteral("安装工程清单.xlsx"), rows, host.window);
    dialog.ShowModal();
}
}

QList<HostDialogTour::Step> HostDialogTour::steps()
{
    return {{QStringLiteral("host-login"), showLogin},
            {QStringLiteral("host-month-picker"), showMonthPicker},
            {QStringLiteral("host-place-picker"), showPlacePicker},
            {QStringLiteral("host-fee-template"), showFeeTemplate},
            {QStringLiteral("host-project-filter"), showProjectFilter},
            {QStringLiteral("host-bill-import"), showBillImport}};
}
