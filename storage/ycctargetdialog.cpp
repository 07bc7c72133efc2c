#include "ycctargetdialog.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QVBoxLayout>

namespace {
const char kSource[] = "TotalYcc";
}

YccTargetDialog::YccTargetDialog(const QString &caption, QWidget *parent)
    : zTitleModal(parent)
{
    setScaledFixedSize(400, 200);
    OnlyClose();
    SetCaption(caption);
    QBoxLayout *rows = m_form.build(clientWidget(), StorageTargetLayout::Texts());
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(70, 28);
    buttons->addOkCancel(this, 10);
    buttons->setContentsMargins(0, 0, InterfaceAdaptation::scaled(18), InterfaceAdaptation::scaled(14));
    clientLayout()->addLayout(rows, 1);
    clientLayout()->addLayout(buttons);
    // The host's signature, in the string form it connects with.
    connect(m_form.group(), SIGNAL(buttonClicked(QAbstractButton*)), this, SLOT(getChecked(QAbstractButton*)));
}

void YccTargetDialog::setNum(int count)
{
    m_form.setNum(count);
}

void YccTargetDialog::actOk()
{
    GUARDED(kSource, [&] {
        emit signalCheckData(m_form.target());
        zTitleModal::actOk();
    });
}

void YccTargetDialog::getChecked(QAbstractButton *button)
{
    GUARDED(kSource, [&] { m_form.enterpriseCombo()->setVisible(button && button->text() == QStringLiteral("企业云")); });
}
