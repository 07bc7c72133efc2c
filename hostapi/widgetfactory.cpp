#include "widgetfactory.h"
#include "interfaceadaptation.h"

#include <QLabel>
#include <QPushButton>

QLabel *WidgetFactory::label(const QString &text, const QString &name, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(name);
    return label;
}

QLabel *WidgetFactory::label(const QString &text, const QString &name, QWidget *parent, int width, int height)
{
    QLabel *made = label(text, name, parent);
    setScaledFixedSize(made, width, height);
    return made;
}

QLabel *WidgetFactory::label(const QString &text, const QString &name, QWidget *parent, const QString &style)
{
    QLabel *made = label(text, name, parent);
    made->setStyleSheet(style);
    return made;
}

QLabel *WidgetFactory::rule(const QString &name, QWidget *parent, int width, const QString &color)
{
    QLabel *made = label(QString(), name, parent, width, 1);
    made->setStyleSheet(QStringLiteral("background:%1;").arg(color));
    return made;
}

QPushButton *WidgetFactory::button(const QString &text, const QString &name, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    return button;
}

QPushButton *WidgetFactory::button(const QString &text, const QString &name, QWidget *parent, int width,
                                   int height)
{
    QPushButton *made = button(text, name, parent);
    setScaledFixedSize(made, width, height);
    return made;
}

void WidgetFactory::setScaledFixedSize(QWidget *widget, int width, int height)
{
    widget->setFixedSize(InterfaceAdaptation::scaled(width), InterfaceAdaptation::scaled(height));
}

QPushButton *WidgetFactory::iconButton(const QString &name, const QString &icon, const QString &hover, QWidget *parent)
{
    QPushButton *button = WidgetFactory::button(QString(), name, parent, 24, 24);
    button->setCursor(Qt::PointingHandCursor);
    button->setStyleSheet(QStringLiteral("#%1{border:none;image:url(%2);}#%1:hover{image:url(%3);}")
                              .arg(name, icon, hover));
    return button;
}
