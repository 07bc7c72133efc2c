#pragma once
#include "materialdeviations.h"

#include <QAbstractTableModel>

class GeneralTableBase;
class GljBean;

// The project's materials: code, name, model (规格型号), unit, category,
// origin, manufacturer, brand, quantity, base price and adjusted price.
class MaterialTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { CodeColumn, NameColumn, SpecColumn, UnitColumn, CategoryColumn, OriginColumn, MakerColumn,
                  BrandColumn, QuantityColumn, BasePriceColumn, PriceColumn, ColumnCount };

    explicit MaterialTableModel(GeneralTableBase *table, QObject *parent = nullptr);
    ~MaterialTableModel() override;

    GljBean *materialAt(int row) const;
    QList<GljBean *> materials() const;

    // Adjusted prices that deviate from the last check's cloud prices by
    // more than the highlight rate are coloured.
    const MaterialDeviations &deviations() const { return m_deviations; }
    void setCheckResults(const QList<CloudCjyjcBean> &results);
    void setHighlightRate(const QString &rate);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    // The adjusted price (调价) is edited in place, one undo step per edit.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

private:
    void materialChanged(GljBean *material);
    QString cellText(const GljBean &m, int column) const;

    void refreshAll();

    GeneralTableBase *m_table;
    MaterialDeviations m_deviations;
};
