#pragma once
#include <QColor>
#include <QVariant>

// One cell of the host table and tree models, and the codes the host uses for
// column declarations and cell kinds:
//   5003  a column declaration (zTableColumn)
//   5004  text cell, left aligned
//   5005  number cell, right aligned (the value is shown as given)
//   5006  check-box cell (the value is an optional caption)
//   5007  push-button cell (the value is the button caption, e.g. "查看")
//   5008  link cell (blue underlined text)
class zTableCell
{
public:
    enum Kind { ColumnKind = 5003, TextCell = 5004, NumberCell = 5005, CheckCell = 5006, ButtonCell = 5007, LinkCell = 5008 };
    // Extra item-data roles answered by the models.
    enum Role {
        KindRole = Qt::UserRole + 100, // int: the cell kind
        KeyRole,                       // QString: the column key
        ValueRole,                     // QVariant: the value as appended
        TitleRole,                     // QString: a column title as declared (headerData)
        RowDataRole,                   // QVariant: the row's own data (setRowData)
        WidthRole                      // int: a column's declared width (headerData)
    };

    zTableCell() = default;
    zTableCell(const QVariant &value, int kind) : value(value), kind(kind) {}

    static bool isValidKind(int kind) { return kind >= TextCell && kind <= LinkCell; }

    // What the models answer for this cell in `role` (display text, check
    // state, colours, alignment, kind, raw value); key and row data are the
    // model's.
    QVariant data(int role) const;
    Qt::ItemFlags flags() const;

    QVariant value;
    int kind = TextCell;
    QColor foreground;
    QColor background;
    Qt::CheckState checkState = Qt::Unchecked;
};
