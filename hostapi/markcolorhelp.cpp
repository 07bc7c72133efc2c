#include "markcolorhelp.h"

namespace {
// Distinct on white rows and under the selection colour.
const char *const kColors[markColorHelp::ColorCount] = {"#FF4D4F", "#FA8C16", "#FADB14",
                                                        "#52C41A", "#1890FF", "#722ED1"};
const char16_t kCircled[markColorHelp::ColorCount] = {u'①', u'②', u'③', u'④', u'⑤', u'⑥'};
}

QString markColorHelp::GetColorPath(int index)
{
    if (index < 0 || index >= ColorCount)
        return QString();
    return QString::fromLatin1(kColors[index]);
}

QString markColorHelp::GetColorName(int index)
{
    if (index < 0 || index >= ColorCount)
        return QString();
    return QStringLiteral("标记色") + QChar(kCircled[index]);
}
