#include "batchpricingsummary.h"

#include <cloud/moduletitle.h>

#include <hostapi/basedataitem.h>
#include <hostapi/buttonrow.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>
#include <hostapi/ztablemodel.h>
#include <hostapi/ztableview.h>

#include <QHeaderView>
#include <QLabel>
#include <QVBoxLayout>

namespace {
QString money(double value)
{
    return QString::number(value, 'f', 2);
}
}

BatchPricingSummary::BatchPricingSummary(QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(860, 520);
    OnlyClose();
    SetCaption(QStringLiteral("智能云组价结果"));
    setBackgroundColor(QColor(QStringLiteral("#F5F7F9")));
    const int px = InterfaceAdaptation::scaled(16);
    auto *body = new QVBoxLayout;
    body->setContentsMargins(px, px / 2, px, px);
    body->setSpacing(px / 2);
    m_lblCounts = WidgetFactory::label(QString(), QStringLiteral("lblCounts"), clientWidget());
    m_lblCounts->setStyleSheet(QStringLiteral("#lblCounts{font-weight:bold;color:#303133;}"));
    body->addWidget(m_lblCounts);
    m_model = new zTableModel(this);
    m_model->addColumn(QStringLiteral("序号"), QStringLiteral("xh"), 50);
    m_model->addColumn(QStringLiteral("项目编号"), QStringLiteral("xmbh"), 120);
    m_model->addColumn(QStringLiteral("项目名称"), QStringLiteral("xmmc"), 290);
    m_model->addColumn(QStringLiteral("结果"), QStringLiteral("jg"), 70);
    m_model->addColumn(QStringLiteral("原单价"), QStringLiteral("ydj"), 90);
    m_model->addColumn(QStringLiteral("综合单价"), QStringLiteral("zhdj"), 90);
    m_model->addColumn(QStringLiteral("说明"), QStringLiteral("sm"), 100);
    m_table = new zTableView(clientWidget());
    m_table->setObjectName(QStringLiteral("wdtResult"));
    m_table->setModel(m_model);
    m_table->setHeaderHeight(28);
    m_table->verticalHeader()->hide();
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    body->addWidget(m_table, 1);
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(72, 28);
    buttons->addCancel(this, QStringLiteral("关闭"), QStringLiteral("btnClose"));
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    connect(m_table, &zTableView::cellClicked, this, &BatchPricingSummary::rowClicked);
}

void BatchPricingSummary::setResult(const BatchPricing &pricing)
{
    m_lblCounts->setText(pricing.summaryText());
    m_model->clearRows();
    m_bills.clear();
    int xh = 0;
    for (const BatchPricing::Row &row : pricing.rows()) {
        const int r = m_model->addRow();
        m_model->appendCell(QStringLiteral("xh"), ++xh);
        m_model->appendCell(QStringLiteral("xmbh"), row.bill->text(BaseDataItem::CodeRole));
        m_model->appendCell(QStringLiteral("xmmc"), row.bill->text(BaseDataItem::NameRole).simplified());
        m_model->appendCell(QStringLiteral("jg"), BatchPricing::outcomeText(row.outcome));
        m_model->appendCell(QStringLiteral("ydj"), money(row.before), zTableCell::NumberCell);
        m_model->appendCell(QStringLiteral("zhdj"), money(row.bill->data(BaseDataItem::UnitPriceRole).toDouble()),
                            zTableCell::NumberCell);
        m_model->appendCell(QStringLiteral("sm"), row.note);
        if (row.outcome == BatchPricing::Applied)
            m_model->setRowForeground(r, Qt::red);
        m_bills.append(row.bill);
    }
}

QString BatchPricingSummary::countsText() const
{
    return m_lblCounts->text();
}

void BatchPricingSummary::rowClicked(int row, const QVariant &)
{
    if (row >= 0 && row < m_bills.size())
        emit signalOpenBill(m_bills.at(row));
}
