#include "materialheading.h"

#include <hostapi/interfaceadaptation.h>
#include <hostapi/widgetfactory.h>

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

QLayout *MaterialHeading::build(QWidget *parent, const QString &icon, const QString &title,
                                const QString &description)
{
    const int iconSize = InterfaceAdaptation::scaled(22);
    QLabel *lblIcon = WidgetFactory::label(QString(), QStringLiteral("lblIcon"), parent);
    lblIcon->setPixmap(WidgetFactory::icon(icon).pixmap(iconSize, iconSize));
    QLabel *lblTitle = WidgetFactory::label(title, QStringLiteral("lblTitle"), parent);
    QFont font(QStringLiteral("Microsoft YaHei"));
    font.setPixelSize(14);
    font.setWeight(QFont::Bold);
    lblTitle->setFont(font);
    auto *row = new QHBoxLayout;
    row->setSpacing(InterfaceAdaptation::scaled(6));
    row->addWidget(lblIcon);
    row->addWidget(lblTitle);
    row->addStretch();
    auto *heading = new QVBoxLayout;
    heading->setSpacing(InterfaceAdaptation::scaled(4));
    heading->addLayout(row);
    if (!description.isEmpty()) {
        QLabel *lblDescribe = WidgetFactory::label(description, QStringLiteral("lblDescribe"), parent);
        lblDescribe->setWordWrap(true);
        lblDescribe->setStyleSheet(QStringLiteral("#lblDescribe{color:#606266;}"));
        heading->addWidget(lblDescribe);
    }
    return heading;
}
