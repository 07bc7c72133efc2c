#include "textpathdlg.h"
#include "interfaceadaptation.h"
#include "textpathwidget.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

TextPathDlg::TextPathDlg(QWidget *parent) : zTitleModal(parent)
{
    build();
}

TextPathDlg::TextPathDlg(const QString &title, QWidget *parent) : zTitleModal(parent)
{
    build();
    SetCaption(title);
}

void TextPathDlg::build()
{
    OnlyClose();
    setBackgroundColor(Qt::white);
    setScaledFixedSize(520, 340);
    auto *body = new QVBoxLayout;
    const int margin = InterfaceAdaptation::scaled(12);
    body->setContentsMargins(margin, margin, margin, margin);
    m_widget = new TextPathWidget(this);
    body->addWidget(m_widget, 1);
    auto *buttons = new QHBoxLayout;
    auto *btnOk = new QPushButton(QStringLiteral("确定"), this);
    btnOk->setObjectName(QStringLiteral("btnOk"));
    auto *btnCancel = new QPushButton(QStringLiteral("取消"), this);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    buttons->addStretch();
    buttons->addWidget(btnOk);
    buttons->addWidget(btnCancel);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
    connect(btnOk, &QPushButton::clicked, this, &TextPathDlg::actOk);
    connect(btnCancel, &QPushButton::clicked, this, &TextPathDlg::actCancel);
    connect(m_widget, &TextPathWidget::doRequestNextTab, this, &TextPathDlg::doRequestNextTab);
    connect(m_widget, &TextPathWidget::itemChosen, this, [this](int, const QString &, bool complete) {
        if (complete && isVisible())
            actOk();
    });
}

void TextPathDlg::addFirstTabData(const QString &title, const QStringList &items)
{
    m_widget->addFirstTabData(title, items);
}

void TextPathDlg::addTabData(const QString &title, const QStringList &items)
{
    m_widget->addTabData(title, items);
}

QStringList TextPathDlg::getSelectedPath() const
{
    return m_widget->getSelectedPath();
}
