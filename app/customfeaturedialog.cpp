#include "customfeaturedialog.h"

#include <hostapi/basedataitem.h>
#include <hostapi/buttonrow.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QLabel>
#include <QTextEdit>
#include <QVBoxLayout>

CustomFeatureDialog::CustomFeatureDialog(const BaseDataItem *bill, QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(QStringLiteral("新增自编特征描述"));
    setScaledFixedSize(500, 320);
    const QString code = bill ? bill->text(BaseDataItem::CodeRole) : QString();
    const QString name = bill ? bill->text(BaseDataItem::NameRole) : QString();
    QLabel *label = WidgetFactory::label(QStringLiteral("清单：%1  %2").arg(code, name), QStringLiteral("lblQd"),
                                         clientWidget());
    m_edit = new QTextEdit(clientWidget());
    m_edit->setObjectName(QStringLiteral("edtZbms"));
    m_edit->setAcceptRichText(false);
    m_edit->setPlaceholderText(QStringLiteral("请输入自编特征描述"));
    if (bill)
        m_edit->setPlainText(bill->text(BaseDataItem::FeaturesRole));
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(80, 30);
    buttons->addOkCancel(this, 10);
    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(16);
    body->setContentsMargins(margin, margin / 2, margin, margin);
    body->setSpacing(margin / 2);
    body->addWidget(label);
    body->addWidget(m_edit, 1);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
}

QString CustomFeatureDialog::text() const
{
    return m_edit->toPlainText();
}
