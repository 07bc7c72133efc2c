#include "gclqdxmtz_txtz.h"
#include "featurestore.h"

#include <hostapi/buttonrow.h>
#include <hostapi/exceptionguard.h>
#include <hostapi/interfaceadaptation.h>
#include <hostapi/sqlaccess.h>

#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
const char kSource[] = "..\\Gclqdxmttzmszn";
}

Gclqdxmtz_Txtz::Gclqdxmtz_Txtz(QWidget *parent)
    : zTitleModal(parent)
{
    OnlyClose();
    setScaledFixedSize(520, 360);
    m_edit = new QTextEdit(clientWidget());
    m_edit->setObjectName(QStringLiteral("edtTxtz"));
    m_edit->setAcceptRichText(false);
    auto *buttons = new ButtonRow(clientWidget());
    buttons->setButtonSize(80, 30);
    m_btnQd = buttons->addButton(QStringLiteral("确定"), QStringLiteral("btnQd"));
    buttons->addGap(10);
    QPushButton *close = buttons->addButton(QStringLiteral("关闭"), QStringLiteral("btnGb"));
    m_btnQd->hide();
    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(16);
    body->setContentsMargins(margin, margin / 2, margin, margin);
    body->setSpacing(margin / 2);
    body->addWidget(m_edit, 1);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    connect(m_btnQd, &QPushButton::clicked, this, &Gclqdxmtz_Txtz::QdButton);
    connect(close, &QPushButton::clicked, this, &Gclqdxmtz_Txtz::GbButton);
}

void Gclqdxmtz_Txtz::isReadOnly(bool readOnly)
{
    m_edit->setReadOnly(readOnly);
}

void Gclqdxmtz_Txtz::setEdtData(const QString &text)
{
    m_initial = text;
    m_edit->setPlainText(text);
}

void Gclqdxmtz_Txtz::setDataName(const QString &table)
{
    m_table = table;
    m_btnQd->show();
    try {
        FID = FeatureStore::findCustomLine(m_table, m_initial);
    } catch (const DBM::exDBM &) {
        // A failed look-up leaves FID as it was; the save still runs.
    }
}

void Gclqdxmtz_Txtz::QdButton()
{
    GUARDED(kSource, [&] {
        try {
            FeatureStore::updateCustomLine(m_table, m_edit->toPlainText(), FID);
        } catch (const DBM::exDBM &) {
            // The guide reloads either way.
        }
        emit Updata();
        close();
    });
}

void Gclqdxmtz_Txtz::GbButton()
{
    GUARDED(kSource, [&] { close(); });
}
