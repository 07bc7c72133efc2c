#include "prompt.h"
#include "failed.h"
#include "materialsaverules.h"

#include <hostapi/buttonrow.h>
#include <hostapi/childdialog.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "CloudCLSaveDialogm";
}

Prompt::Prompt(QWidget *parent)
    : zTitleModal(parent)
{
    GUARDED(kSource, [&] {
        OnlyClose();
        SetCaption(QStringLiteral("提示"));
        setScaledFixedSize(380, 170);
        auto *body = new QVBoxLayout;
        const int m = InterfaceAdaptation::scaled(20);
        body->setContentsMargins(m, InterfaceAdaptation::scaled(16), m, InterfaceAdaptation::scaled(14));
        m_lblText = WidgetFactory::label(QString(), QStringLiteral("lblText"), clientWidget());
        m_lblText->setWordWrap(true);
        body->addWidget(m_lblText);
        body->addStretch();
        auto *buttons = new ButtonRow(clientWidget());
        buttons->setButtonSize(100, 28);
        m_btnFailed = buttons->addButton(QStringLiteral("查看失败材料"), QStringLiteral("btnFailed"));
        buttons->setButtonSize(72, 28);
        buttons->addGap(10);
        buttons->addOk(this);
        body->addLayout(buttons);
        clientLayout()->addLayout(body);
        m_btnFailed->hide();
        connect(m_btnFailed, &QPushButton::clicked, this, &Prompt::showFailed);
    });
}

void Prompt::GljPrompt(const QString &total, const QString &saved, const QStringList &failedCodes,
                       const QStringList &failedNames)
{
    GUARDED(kSource, [&] {
        m_codes = failedCodes;
        m_names = failedNames;
        m_lblText->setText(MaterialSaveRules::promptText(total, saved));
        m_btnFailed->setVisible(MaterialSaveRules::failedCount(total, saved).toInt() != 0);
    });
}

void Prompt::showFailed()
{
    GUARDED(kSource, [&] { ChildDialog::run(this, new Failed(m_codes, m_names, this)); });
}
