#pragma once
#include <QObject>

class QPainter;
class QRegion;
class QTableView;

// Draws a table view's grid in Qt's place: the same lines, each as one fill.
// The raster engine strokes a pen line a pixel at a time, which made the
// grid most of a table's first paint. install() sets the view's grid pen to
// Qt::NoPen and draws the lines over the view's own paint; a view given
// another grid style draws its own grid again.
class TableGrid : public QObject
{
public:
    static void install(QTableView *view);
    // The grid of `view` within `region` (viewport coordinates).
    static void paint(const QTableView *view, QPainter *painter, const QRegion &region);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit TableGrid(QTableView *view);

    QTableView *m_view;
    bool m_painting = false;
};
