#include "billdetailpanel.h"

#include <hostapi/basedataitem.h>
#include <hostapi/cloudzjnr.h>
#include <hostapi/widgetfactory.h>

#include <QHash>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
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
    m_compositionCaption = new QLabel(QStringLiteral("组价内容："), this);
    layout->addWidget(m_compositionCaption);
    m_composition = new QTreeWidget(this);
    m_composition->setObjectName(QStringLiteral("treeComposition"));
    m_composition->setHeaderLabels({QStringLiteral("编号"), QStringLiteral("名称"), QStringLiteral("工程量"),
                                    QStringLiteral("单位"), QStringLiteral("单价"), QStringLiteral("合价")});
    layout->addWidget(m_composition, 3);
    showBill(nullptr);
}

void BillDetailPanel::showBill(const BaseDataItem *bill)
{
    if (!bill || !bill->isBill()) {
        m_header->setText(QStringLiteral("当前清单：无"));
        m_features->clear();
        m_workContent->clear();
        showComposition(QString());
        return;
    }
    m_header->setText(QStringLiteral("当前清单：%1 %2（%3）")
                          .arg(bill->text(BaseDataItem::CodeRole), bill->text(BaseDataItem::NameRole),
                               bill->text(BaseDataItem::UnitRole)));
    m_features->setPlainText(bill->text(BaseDataItem::FeaturesRole));
    m_workContent->setPlainText(bill->text(BaseDataItem::WorkContentRole));
    showComposition(bill->text(BaseDataItem::CompositionRole));
}

void BillDetailPanel::showComposition(const QString &zjnr)
{
    m_composition->clear();
    QHash<int, QTreeWidgetItem *> byId;
    for (const cloudZjnr &line : cloudZjnr::parseList(zjnr)) {
        const QStringList cells{line.getDebh(), line.getDemc(), line.getGcl(), line.getDw(), line.getZhdj(), line.getZhhj()};
        QTreeWidgetItem *parent = byId.value(line.getParentId());
        auto *item = parent ? new QTreeWidgetItem(parent, cells) : new QTreeWidgetItem(m_composition, cells);
        byId.insert(line.getId(), item);
    }
    m_composition->expandAll();
    // Only a bill with an applied composition shows the section.
    m_compositionCaption->setVisible(!byId.isEmpty());
    m_composition->setVisible(!byId.isEmpty());
}

QStringList BillDetailPanel::compositionLines() const
{
    QStringList lines;
    for (QTreeWidgetItemIterator it(m_composition); *it; ++it) {
        QStringList cells;
        for (int c = 0; c < (*it)->columnCount(); ++c)
            cells << (*it)->text(c);
        lines << cells.join(QLatin1Char(' '));
    }
    return lines;
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
