#include "featuregridlayout.h"

#include <algorithm>

int FeatureGridLayout::rowCount(int lines)
{
    if (lines <= 0)
        return 0;
    return lines % 2 == 0 ? std::min(lines, LinesPerPage) : std::min(lines, LinesPerPage - 1) + 1;
}

int FeatureGridLayout::lineAt(int row, int column)
{
    if (row < 0 || row % 2 == 0 || column < 0 || column > 1)
        return -1;
    return (row / 2) * 2 + column;
}

int FeatureGridLayout::pageCount(int entries)
{
    return entries <= 0 ? 0 : (entries + EntriesPerPage - 1) / EntriesPerPage;
}
