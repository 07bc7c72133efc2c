#pragma once
#include "pricecheckreportrow.h"

#include <QAbstractTableModel>
#include <QList>
#include <QStringList>
#include <QVector>

// The rows of the project unit-price check report; bills whose deviation lies
// beyond the limit are shaded. SortRole gives numbers for the price columns.
class PriceCheckReportModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { CodeColumn, NameColumn, UnitColumn, PriceColumn, AverageColumn, CountColumn, DeviationColumn };
    enum { SortRole = Qt::UserRole + 1, BeyondRole };

    explicit PriceCheckReportModel(QObject *parent = nullptr);

    void setRows(const QList<PriceCheckReportRow> &rows);
    QList<PriceCheckReportRow> rows() const { return m_rows; }
    const PriceCheckReportRow &rowAt(int row) const { return m_rows.at(row); }
    // Deviation limit in percent.
    void setLimit(double limit);
    double limit() const { return m_limit; }
    QList<BaseDataItem *> beyondBills() const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QVariant sortValue(int row, int column) const;

    QList<PriceCheckReportRow> m_rows;
    // Display texts, made once per row: sorting and filtering ask often.
    QVector<QStringList> m_texts;
    double m_limit = 10.0;
};
