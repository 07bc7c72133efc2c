#include "zgroupheaderview.h"
#include "ztablecell.h"

#include <QPainter>

zGroupHeaderView::zGroupHeaderView(QWidget *parent) : QHeaderView(Qt::Horizontal, parent)
{
    setDefaultAlignment(Qt::AlignCenter);
    setHighlightSections(false);
}

QString zGroupHeaderView::titleOf(int logicalIndex) const
{
    if (!model())
        return QString();
    const QVariant title = model()->headerData(logicalIndex, orientation(), zTableCell::TitleRole);
    return title.isValid() ? title.toString() : model()->headerData(logicalIndex, orientation()).toString();
}

QString zGroupHeaderView::groupOf(int logicalIndex) const
{
    const QString title = titleOf(logicalIndex);
    const int bar = title.indexOf(QLatin1Char('|'));
    return bar < 0 ? QString() : title.left(bar);
}

QPair<int, int> zGroupHeaderView::groupRun(int section) const
{
    const QString group = groupOf(section);
    int first = visualIndex(section);
    int last = first;
    if (group.isEmpty())
        return {first, last};
    while (first > 0 && groupOf(QHeaderView::logicalIndex(first - 1)) == group)
        --first;
    while (last + 1 < count() && groupOf(QHeaderView::logicalIndex(last + 1)) == group)
        ++last;
    return {first, last};
}

void zGroupHeaderView::paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const
{
    const QString title = titleOf(logicalIndex);
    const int bar = title.indexOf(QLatin1Char('|'));
    if (bar < 0) {
        QHeaderView::paintSection(painter, rect, logicalIndex);
        return;
    }
    const int half = rect.height() / 2;
    const QPair<int, int> run = groupRun(logicalIndex);
    const int left = sectionViewportPosition(QHeaderView::logicalIndex(run.first));
    const int lastLogical = QHeaderView::logicalIndex(run.second);
    const int right = sectionViewportPosition(lastLogical) + sectionSize(lastLogical);
    painter->save();
    painter->setClipRect(QRect(rect.left(), rect.top(), rect.width(), half));
    paintPart(painter, QRect(left, rect.top(), right - left, half), title.left(bar), logicalIndex);
    painter->setClipRect(QRect(rect.left(), rect.top() + half, rect.width(), rect.height() - half));
    paintPart(painter, QRect(rect.left(), rect.top() + half, rect.width(), rect.height() - half), title.mid(bar + 1),
              logicalIndex);
    painter->restore();
}

void zGroupHeaderView::paintPart(QPainter *painter, const QRect &rect, const QString &text, int logicalIndex) const
{
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.rect = rect;
    option.section = logicalIndex;
    option.text = text;
    option.textAlignment = Qt::AlignCenter;
    option.position = QStyleOptionHeader::Middle;
    style()->drawControl(QStyle::CE_Header, &option, painter, this);
}
