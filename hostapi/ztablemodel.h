#pragma once
#include "ztablecell.h"
#include "ztablecolumn.h"

#include <QAbstractTableModel>
#include <QList>
#include <QRect>
#include <QVector>

// The host table model that dialogs fill.
//
// Columns are declared once, in order, with title, key, width and the column
// kind 5003:
//     model->addColumn("序号", "xh", 50, 5003);
// Rows are then appended cell by cell under the column keys, each with its cell
// kind (5004 text, 5005 number, 5006 check box, 5007 push button, 5008 link;
// see zTableCell):
//     const int row = model->addRow();
//     model->appendCell("xh", 1, 5004);
//     model->appendCell("zhdj", "100.00", 5005);
// appendCell fills the last row (making one when there is none); a key that
// names no column is an error (false, nothing changes). Cells never appended
// are empty text cells.
//
// Rows may carry data of their own (setRowData), colours per cell or row,
// check states (setCheckState; the view toggles them on a click) and spans,
// which the view applies whenever they or the rows change.
class zTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit zTableModel(QObject *parent = nullptr);

    // Columns. addColumn refuses (false) a key already declared or a kind
    // other than 5003.
    bool addColumn(const QString &title, const QString &key, int width, int kind = zTableCell::ColumnKind);
    QList<zTableColumn> columns() const { return m_columns; }
    zTableColumn column(int column) const { return m_columns.value(column); }
    int columnOf(const QString &key) const;
    // Removes every row and column.
    void clearAll();

    // Rows.
    int addRow();
    bool appendCell(const QString &key, const QVariant &value, int kind = zTableCell::TextCell);
    bool setCell(int row, const QString &key, const QVariant &value, int kind = zTableCell::TextCell);
    void removeRowAt(int row);
    // Removes every row (and span), keeps the columns.
    void clearRows();

    zTableCell cell(int row, int column) const;
    QVariant cellValue(int row, const QString &key) const;
    int cellKind(int row, const QString &key) const;
    void setRowData(int row, const QVariant &data);
    QVariant rowData(int row) const;

    // Colours: an invalid colour restores the default.
    void setCellForeground(int row, const QString &key, const QColor &color);
    void setCellBackground(int row, const QString &key, const QColor &color);
    void setRowForeground(int row, const QColor &color);

    // Check-box cells only; false for any other cell.
    bool setCheckState(int row, const QString &key, Qt::CheckState state);
    bool setCheckState(const QModelIndex &index, Qt::CheckState state);
    Qt::CheckState checkState(int row, const QString &key) const;
    // Rows whose check cell under `key` is checked.
    QList<int> checkedRows(const QString &key) const;

    // Spans: the cell at (row, key) covers rowSpan x columnSpan cells. Each
    // rect is (column, row, columnSpan, rowSpan).
    bool setSpan(int row, const QString &key, int rowSpan, int columnSpan);
    QList<QRect> spans() const { return m_spans; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

signals:
    void spansChanged();

private:
    bool validRow(int row) const { return row >= 0 && row < m_rows.size(); }
    void cellChanged(int row, int column, const QVector<int> &roles = {});

    QList<zTableColumn> m_columns;
    QVector<QVector<zTableCell>> m_rows;
    QVector<QVariant> m_rowData;
    QList<QRect> m_spans;
};
