#include "velcjyjc_checkresult.h"
#include "materialcheckrules.h"
#include "velcjyjc_checkdetails.h"

#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/generaltablebase.h>
#include <hostapi/gljbean.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/round.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QColor>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "VelCjyjc_CheckResult";
const QColor kLinkColour(65, 127, 249);
}

VelCjyjc_CheckResult::VelCjyjc_CheckResult(bool taxIncluded, QList<CloudCjyjcBean> &cloudRecords,
                                           QList<CloudCjyjcBean> &results, GeneralTableBase *table, QWidget *parent)
    : zTitleModal(parent)
    , m_taxIncluded(taxIncluded)
    , m_cloudRecords(cloudRecords)
    , m_results(results)
    , m_table(table)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("检查结果"));
        setScaledFixedSize(1000, 560);
        m_model = new zTableModel(this);
        declareColumns();
        m_view = new zTableView(clientWidget());
        m_view->setObjectName(QStringLiteral("gdTable"));
        m_view->setModel(m_model);
        auto *body = new QVBoxLayout;
        const int m = InterfaceAdaptation::scaled(14);
        body->setContentsMargins(m, m, m, m);
        body->addWidget(m_view, 1);
        auto *buttons = new ButtonRow(clientWidget());
        buttons->addLeading(WidgetFactory::label(QStringLiteral("注：偏差率=（原单价 - 云单价）/云单价"),
                                                 QStringLiteral("lblZs"), clientWidget()));
        buttons->setButtonSize(72, 28);
        m_btnOk = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnOk"));
        buttons->addGap(10);
        buttons->addCancel(this);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        m_btnOk->setEnabled(false);
        connect(m_btnOk, &QPushButton::clicked, this, &VelCjyjc_CheckResult::GbButton);
        connect(m_view, &zTableView::signalCheckBoxClicked, this, &VelCjyjc_CheckResult::slotClCheckBoxClicked);
        connect(m_view, &zTableView::signalLinkClicked, this, &VelCjyjc_CheckResult::slotLinkClicked);
    });
}

void VelCjyjc_CheckResult::declareColumns()
{
    m_model->addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 44);
    m_model->addColumn(QStringLiteral("材料名称"), QStringLiteral("clmc"), 150);
    m_model->addColumn(QStringLiteral("规格型号"), QStringLiteral("ggxh"), 120);
    m_model->addColumn(QStringLiteral("单位"), QStringLiteral("dw"), 50);
    m_model->addColumn(QStringLiteral("产地"), QStringLiteral("cd"), 70);
    m_model->addColumn(QStringLiteral("厂家"), QStringLiteral("cj"), 110);
    m_model->addColumn(m_taxIncluded ? QStringLiteral("调价（含税）") : QStringLiteral("调价（不含税）"),
                       QStringLiteral("tj"), 100);
    m_model->addColumn(QStringLiteral("云单价"), QStringLiteral("ydj"), 90);
    m_model->addColumn(QStringLiteral("偏差率"), QStringLiteral("pcl"), 80);
    m_model->addColumn(QStringLiteral("查看详情"), QStringLiteral("ckxq"), 80);
    m_model->addColumn(QStringLiteral("选用"), QStringLiteral("xy"), 50);
}

void VelCjyjc_CheckResult::setGljBean(QList<GljBean *> &materials, bool fill)
{
    GUARDED(kSource, [&] {
        m_materials = materials;
        if (fill)
            fillRows();
    });
}

void VelCjyjc_CheckResult::fillRows()
{
    m_model->clearRows();
    m_results.clear();
    for (int i = 0; i < m_materials.size(); ++i) {
        const GljBean *g = m_materials.at(i);
        const MaterialCheckRules::Outcome o =
            MaterialCheckRules::evaluate(m_cloudRecords, g->GetGuid(), g->GetTj(), m_taxIncluded);
        CloudCjyjcBean result;
        result.setGuid(g->GetGuid());
        result.setClmc(g->GetClmc());
        result.setGgxh(g->GetGgxh());
        result.setDw(g->GetDw());
        result.setYdj(o.cloudPrice);
        result.setPcl(o.pcl);
        m_results << result;
        const int row = m_model->addRow();
        m_model->appendCell(QStringLiteral("xh"), i + 1);
        m_model->appendCell(QStringLiteral("clmc"), g->GetClmc());
        m_model->appendCell(QStringLiteral("ggxh"), g->GetGgxh());
        m_model->appendCell(QStringLiteral("dw"), g->GetDw());
        m_model->appendCell(QStringLiteral("cd"), g->GetCd());
        m_model->appendCell(QStringLiteral("cj"), g->GetCj());
        m_model->appendCell(QStringLiteral("tj"), Round(g->GetTj(), 2, true), 5005);
        m_model->appendCell(QStringLiteral("ydj"), o.priceText, 5005);
        if (!o.hasCloudPrice())
            continue;
        m_model->appendCell(QStringLiteral("pcl"), o.pcl, 5005);
        m_model->appendCell(QStringLiteral("ckxq"), QStringLiteral("查看详情"), 5008);
        m_model->appendCell(QStringLiteral("xy"), QString(), 5006);
        m_model->setCellForeground(row, QStringLiteral("ckxq"), kLinkColour);
        m_model->setCellForeground(row, QStringLiteral("xy"), kLinkColour);
    }
}

void VelCjyjc_CheckResult::slotClCheckBoxClicked(QModelIndex index, Qt::CheckState state)
{
    GUARDED(kSource, [&] {
        const int row = index.row();
        if (row < 0 || row >= m_results.size())
            return;
        m_model->setCheckState(index, state);
        m_view->viewport()->update();
        m_results[row].setChecked(state == Qt::Checked);
        m_results[row].setGuid(m_materials.at(row)->GetGuid());
        bool any = false;
        for (const CloudCjyjcBean &r : qAsConst(m_results))
            any = any || r.getChecked();
        m_btnOk->setEnabled(any);
    });
}

void VelCjyjc_CheckResult::slotLinkClicked(const QModelIndex &index)
{
    GUARDED(kSource, [&] {
        const int row = index.row();
        if (row < 0 || row >= m_results.size())
            return;
        const CloudCjyjcBean &r = m_results.at(row);
        auto *details = new VelCjyjc_CheckDetails(m_taxIncluded, m_cloudRecords, r.getGuid(), m_results, r.getYdj(),
                                                  MaterialCheckRules::deviationOf(r.getPcl()), r.getClmc(), this);
        ChildDialog::run(this, details);
    });
}

void VelCjyjc_CheckResult::GbButton()
{
    GUARDED(kSource, [&] {
        // Record kind 0, as every other table edit of the host: the chosen
        // prices undo and redo together with the material table.
        RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(m_table, 0, QStringLiteral("材料价格选用")));
        emit signalGbButtonClicked(m_results);
        RURecordControl::EndRecord();
        zTitleModal::actOk();
    });
}

bool VelCjyjc_CheckResult::CallBackTableEditorEnding(int, const QModelIndex &, const QVariant &, QVariant &)
{
    return true;
}
