#include "buttonrow.h"
#include "interfaceadaptation.h"
#include "widgetfactory.h"
#include "ztitlemodal.h"

#include <QPushButton>

ButtonRow::ButtonRow(QWidget *owner) : m_owner(owner)
{
    addStretch();
}

void ButtonRow::addLeading(QWidget *widget)
{
    insertWidget(m_leading++, widget);
}

void ButtonRow::setButtonSize(int width, int height)
{
    m_width = width;
    m_height = height;
}

void ButtonRow::addGap(int pixels)
{
    addSpacing(InterfaceAdaptation::scaled(pixels));
}

QPushButton *ButtonRow::addButton(const QString &text, const QString &name)
{
    QPushButton *button = m_width > 0 ? WidgetFactory::button(text, name, m_owner, m_width, m_height)
                                      : WidgetFactory::button(text, name, m_owner);
    addWidget(button);
    return button;
}

QPushButton *ButtonRow::addOk(QDialog *dialog, const QString &text, const QString &name)
{
    m_ok = addButton(text, name);
    wire(m_ok, dialog, &zTitleModal::actOk, &QDialog::accept);
    return m_ok;
}

QPushButton *ButtonRow::addCancel(QDialog *dialog, const QString &text, const QString &name)
{
    m_cancel = addButton(text, name);
    wire(m_cancel, dialog, &zTitleModal::actCancel, &QDialog::reject);
    return m_cancel;
}

void ButtonRow::wire(QPushButton *button, QDialog *dialog, void (zTitleModal::*titled)(), void (QDialog::*plain)())
{
    if (auto *modal = qobject_cast<zTitleModal *>(dialog))
        QObject::connect(button, &QPushButton::clicked, modal, titled);
    else
        QObject::connect(button, &QPushButton::clicked, dialog, plain);
}

void ButtonRow::addOkCancel(QDialog *dialog, int gap)
{
    addOk(dialog);
    if (gap > 0)
        addGap(gap);
    addCancel(dialog);
}
