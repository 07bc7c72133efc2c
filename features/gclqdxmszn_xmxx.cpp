#include "gclqdxmszn_xmxx.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
const char kSource[] = "..\\Gclqdxmttzmszn";

QStringList captions()
{
    return {QStringLiteral("项目名称："), QStringLiteral("清单编号："), QStringLiteral("单位名称："),
            QStringLiteral("单项名称："), QStringLiteral("清单名称：")};
}
}

Gclqdxmszn_Xmxx::Gclqdxmszn_Xmxx(QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    SetCaption(QStringLiteral("项目信息"));
    setScaledFixedSize(440, 260);
    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(20);
    body->setContentsMargins(margin, margin / 2, margin, margin);
    body->setSpacing(InterfaceAdaptation::scaled(8));
    for (const QString &caption : captions()) {
        auto *label = new QLabel(caption, clientWidget());
        label->setObjectName(QStringLiteral("lblXmxx%1").arg(m_labels.size() + 1));
        label->setWordWrap(true);
        m_labels << label;
        body->addWidget(label);
    }
    body->addStretch();
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(80, 30);
    QPushButton *close = buttons->addButton(QStringLiteral("关闭"), QStringLiteral("btnGb"));
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    connect(close, &QPushButton::clicked, this, &Gclqdxmszn_Xmxx::GbButton);
}

void Gclqdxmszn_Xmxx::setData(QString &projectName, QString &billCode, QString &unitName, QString &sectionName,
                              QString &billName)
{
    GUARDED(kSource, [&] {
        const QStringList values{projectName, billCode, unitName, sectionName, billName};
        const QStringList names = captions();
        for (int i = 0; i < values.size(); ++i) {
            if (!values.at(i).isEmpty())
                m_labels.at(i)->setText(names.at(i) + values.at(i));
        }
    });
}

void Gclqdxmszn_Xmxx::GbButton()
{
    GUARDED(kSource, [&] { close(); });
}
