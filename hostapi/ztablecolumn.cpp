#include "ztablecolumn.h"
#include "ztablecell.h"

QString zTableColumn::displayTitle() const
{
    QString shown = title;
    return shown.replace(QLatin1Char('|'), QLatin1Char('\n'));
}

QVariant zTableColumn::headerData(int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return displayTitle();
    case zTableCell::TitleRole:
        return title;
    case zTableCell::KeyRole:
        return key;
    case zTableCell::WidthRole:
        return width;
    default:
        return QVariant();
    }
}
