#pragma once
#include <QStyledItemDelegate>

// Text rows of the cloud result grid: 10 pixels taller than the wrapped text.
class CustomItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
