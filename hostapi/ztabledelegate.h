#pragma once
#include <QStyledItemDelegate>

class QHeaderView;

// Draws and drives the special cells of the host table and tree views: a
// push button for kind 5007, and a click anywhere in a check-box cell (5006)
// toggles it. Used by zTableView and zTreeView.
class zTableDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit zTableDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

    // The rectangle of the push button drawn in a cell of `cellRect`.
    static QRect buttonRect(const QRect &cellRect);
    // Sets each section to its declared width (header zTableCell::WidthRole), scaled.
    static void applyColumnWidths(QHeaderView *header);

signals:
    // The check cell's state after the click, already stored in the model.
    void checkBoxClicked(const QModelIndex &index, Qt::CheckState state);
    void buttonClicked(const QModelIndex &index);
    void linkClicked(const QModelIndex &index);
};
