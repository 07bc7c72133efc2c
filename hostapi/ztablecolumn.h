#pragma once
#include <QString>
#include <QVariant>

// A declared column of a host table or tree model: header title (a "|" splits
// a two-level title such as "综合|单价"), the key its cells are appended under,
// the unscaled width in pixels and the declaration kind 5003.
class zTableColumn
{
public:
    zTableColumn() = default;
    zTableColumn(const QString &title, const QString &key, int width, int kind = 5003)
        : title(title), key(key), width(width), kind(kind)
    {
    }

    // The title as the header shows it: the two levels one above the other.
    QString displayTitle() const;
    // The header value of this column for `role` (display text, title, key, width).
    QVariant headerData(int role) const;

    QString title;
    QString key;
    int width = 100;
    int kind = 5003;
};
