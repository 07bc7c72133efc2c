#include "tsztcxzpcl.h"
#include "materialcheckrules.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

namespace {
const char kSource[] = "Cjyjc";
}

TSztcxzpcl::TSztcxzpcl(QWidget *parent)
    : zTitleModal(parent)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("影响因素"));
        setScaledFixedSize(340, 140);
        auto *body = new QVBoxLayout;
        const int m = InterfaceAdaptation::scaled(20);
        body->setContentsMargins(m, InterfaceAdaptation::scaled(16), m, InterfaceAdaptation::scaled(14));
        auto *row = new QHBoxLayout;
        row->addWidget(WidgetFactory::label(QStringLiteral("设置突出显示偏差率:"), QStringLiteral("lblPcl"),
                                            clientWidget()));
        m_edtPcl = new QLineEdit(clientWidget());
        m_edtPcl->setObjectName(QStringLiteral("edtPcl"));
        m_edtPcl->setFixedSize(InterfaceAdaptation::scaled(80), InterfaceAdaptation::scaled(28));
        m_edtPcl->setValidator(
            new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,3}(\\.\\d{0,2})?")), m_edtPcl));
        row->addWidget(m_edtPcl);
        row->addWidget(WidgetFactory::label(QStringLiteral("%"), QStringLiteral("lblPercent"), clientWidget()));
        row->addStretch();
        body->addLayout(row);
        body->addStretch();
        auto *buttons = new ButtonRow(clientWidget());
        buttons->setButtonSize(72, 28);
        buttons->addOk(this);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        connect(m_edtPcl, &QLineEdit::textEdited, this, &TSztcxzpcl::slotTextEdited);
    });
}

void TSztcxzpcl::setPcl(const QString &rate)
{
    m_edtPcl->setText(rate.isEmpty() ? QStringLiteral("0") : rate);
}

void TSztcxzpcl::actOk()
{
    GUARDED(kSource, [&] {
        emit setPclMark(m_edtPcl->text());
        zTitleModal::actOk();
    });
}

void TSztcxzpcl::slotTextEdited(const QString &text)
{
    const QString shown = MaterialCheckRules::rateInput(text);
    if (shown != text)
        m_edtPcl->setText(shown);
}
