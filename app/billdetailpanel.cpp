#include "billdetailpanel.h"

#include <hostapi/basedataitem.h>
#include <hostapi/widgetfactory.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

BillDetailPanel::BillDetailPanel(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    m_header = WidgetFactory::label(QString(), QStringLiteral("lblCurrentBill"), this);
    m_header->setWordWrap(true);
    layout->addWidget(m_header);
    layout->addWidget(new QLabel(QStringLiteral("项目特征："), this));
    m_features = new QPlainTextEdit(this);
    m_features->setReadOnly(true);
    layout->addWidget(m_features, 3);
    layout->addWidget(new QLabel(QStringLiteral("工作内容："), this));
    m_workContent = new QPlainTextEdit(this);
    m_workContent->setReadOnly(true);
    layout->addWidget(m_workContent, 2);
    showBill(nullptr);
}

void BillDetailPanel::showBill(const BaseDataItem *bill)
{
    if (!bill || !bill->isBill()) {
        m_header->setText(QStringLiteral("当前清单：无"));
        m_features->clear();
        m_workContent->clear();
        return;
    }
    m_header->setText(QStringLiteral("当前清单：%1 %2（%3）")
                          .arg(bill->text(BaseDataItem::CodeRole), bill->text(BaseDataItem::NameRole),
                               bill->text(BaseDataItem::UnitRole)));
    m_features->setPlainText(bill->text(BaseDataItem::FeaturesRole));
    m_workContent->setPlainText(bill->text(BaseDataItem::WorkContentRole));
}

QString BillDetailPanel::headerText() const
{
    return m_header->text();
}

QString BillDetailPanel::featuresText() const
{
    return m_features->toPlainText();
}

QString BillDetailPanel::workContentText() const
{
    return m_workContent->toPlainText();
}
