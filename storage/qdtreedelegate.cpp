#include "qdtreedelegate.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QTreeView>

QDTreeDelegate::QDTreeDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

void QDTreeDelegate::setExpandIcon(const QString &path)
{
    m_expandIcon = path;
}

void QDTreeDelegate::setcollapseIcon(const QString &path)
{
    m_collapseIcon = path;
}

void QDTreeDelegate::setIconSize(const QSize &size)
{
    m_iconWidth = size.width();
    m_iconHeight = size.height();
}

void QDTreeDelegate::setView(QTreeView *view)
{
    m_view = view;
    // Mouse moves reach the delegate only with tracking on (pointing hand).
    if (view)
        view->setMouseTracking(true);
}

QRect QDTreeDelegate::arrowRect(const QRect &cell) const
{
    return QRect(cell.left() + cell.width() - 30, cell.top() + (cell.height() - m_iconHeight) / 2, m_iconWidth,
                 m_iconHeight);
}

bool QDTreeDelegate::hasChildren(const QAbstractItemModel *model, const QModelIndex &index) const
{
    return model && index.isValid() && model->hasChildren(index);
}

void QDTreeDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem opt(option);
    opt.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, opt, index);
    if (!m_view || !hasChildren(index.model(), index))
        return;
    const QString path = m_view->isExpanded(index) ? m_expandIcon : m_collapseIcon;
    const QPixmap pixmap(path);
    if (!pixmap.isNull())
        painter->drawPixmap(arrowRect(option.rect), pixmap);
}

bool QDTreeDelegate::editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                                 const QModelIndex &index)
{
    const bool press = event->type() == QEvent::MouseButtonPress;
    const bool move = event->type() == QEvent::MouseMove;
    if (press || move) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        const bool onArrow = arrowRect(option.rect).contains(mouse->pos());
        const bool children = hasChildren(model, index);
        if (press && onArrow && children)
            emit expanded(index);
        if (move && m_view) {
            if (onArrow && !children)
                return false;
            if (onArrow)
                m_view->viewport()->setCursor(Qt::PointingHandCursor);
            else
                m_view->viewport()->unsetCursor();
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}
