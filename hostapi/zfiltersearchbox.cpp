#include "zfiltersearchbox.h"
#include "interfaceadaptation.h"
#include "widgetfactory.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

zFilterSearchBox::zFilterSearchBox(QWidget *parent) : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(InterfaceAdaptation::scaled(6));
    m_label = WidgetFactory::label(QString(), QStringLiteral("lblSearch"), this);
    m_label->hide();
    m_edit = new QLineEdit(this);
    m_edit->setObjectName(QStringLiteral("editSearch"));
    m_edit->setClearButtonEnabled(true);
    m_edit->setMinimumHeight(InterfaceAdaptation::scaled(24));
    m_button = WidgetFactory::button(QStringLiteral("搜索"), QStringLiteral("btnSearch"), this);
    m_button->setMinimumHeight(InterfaceAdaptation::scaled(24));
    layout->addWidget(m_label);
    layout->addWidget(m_edit, 1);
    layout->addWidget(m_button);
    connect(m_button, &QPushButton::clicked, this, [this] { emit signalSearch(m_edit->text()); });
    connect(m_edit, &QLineEdit::returnPressed, this, [this] { emit signalSearch(m_edit->text()); });
    connect(m_edit, &QLineEdit::textChanged, this, &zFilterSearchBox::textChanged);
}

void zFilterSearchBox::setPlaceholderText(const QString &text)
{
    m_edit->setPlaceholderText(text);
}

QString zFilterSearchBox::placeholderText() const
{
    return m_edit->placeholderText();
}

void zFilterSearchBox::setLabelText(const QString &text)
{
    m_label->setText(text);
    m_label->setVisible(!text.isEmpty());
}

QString zFilterSearchBox::labelText() const
{
    return m_label->text();
}

void zFilterSearchBox::setButtonText(const QString &text)
{
    m_button->setText(text);
}

QString zFilterSearchBox::buttonText() const
{
    return m_button->text();
}

QString zFilterSearchBox::text() const
{
    return m_edit->text();
}

void zFilterSearchBox::setText(const QString &text)
{
    m_edit->setText(text);
}

void zFilterSearchBox::clear()
{
    m_edit->clear();
}
