#include "pricecheckreportmodel.h"
#include "pricecheckreport.h"

#include <QBrush>
#include <QColor>

#include <limits>

PriceCheckReportModel::PriceCheckReportModel(QObject *parent) : QAbstractTableModel(parent) {}

void PriceCheckReportModel::setRows(const QList<PriceCheckReportRow> &rows)
{
    beginResetModel();
    m_rows = rows;
    m_texts.clear();
    m_texts.reserve(rows.size());
    for (const PriceCheckReportRow &row : rows)
        m_texts.append(PriceCheckReport::cells(row));
    endResetModel();
}

void PriceCheckReportModel::setLimit(double limit)
{
    // An unchanged limit changes no row; the sorted view would re-sort them all.
    if (qFuzzyCompare(m_limit, limit))
        return;
    m_limit = limit;
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(m_rows.size() - 1, DeviationColumn));
}

QList<BaseDataItem *> PriceCheckReportModel::beyondBills() const
{
    QList<BaseDataItem *> bills;
    for (const PriceCheckReportRow &row : m_rows) {
        if (PriceCheckReport::isBeyond(row, m_limit))
            bills.append(row.bill);
    }
    return bills;
}

int PriceCheckReportModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int PriceCheckReportModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : DeviationColumn + 1;
}

QVariant PriceCheckReportModel::sortValue(int r, int column) const
{
    const PriceCheckReportRow &row = m_rows.at(r);
    switch (column) {
    case PriceColumn:
        return row.ownPrice;
    case AverageColumn:
        return row.averageText.isEmpty() ? -1.0 : row.average;
    case CountColumn:
        return row.cloudCount;
    case DeviationColumn:
        return row.hasDeviation ? row.deviation : std::numeric_limits<double>::lowest();
    default:
        return m_texts.at(r).value(column);
    }
}

QVariant PriceCheckReportModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return QVariant();
    const PriceCheckReportRow &row = m_rows.at(index.row());
    const bool beyond = PriceCheckReport::isBeyond(row, m_limit);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return m_texts.at(index.row()).value(index.column());
    case SortRole:
        return sortValue(index.row(), index.column());
    case BeyondRole:
        return beyond;
    case Qt::TextAlignmentRole:
        return index.column() >= PriceColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                             : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::BackgroundRole:
        return beyond ? QBrush(QColor(0xFD, 0xE2, 0xE2)) : QVariant();
    case Qt::ForegroundRole:
        return beyond && index.column() == DeviationColumn ? QBrush(Qt::red) : QVariant();
    default:
        return QVariant();
    }
}

QVariant PriceCheckReportModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return PriceCheckReport::headers().value(section);
}
