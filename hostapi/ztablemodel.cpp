#include "ztablemodel.h"

zTableModel::zTableModel(QObject *parent) : QAbstractTableModel(parent)
{
}

bool zTableModel::addColumn(const QString &title, const QString &key, int width, int kind)
{
    if (kind != zTableCell::ColumnKind || key.isEmpty() || columnOf(key) >= 0)
        return false;
    const int column = m_columns.size();
    beginInsertColumns(QModelIndex(), column, column);
    m_columns << zTableColumn(title, key, width, kind);
    for (QVector<zTableCell> &cells : m_rows)
        cells.append(zTableCell());
    endInsertColumns();
    return true;
}

int zTableModel::columnOf(const QString &key) const
{
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns.at(i).key == key)
            return i;
    return -1;
}

void zTableModel::clearAll()
{
    beginResetModel();
    m_columns.clear();
    m_rows.clear();
    m_rowData.clear();
    m_spans.clear();
    endResetModel();
    emit spansChanged();
}

int zTableModel::addRow()
{
    const int row = m_rows.size();
    beginInsertRows(QModelIndex(), row, row);
    m_rows.append(QVector<zTableCell>(m_columns.size()));
    m_rowData.append(QVariant());
    endInsertRows();
    return row;
}

bool zTableModel::appendCell(const QString &key, const QVariant &value, int kind)
{
    if (columnOf(key) < 0 || !zTableCell::isValidKind(kind))
        return false;
    if (m_rows.isEmpty())
        addRow();
    return setCell(m_rows.size() - 1, key, value, kind);
}

bool zTableModel::setCell(int row, const QString &key, const QVariant &value, int kind)
{
    const int column = columnOf(key);
    if (!validRow(row) || column < 0 || !zTableCell::isValidKind(kind))
        return false;
    zTableCell &c = m_rows[row][column];
    c.value = value;
    c.kind = kind;
    cellChanged(row, column);
    return true;
}

void zTableModel::removeRowAt(int row)
{
    if (!validRow(row))
        return;
    beginRemoveRows(QModelIndex(), row, row);
    m_rows.remove(row);
    m_rowData.remove(row);
    endRemoveRows();
    // Spans that touch the row are dropped, later ones move up.
    QList<QRect> kept;
    for (QRect span : qAsConst(m_spans)) {
        if (row >= span.top() && row <= span.bottom())
            continue;
        if (span.top() > row)
            span.translate(0, -1);
        kept << span;
    }
    if (kept != m_spans) {
        m_spans = kept;
        emit spansChanged();
    }
}

void zTableModel::clearRows()
{
    beginResetModel();
    m_rows.clear();
    m_rowData.clear();
    m_spans.clear();
    endResetModel();
    emit spansChanged();
}

zTableCell zTableModel::cell(int row, int column) const
{
    if (!validRow(row) || column < 0 || column >= m_columns.size())
        return zTableCell();
    return m_rows.at(row).at(column);
}

QVariant zTableModel::cellValue(int row, const QString &key) const
{
    return cell(row, columnOf(key)).value;
}

int zTableModel::cellKind(int row, const QString &key) const
{
    return cell(row, columnOf(key)).kind;
}

void zTableModel::setRowData(int row, const QVariant &data)
{
    if (!validRow(row))
        return;
    m_rowData[row] = data;
    if (!m_columns.isEmpty())
        emit dataChanged(index(row, 0), index(row, m_columns.size() - 1), {zTableCell::RowDataRole});
}

QVariant zTableModel::rowData(int row) const
{
    return m_rowData.value(row);
}

void zTableModel::setCellForeground(int row, const QString &key, const QColor &color)
{
    const int column = columnOf(key);
    if (!validRow(row) || column < 0)
        return;
    m_rows[row][column].foreground = color;
    cellChanged(row, column, {Qt::ForegroundRole});
}

void zTableModel::setCellBackground(int row, const QString &key, const QColor &color)
{
    const int column = columnOf(key);
    if (!validRow(row) || column < 0)
        return;
    m_rows[row][column].background = color;
    cellChanged(row, column, {Qt::BackgroundRole});
}

void zTableModel::setRowForeground(int row, const QColor &color)
{
    if (!validRow(row) || m_columns.isEmpty())
        return;
    for (zTableCell &c : m_rows[row])
        c.foreground = color;
    emit dataChanged(index(row, 0), index(row, m_columns.size() - 1), {Qt::ForegroundRole});
}

bool zTableModel::setCheckState(int row, const QString &key, Qt::CheckState state)
{
    const int column = columnOf(key);
    if (!validRow(row) || column < 0 || m_rows.at(row).at(column).kind != zTableCell::CheckCell)
        return false;
    zTableCell &c = m_rows[row][column];
    if (c.checkState != state) {
        c.checkState = state;
        cellChanged(row, column, {Qt::CheckStateRole});
    }
    return true;
}

bool zTableModel::setCheckState(const QModelIndex &index, Qt::CheckState state)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    return setCheckState(index.row(), m_columns.at(index.column()).key, state);
}

Qt::CheckState zTableModel::checkState(int row, const QString &key) const
{
    return cell(row, columnOf(key)).checkState;
}

QList<int> zTableModel::checkedRows(const QString &key) const
{
    QList<int> rows;
    const int column = columnOf(key);
    for (int row = 0; column >= 0 && row < m_rows.size(); ++row)
        if (m_rows.at(row).at(column).kind == zTableCell::CheckCell
            && m_rows.at(row).at(column).checkState == Qt::Checked)
            rows << row;
    return rows;
}

bool zTableModel::setSpan(int row, const QString &key, int rowSpan, int columnSpan)
{
    const int column = columnOf(key);
    if (!validRow(row) || column < 0 || rowSpan < 1 || columnSpan < 1 || row + rowSpan > m_rows.size()
        || column + columnSpan > m_columns.size())
        return false;
    const QRect span(column, row, columnSpan, rowSpan);
    for (const QRect &other : qAsConst(m_spans))
        if (other.intersects(span))
            return false;
    m_spans << span;
    emit spansChanged();
    return true;
}

int zTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int zTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant zTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return QVariant();
    if (role == zTableCell::KeyRole)
        return m_columns.at(index.column()).key;
    if (role == zTableCell::RowDataRole)
        return m_rowData.at(index.row());
    return m_rows.at(index.row()).at(index.column()).data(role);
}

bool zTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    return setCheckState(index, Qt::CheckState(value.toInt()));
}

Qt::ItemFlags zTableModel::flags(const QModelIndex &index) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return Qt::NoItemFlags;
    return m_rows.at(index.row()).at(index.column()).flags();
}

QVariant zTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size())
        return QAbstractTableModel::headerData(section, orientation, role);
    return m_columns.at(section).headerData(role);
}

void zTableModel::cellChanged(int row, int column, const QVector<int> &roles)
{
    const QModelIndex i = index(row, column);
    emit dataChanged(i, i, roles);
}
