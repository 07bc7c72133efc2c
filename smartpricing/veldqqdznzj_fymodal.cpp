#include "veldqqdznzj_fymodal.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/fymodel.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "VelDqqdznzj";
}

VelDqqDznzj_fymodal::VelDqqDznzj_fymodal(QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(QStringLiteral("费用模板"));
    setWindowTitle(QStringLiteral("费用模板"));
    setScaledFixedSize(790, 450);
}

void VelDqqDznzj_fymodal::CreateUI()
{
    GUARDED(kSource, [&] {
        if (m_model)
            return;
        m_model = new zTableModel(this);
        FyModel::declareColumns(m_model);
        m_table = new zTableView(clientWidget());
        m_table->setObjectName(QStringLiteral("gdTableFymb"));
        m_table->setModel(m_model);
        // 400 high where the caption bar leaves room for it and the buttons.
        m_table->setMaximumHeight(InterfaceAdaptation::scaled(400));
        auto *buttons = new ButtonRow(clientWidget());
        buttons->setButtonSize(60, 24);
        m_btnQd = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnQd"));
        buttons->addGap(5);
        m_btnQx = buttons->addButton(QStringLiteral("取消"), QStringLiteral("btnQx"));
        auto *body = new QVBoxLayout;
        const int gap = InterfaceAdaptation::scaled(20);
        body->setContentsMargins(gap, 0, gap, InterfaceAdaptation::scaled(12));
        body->setSpacing(0);
        body->addSpacing(gap);
        body->addWidget(m_table, 1);
        body->addSpacing(gap);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        connect(m_btnQd, &QPushButton::clicked, this, &VelDqqDznzj_fymodal::QdButton);
        connect(m_btnQx, &QPushButton::clicked, this, &VelDqqDznzj_fymodal::QxButton);
        InitUI();
    });
}

void VelDqqDznzj_fymodal::InitUI()
{
    GUARDED(kSource, [&] {
        if (!m_model)
            return;
        m_model->clearRows();
        FyModel::appendFees(m_model, m_fees);
    });
}

void VelDqqDznzj_fymodal::setFymbList(const QList<cloudFymb> &fees)
{
    m_fees = fees;
    InitUI();
}

void VelDqqDznzj_fymodal::QdButton()
{
    GUARDED(kSource, [&] { actOk(); });
}

void VelDqqDznzj_fymodal::QxButton()
{
    GUARDED(kSource, [&] { actCancel(); });
}
