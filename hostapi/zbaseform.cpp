#include "zbaseform.h"
#include "widgetfactory.h"

zBaseForm::zBaseForm(QWidget *parent) : QWidget(parent)
{
    // Without this a QWidget subclass ignores background rules of style sheets.
    setAttribute(Qt::WA_StyledBackground, true);
}

void zBaseForm::setBackgroundColor(const QColor &color)
{
    m_background = color;
    if (objectName().isEmpty())
        setObjectName(QStringLiteral("zBaseForm"));
    setStyleSheet(QStringLiteral("#%1{background:%2;}").arg(objectName(), color.name()));
}

void zBaseForm::setScaledFixedSize(int width, int height)
{
    WidgetFactory::setScaledFixedSize(this, width, height);
}
