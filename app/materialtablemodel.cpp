#include "materialtablemodel.h"

#include <hostapi/generaltablebase.h>
#include <hostapi/round.h>
#include <hostapi/rurecordcontrol.h>

#include <QColor>

MaterialTableModel::MaterialTableModel(GeneralTableBase *table, QObject *parent)
    : QAbstractTableModel(parent), m_table(table)
{
    if (m_table)
        m_table->setChangeObserver([this](GljBean *m) { materialChanged(m); });
}

MaterialTableModel::~MaterialTableModel()
{
    if (m_table)
        m_table->setChangeObserver(nullptr);
}

GljBean *MaterialTableModel::materialAt(int row) const
{
    if (!m_table || row < 0 || row >= m_table->materials().size())
        return nullptr;
    return m_table->materials().at(row);
}

QList<GljBean *> MaterialTableModel::materials() const
{
    return m_table ? m_table->materials() : QList<GljBean *>();
}

void MaterialTableModel::setCheckResults(const QList<CloudCjyjcBean> &results)
{
    m_deviations.setResults(results);
    refreshAll();
}

void MaterialTableModel::setHighlightRate(const QString &rate)
{
    m_deviations.setRate(rate);
    refreshAll();
}

void MaterialTableModel::refreshAll()
{
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

int MaterialTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_table ? 0 : m_table->materials().size();
}

int MaterialTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString MaterialTableModel::cellText(const GljBean &m, int column) const
{
    switch (column) {
    case CodeColumn: return m.GetBh();
    case NameColumn: return m.GetClmc();
    case SpecColumn: return m.GetGgxh();
    case UnitColumn: return m.GetDw();
    case CategoryColumn: return m.GetZhfl();
    case OriginColumn: return m.GetCd();
    case MakerColumn: return m.GetCj();
    case BrandColumn: return m.GetPp();
    case QuantityColumn: return Round(m.GetSl(), 3, false);
    case BasePriceColumn: return Round(m.GetDj(), 2, true);
    case PriceColumn: return Round(m.GetTj(), 2, true);
    default: return QString();
    }
}

QVariant MaterialTableModel::data(const QModelIndex &index, int role) const
{
    const GljBean *m = index.isValid() ? materialAt(index.row()) : nullptr;
    if (!m)
        return QVariant();
    if (role == Qt::EditRole && index.column() == PriceColumn)
        return QString::number(m->GetTj(), 'g', 15);
    if (role == Qt::ToolTipRole && index.column() == PriceColumn && m_deviations.deviation(*m))
        return QStringLiteral("%1（偏差率%2%）").arg(cellText(*m, PriceColumn), Round(*m_deviations.deviation(*m), 2, true));
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return cellText(*m, index.column());
    if (role == Qt::BackgroundRole && index.column() == PriceColumn && m_deviations.standing(*m) != 0)
        return m_deviations.standing(*m) > 0 ? QColor(0xFD, 0xE2, 0xE2) : QColor(0xE1, 0xEC, 0xFD);
    if (role == Qt::TextAlignmentRole && index.column() >= QuantityColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return QVariant();
}

QVariant MaterialTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    static const char *const titles[] = {"编码", "名称", "规格型号", "单位", "类别", "产地",
                                         "厂家", "品牌", "数量", "定额价", "调价"};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount)
        return QVariant();
    return QString::fromUtf8(titles[section]);
}

Qt::ItemFlags MaterialTableModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags f = QAbstractTableModel::flags(index);
    return index.isValid() && index.column() == PriceColumn ? f | Qt::ItemIsEditable : f;
}

bool MaterialTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    GljBean *material = index.isValid() ? materialAt(index.row()) : nullptr;
    bool ok = false;
    const double price = value.toString().trimmed().remove(QChar(',')).toDouble(&ok);
    if (role != Qt::EditRole || index.column() != PriceColumn || !material || !ok)
        return false;
    GljBean values = *material;
    values.SetTj(price);
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(m_table, 0, QStringLiteral("修改材料价格")));
    m_table->updateMaterial(material, values);
    RURecordControl::EndRecord();
    return true;
}

void MaterialTableModel::materialChanged(GljBean *material)
{
    const int row = m_table->materials().indexOf(material);
    if (row >= 0)
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
}
