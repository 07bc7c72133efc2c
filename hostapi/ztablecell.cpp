#include "ztablecell.h"

#include <QBrush>
#include <QFont>

namespace {
const QColor kLinkColor(0x33, 0x70, 0xFF);
}

QVariant zTableCell::data(int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return value.toString();
    case Qt::CheckStateRole:
        return kind == CheckCell ? QVariant(int(checkState)) : QVariant();
    case Qt::TextAlignmentRole:
        if (kind == NumberCell)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return int((kind == ButtonCell ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        if (foreground.isValid())
            return QBrush(foreground);
        return kind == LinkCell ? QVariant(QBrush(kLinkColor)) : QVariant();
    case Qt::BackgroundRole:
        return background.isValid() ? QVariant(QBrush(background)) : QVariant();
    case Qt::FontRole:
        if (kind == LinkCell) {
            QFont font;
            font.setUnderline(true);
            return font;
        }
        return QVariant();
    case KindRole:
        return kind;
    case ValueRole:
        return value;
    default:
        return QVariant();
    }
}

Qt::ItemFlags zTableCell::flags() const
{
    Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (kind == CheckCell)
        f |= Qt::ItemIsUserCheckable;
    return f;
}
