#include "ztablecolumn.h"

QString zTableColumn::displayTitle() const
{
    QString shown = title;
    return shown.replace(QLatin1Char('|'), QLatin1Char('\n'));
}
