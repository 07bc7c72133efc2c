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
    if (auto *modal = qobject_cast<zTitleModal *>(dialog))
        QObject::connect(m_ok, &QPushButton::clicked, modal, &zTitleModal::actOk);
    else
        QObject::connect(m_ok, &QPushButton::clicked, dialog, &QDialog::accept);
    return m_ok;
}

QPushButton *ButtonRow::addCancel(QDialog *dialog, const QString &text, const QString &name)
{
    m_cancel = addButton(text, name);
    if (auto *modal = qobject_cast<zTitleModal *>(dialog))
        QObject::connect(m_cancel, &QPushButton::clicked, modal, &zTitleModal::actCancel);
    else
        QObject::connect(m_cancel, &QPushButton::clicked, dialog, &QDialog::reject);
    return m_cancel;
}

void ButtonRow::addOkCancel(QDialog *dialog, int gap)
{
    addOk(dialog);
    if (gap > 0)
        addGap(gap);
    addCancel(dialog);
}
