#pragma once
#include <QString>

// The host's bill mark colours, offered as "标记色①" … "标记色⑥".
class markColorHelp
{
public:
    static constexpr int ColorCount = 6;
    // Colour of mark `index` (0-based, 0 = 标记色①) as "#RRGGBB"; empty text
    // for an index outside 0..5.
    static QString GetColorPath(int index);
    // Caption of mark `index`: "标记色①" …; empty text outside 0..5.
    static QString GetColorName(int index);
};
