#include "textpathdlg.h"
#include "buttonrow.h"
#include "interfaceadaptation.h"
#include "textpathwidget.h"

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
    auto *buttons = new ButtonRow(this);
    buttons->addOkCancel(this);
    body->addLayout(buttons);
    clientLayout()->addLayout(body);
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
