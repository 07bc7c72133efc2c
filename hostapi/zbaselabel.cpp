#include "zbaselabel.h"

#include <QMouseEvent>

zBaseLabel::zBaseLabel(QWidget *parent) : QLabel(parent)
{
}

zBaseLabel::zBaseLabel(const QString &text, QWidget *parent) : QLabel(parent)
{
    setFullText(text);
}

void zBaseLabel::setElideMode(Qt::TextElideMode mode)
{
    m_elide = mode;
    applyElide();
}

void zBaseLabel::setFullText(const QString &text)
{
    m_full = text;
    applyElide();
}

void zBaseLabel::applyElide()
{
    if (m_elide == Qt::ElideNone) {
        setText(m_full);
        setToolTip(QString());
        return;
    }
    const QString shown = fontMetrics().elidedText(m_full, m_elide, qMax(0, contentsRect().width()));
    setText(shown);
    setToolTip(shown == m_full ? QString() : m_full);
}

void zBaseLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit labelClicked();
    QLabel::mouseReleaseEvent(event);
}

void zBaseLabel::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        emit labelDoubleClicked();
    QLabel::mouseDoubleClickEvent(event);
}

void zBaseLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (m_elide != Qt::ElideNone)
        applyElide();
}
