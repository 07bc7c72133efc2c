#include "ztabledelegate.h"
#include "interfaceadaptation.h"
#include "ztablecell.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {
int kindOf(const QModelIndex &index)
{
    return index.data(zTableCell::KindRole).toInt();
}
}

zTableDelegate::zTableDelegate(QObject *parent) : QStyledItemDelegate(parent)
{
}

QRect zTableDelegate::buttonRect(const QRect &cellRect)
{
    const int height = qMin(cellRect.height() - 4, InterfaceAdaptation::scaled(22));
    const int width = qMin(cellRect.width() - 6, InterfaceAdaptation::scaled(52));
    QRect rect(0, 0, qMax(0, width), qMax(0, height));
    rect.moveCenter(cellRect.center());
    return rect;
}

void zTableDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (kindOf(index) != zTableCell::ButtonCell) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem background = option;
    initStyleOption(&background, index);
    background.text.clear();
    const QWidget *widget = option.widget;
    QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &background, painter, widget);
    QStyleOptionButton button;
    button.rect = buttonRect(option.rect);
    button.text = index.data(Qt::DisplayRole).toString();
    button.state = QStyle::State_Enabled | QStyle::State_Raised;
    button.fontMetrics = option.fontMetrics;
    style->drawControl(QStyle::CE_PushButton, &button, painter, widget);
}

bool zTableDelegate::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                                 const QModelIndex &index)
{
    const int kind = kindOf(index);
    const bool release = event->type() == QEvent::MouseButtonRelease
                         && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton
                         && option.rect.contains(static_cast<QMouseEvent *>(event)->pos());
    const bool space = event->type() == QEvent::KeyPress
                       && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space;
    if (kind == zTableCell::CheckCell && (release || space) && (index.flags() & Qt::ItemIsUserCheckable)) {
        const auto current = Qt::CheckState(index.data(Qt::CheckStateRole).toInt());
        const Qt::CheckState next = current == Qt::Checked ? Qt::Unchecked : Qt::Checked;
        if (model->setData(index, int(next), Qt::CheckStateRole))
            emit checkBoxClicked(index, next);
        return true;
    }
    if (kind == zTableCell::ButtonCell && release
        && buttonRect(option.rect).contains(static_cast<QMouseEvent *>(event)->pos())) {
        emit buttonClicked(index);
        return true;
    }
    if (kind == zTableCell::LinkCell && release) {
        emit linkClicked(index);
        return true;
    }
    // Check cells must not fall through to the base class, which toggles too.
    if (kind == zTableCell::CheckCell && event->type() == QEvent::MouseButtonDblClick)
        return true;
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

void zTableDelegate::applyColumnWidths(QHeaderView *header)
{
    const QAbstractItemModel *model = header->model();
    if (!model)
        return;
    for (int section = 0; section < header->count(); ++section) {
        const int width = model->headerData(section, header->orientation(), zTableCell::WidthRole).toInt();
        if (width > 0)
            header->resizeSection(section, InterfaceAdaptation::scaled(width));
    }
}
