#include "tcloudclsavedialog_xjbc.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {
const char kSource[] = "CloudCLSaveDialogm";
}

TCloudCLSaveDialog_Xjbc::TCloudCLSaveDialog_Xjbc(QWidget *parent)
    : zTitleModal(parent)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        setScaledFixedSize(360, 150);
        auto *body = new QVBoxLayout;
        body->setContentsMargins(InterfaceAdaptation::scaled(20), InterfaceAdaptation::scaled(16),
                                 InterfaceAdaptation::scaled(20), InterfaceAdaptation::scaled(14));
        auto *row = new QHBoxLayout;
        row->addWidget(WidgetFactory::label(QStringLiteral("价表名称:"), QStringLiteral("lblJbmc"), clientWidget()));
        m_edtJbmc = new QLineEdit(clientWidget());
        m_edtJbmc->setObjectName(QStringLiteral("edtJbmc"));
        m_edtJbmc->setFixedHeight(InterfaceAdaptation::scaled(28));
        row->addWidget(m_edtJbmc, 1);
        body->addLayout(row);
        body->addStretch();
        auto *buttons = new ButtonRow(clientWidget());
        buttons->setButtonSize(72, 28);
        buttons->addOkCancel(this, 10);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
    });
}

void TCloudCLSaveDialog_Xjbc::SetWidgetName(const QString &caption)
{
    SetCaption(caption);
}

QString TCloudCLSaveDialog_Xjbc::slotData() const
{
    return m_accepted ? m_edtJbmc->text().trimmed() : QString();
}

void TCloudCLSaveDialog_Xjbc::actOk()
{
    GUARDED(kSource, [&] {
        if (m_edtJbmc->text().trimmed().isEmpty()) {
            showMessageBox(QStringLiteral("名称不能为空！"), this);
            return;
        }
        m_accepted = true;
        zTitleModal::actOk();
    });
}

void TCloudCLSaveDialog_Xjbc::actCancel()
{
    m_accepted = false;
    zTitleModal::actCancel();
}
