#include "cloudbilldetails.h"
#include "pricecheckdetails.h"

#include <cloud/cloudexchange.h>

#include <hostapi/childdialog.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/fymodel.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/zgroupheaderview.h>
#include <hostapi/zstandardtreenodedata.h>
#include <hostapi/ztreemodel.h>
#include <hostapi/ztreeview.h>

#include <QPlainTextEdit>
#include <QPointer>

namespace {
QPlainTextEdit *textTab(const QString &name, QWidget *parent)
{
    auto *edit = new QPlainTextEdit(parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    return edit;
}
}

CloudBillDetails::CloudBillDetails(const GuardSite &site, QWidget *parent)
    : zTabContent(parent), m_site(site)
{
    setObjectName(QStringLiteral("tabDetails"));
    setTabBarVisible(true);
    m_first = textTab(QStringLiteral("txtXmtz"), this);
    m_model = new zTreeModel(this);
    m_model->addColumn(QStringLiteral("定额编号"), QStringLiteral("debh"), 170);
    m_model->addColumn(QStringLiteral("定额名称"), QStringLiteral("demc"), 370);
    m_model->addColumn(QStringLiteral("工程量"), QStringLiteral("gcl"), 89);
    m_model->addColumn(QStringLiteral("单位"), QStringLiteral("dw"), 82);
    m_model->addColumn(QStringLiteral("综合|单价"), QStringLiteral("zhdj"), 60);
    m_model->addColumn(QStringLiteral("综合|合价"), QStringLiteral("zhhj"), 60);
    m_model->addColumn(QStringLiteral("单价计算程序"), QStringLiteral("djjscx"), 76);
    m_tree = new zTreeView(this);
    m_tree->setObjectName(QStringLiteral("gdListZjnr"));
    m_tree->setStyleSheet(QStringLiteral("#gdListZjnr{border-top:0px;}"));
    m_tree->setHeader(new zGroupHeaderView(m_tree));
    m_tree->setModel(m_model);
    m_tree->header()->setFixedHeight(InterfaceAdaptation::scaled(48));
    m_info = textTab(QStringLiteral("txtXmxx"), this);
    addPage(m_first, QStringLiteral("项目特征"));
    addPage(m_tree, QStringLiteral("组价内容"));
    addPage(m_info, QStringLiteral("项目信息"));
    connect(m_tree, &zTreeView::signalButtonClicked, this, &CloudBillDetails::showFees);
}

void CloudBillDetails::setFirstTabName(const QString &name)
{
    setTabText(0, name);
}

void CloudBillDetails::showBill(const CloudZjBean &bill, const QString &kind, const CloudRequest &projectInfoRequest)
{
    m_bill = bill;
    m_hasBill = true;
    m_first->setPlainText(PriceCheckDetails::firstTabText(kind, bill));
    m_model->setRootData(*PriceCheckDetails::compositionTree(bill.getZjnrlist()));
    m_tree->expandAll();
    m_info->clear();
    CloudExchange cloud(m_site);
    QPointer<CloudBillDetails> self(this);
    const auto reply = cloud.call(projectInfoRequest);
    if (!self || !reply)
        return;
    m_info->setPlainText(PriceCheckDetails::projectInfoText(reply->dataObject()));
}

void CloudBillDetails::showTexts(const QString &projectInfo, const QString &first,
                                 const zStandardTreeNodeData *composition)
{
    m_hasBill = false;
    m_info->setPlainText(projectInfo);
    m_first->setPlainText(first);
    if (composition)
        m_model->setRootData(*composition);
    else
        m_model->clearRows();
    m_tree->expandAll();
}

void CloudBillDetails::clear()
{
    m_first->clear();
    m_info->clear();
    m_model->clearRows();
    m_hasBill = false;
}

QString CloudBillDetails::firstTabText() const
{
    return m_first->toPlainText();
}

QString CloudBillDetails::projectInfoText() const
{
    return m_info->toPlainText();
}

void CloudBillDetails::showFees(const QModelIndex &index)
{
    GUARDED(m_site, [&] {
        const zStandardTreeNodeData *node = m_model->nodeAt(index);
        if (!node || !m_hasBill)
            return;
        for (const cloudZjnr &line : m_bill.getZjnrlist()) {
            if (line.getId() != node->id())
                continue;
            auto *fees = new FyModel(line.getFymblist(), window());
            fees->CreateUI();
            ChildDialog::run(window(), fees);
            return;
        }
    });
}
