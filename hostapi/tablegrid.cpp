#include "tablegrid.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QPaintEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTableView>

namespace {
QColor gridColor(const QTableView *view)
{
    QStyleOptionViewItem option;
    option.initFrom(view);
    return QColor::fromRgba(static_cast<QRgb>(view->style()->styleHint(QStyle::SH_Table_GridLineColor, &option, view)));
}

// What Qt clips out for a span seen at visual row `visualRow`: its rect, less
// a pixel at the top and the leading side when the span's first row is the
// first row of a header (Qt asks both headers about that row).
QRect spanClip(const QTableView *view, int visualRow, QRect rect)
{
    const QHeaderView *rows = view->verticalHeader();
    int top = visualRow;
    while (top > 0 && rows->sectionViewportPosition(rows->logicalIndex(top)) > rect.top())
        --top;
    const int firstRow = rows->logicalIndex(top);
    if (view->horizontalHeader()->visualIndex(firstRow) == 0)
        rect.setTop(rect.top() + 1);
    if (rows->visualIndex(firstRow) == 0) {
        if (view->isRightToLeft())
            rect.setRight(rect.right() - 1);
        else
            rect.setLeft(rect.left() + 1);
    }
    return rect;
}

// Spanned cells have no inner lines: Qt clips them out of its grid.
QRegion outsideSpans(const QTableView *view)
{
    const QHeaderView *columns = view->horizontalHeader();
    const QHeaderView *rows = view->verticalHeader();
    const int firstRow = qMax(rows->visualIndexAt(0), 0);
    int lastRow = rows->visualIndexAt(rows->height());
    if (lastRow == -1)
        lastRow = rows->count() - 1;
    int firstColumn = columns->visualIndexAt(0);
    int lastColumn = columns->visualIndexAt(columns->width());
    if (view->isRightToLeft())
        std::swap(firstColumn, lastColumn);
    if (firstColumn == -1)
        firstColumn = 0;
    if (lastColumn == -1)
        lastColumn = columns->count() - 1;

    QRegion region;
    for (int r = firstRow; r <= lastRow; ++r) {
        const int row = rows->logicalIndex(r);
        for (int c = firstColumn; c <= lastColumn; ++c) {
            const int column = columns->logicalIndex(c);
            if (view->rowSpan(row, column) == 1 && view->columnSpan(row, column) == 1)
                continue;
            if (region.isNull())
                region = view->viewport()->rect();
            region -= spanClip(view, r, view->visualRect(view->model()->index(row, column, view->rootIndex())));
        }
    }
    return region;
}
}

TableGrid::TableGrid(QTableView *view)
    : QObject(view), m_view(view)
{
}

void TableGrid::install(QTableView *view)
{
    if (view->gridStyle() != Qt::SolidLine)
        return;
    view->setGridStyle(Qt::NoPen);
    view->viewport()->installEventFilter(new TableGrid(view));
}

bool TableGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (m_painting || event->type() != QEvent::Paint || watched != m_view->viewport() || !m_view->showGrid()
        || m_view->gridStyle() != Qt::NoPen)
        return false;
    // The view paints its cells first: Qt's grid goes over a span's edge.
    m_painting = true;
    QCoreApplication::sendEvent(watched, event);
    m_painting = false;
    QPainter painter(m_view->viewport());
    paint(m_view, &painter, static_cast<QPaintEvent *>(event)->region());
    return true;
}

void TableGrid::paint(const QTableView *view, QPainter *painter, const QRegion &region)
{
    const QHeaderView *columns = view->horizontalHeader();
    const QHeaderView *rows = view->verticalHeader();
    if (!view->model() || columns->count() == 0 || rows->count() == 0 || !view->itemDelegate())
        return;
    const bool rightToLeft = view->isRightToLeft();
    const int lastX = columns->length() - columns->offset() - (rightToLeft ? 0 : 1);
    const int lastY = rows->length() - rows->offset() - 1;
    const QColor color = gridColor(view);
    const QRegion clip = outsideSpans(view);
    if (!clip.isNull())
        painter->setClipRegion(clip);

    for (QRect area : region) {
        area.setBottom(qMin(area.bottom(), lastY));
        if (rightToLeft)
            area.setLeft(qMax(area.left(), view->viewport()->width() - lastX));
        else
            area.setRight(qMin(area.right(), lastX));
        if (!area.isValid())
            continue;
        int left = columns->visualIndexAt(area.left());
        int right = columns->visualIndexAt(area.right());
        if (rightToLeft)
            std::swap(left, right);
        if (left == -1)
            left = 0;
        if (right == -1)
            right = columns->count() - 1;
        int bottom = rows->visualIndexAt(area.bottom());
        if (bottom == -1)
            bottom = rows->count() - 1;
        const int top = rows->visualIndexAt(area.top());
        if (top == -1 || top > bottom)
            continue;
        while (bottom > top && rows->isSectionHidden(rows->logicalIndex(bottom)))
            --bottom;

        for (int visual = top; visual <= bottom; ++visual) {
            const int row = rows->logicalIndex(visual);
            if (rows->isSectionHidden(row))
                continue;
            const int y = view->rowViewportPosition(row) + view->rowHeight(row) - 1;
            painter->fillRect(QRect(area.left(), y, area.width(), 1), color);
        }
        for (int visual = left; visual <= right; ++visual) {
            const int column = columns->logicalIndex(visual);
            if (columns->isSectionHidden(column))
                continue;
            int x = view->columnViewportPosition(column);
            if (!rightToLeft)
                x += view->columnWidth(column) - 1;
            painter->fillRect(QRect(x, area.top(), 1, area.height()), color);
        }
    }
}
