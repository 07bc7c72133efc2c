#include "tbzqdycc_xjqdk.h"
#include "storagerequests.h"

#include <cloud/cloudexchange.h>

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/messagebox.h>
#include <hostapi/widgetfactory.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "TotalYcc";
}

TBzqdycc_Xjqdk::TBzqdycc_Xjqdk(const LtdInfo *server, QWidget *parent)
    : zTitleModal(parent)
    , m_server(server)
{
    setScaledFixedSize(380, 135);
    OnlyClose();
    SetCaption(QStringLiteral("新建清单库"));
    CreateUI();
}

void TBzqdycc_Xjqdk::CreateUI()
{
    GUARDED(kSource, [&] {
        QWidget *client = clientWidget();
        m_lblMc = WidgetFactory::label(QStringLiteral("名称："), QStringLiteral("lblMc"), client);
        m_editMc = new QLineEdit(client);
        m_editMc->setObjectName(QStringLiteral("editMc"));
        m_editMc->setPlaceholderText(QStringLiteral("允许输入50个字符以内任意文本"));
        m_editMc->setFixedHeight(InterfaceAdaptation::scaled(28));
        auto *buttons = new ButtonRow(client);
        buttons->setButtonSize(70, 28);
        m_btnQd = buttons->addOk(this);
        m_btnQd->setDefault(true);

        auto *name = new QHBoxLayout;
        name->addWidget(m_lblMc);
        name->addWidget(m_editMc, 1);
        auto *body = new QVBoxLayout;
        const int m = InterfaceAdaptation::scaled(16);
        body->setContentsMargins(m, InterfaceAdaptation::scaled(12), m, InterfaceAdaptation::scaled(10));
        body->addLayout(name);
        body->addStretch();
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
    });
}

void TBzqdycc_Xjqdk::actOk()
{
    GUARDED(kSource, [&] {
        const QString name = m_editMc->text();
        const QString error = StorageRequests::newLibraryNameError(name);
        if (!error.isEmpty()) {
            showMessageBox(error, this);
            return;
        }
        const CloudReply reply = CloudExchange::send(StorageRequests::newLibrary(m_server, name));
        if (reply.answered() && reply.code() != 0) {
            CloudExchange(GuardSite(kSource, this)).showFailure(reply);
            return;
        }
        m_created = reply.answered();
        if (m_created)
            zTitleModal::actOk();
        else
            actCancel();
    });
}
