#include "widgetfactory.h"
#include "interfaceadaptation.h"

#include <QCoreApplication>
#include <QHash>
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

QIcon WidgetFactory::icon(const QString &path)
{
    return icon(path, QString(), QString());
}

QIcon WidgetFactory::icon(const QString &normal, const QString &disabled, const QString &active)
{
    static QHash<QString, QIcon> read;
    // Dropped with the application, before the pixmaps' platform goes.
    static const bool routine = [] {
        qAddPostRoutine([] { read.clear(); });
        return true;
    }();
    Q_UNUSED(routine)
    const QString key = normal + QLatin1Char('\n') + disabled + QLatin1Char('\n') + active;
    auto found = read.constFind(key);
    if (found != read.constEnd())
        return *found;
    if (disabled.isEmpty() && active.isEmpty())
        return read.insert(key, QIcon(normal)).value();
    QIcon made;
    made.addFile(normal, QSize(), QIcon::Normal);
    made.addFile(disabled, QSize(), QIcon::Disabled);
    made.addFile(active, QSize(), QIcon::Active);
    return read.insert(key, made).value();
}
