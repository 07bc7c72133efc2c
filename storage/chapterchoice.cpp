#include "chapterchoice.h"

namespace {
QString oneChapter()
{
    return QStringLiteral("请选择一个章节");
}
QString leafChapter()
{
    return QStringLiteral("请选择末级章节");
}
}

QString ChapterChoice::refusal() const
{
    bool root = true;
    bool replacing = false;
    if (!gml) {
        root = false;
        replacing = replace;
    } else if (childZj && !replace) {
        root = false;
        if (!hasChapter())
            return oneChapter();
    }
    if (!finalTree && !root && !replacing) {
        if (!radZjxx)
            return leafChapter();
        return hasChapter() ? leafChapter() : oneChapter();
    }
    if (radZjxx && !hasChapter())
        return oneChapter();
    return QString();
}
