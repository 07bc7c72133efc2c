#include "fymodel.h"
#include "buttonrow.h"
#include "interfaceadaptation.h"
#include "ztablemodel.h"
#include "ztableview.h"

#include <QVBoxLayout>

FyModel::FyModel(const QList<cloudFymb> &fees, QWidget *parent) : zTitleModal(parent), m_fees(fees)
{
    OnlyClose();
    SetCaption(QStringLiteral("费用模板"));
    setScaledFixedSize(790, 450);
}

void FyModel::CreateUI()
{
    if (m_model)
        return;
    m_model = new zTableModel(this);
    declareColumns(m_model);
    m_view = new zTableView(this);
    m_view->setObjectName(QStringLiteral("gdTableFy"));
    m_view->setModel(m_model);
    appendFees(m_model, m_fees);

    auto *buttons = new ButtonRow(this);
    buttons->setButtonSize(60, 24);
    buttons->addOkCancel(this, 5);

    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(20);
    body->setContentsMargins(margin, margin, margin, margin);
    body->setSpacing(margin);
    body->addWidget(m_view, 1);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
}

void FyModel::declareColumns(zTableModel *model)
{
    model->addColumn(QStringLiteral("费用编号"), QStringLiteral("fybh"), 120);
    model->addColumn(QStringLiteral("费用名称"), QStringLiteral("fymc"), 120);
    model->addColumn(QStringLiteral("计算公式"), QStringLiteral("jjgs"), 120);
    model->addColumn(QStringLiteral("费率"), QStringLiteral("fl"), 120);
    model->addColumn(QStringLiteral("金额"), QStringLiteral("jl"), 120);
    model->addColumn(QStringLiteral("计价表字段"), QStringLiteral("jjbzd"), 120);
}

void FyModel::appendFees(zTableModel *model, const QList<cloudFymb> &fees)
{
    for (const cloudFymb &fee : fees) {
        model->addRow();
        model->appendCell(QStringLiteral("fybh"), fee.getFybh(), zTableCell::TextCell);
        model->appendCell(QStringLiteral("fymc"), fee.getFymc(), zTableCell::TextCell);
        model->appendCell(QStringLiteral("jjgs"), fee.getJsgs(), zTableCell::TextCell);
        model->appendCell(QStringLiteral("fl"), fee.getFl(), zTableCell::NumberCell);
        model->appendCell(QStringLiteral("jl"), fee.getJe(), zTableCell::NumberCell);
        model->appendCell(QStringLiteral("jjbzd"), fee.getJjbzd(), zTableCell::TextCell);
    }
}
