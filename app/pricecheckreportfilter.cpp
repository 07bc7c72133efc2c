#include "pricecheckreportfilter.h"
#include "pricecheckreportmodel.h"

PriceCheckReportFilter::PriceCheckReportFilter(QObject *parent) : QSortFilterProxyModel(parent)
{
    setSortRole(PriceCheckReportModel::SortRole);
    setDynamicSortFilter(true);
}

void PriceCheckReportFilter::setText(const QString &text)
{
    m_text = text.trimmed();
    invalidateFilter();
}

void PriceCheckReportFilter::setOnlyBeyond(bool only)
{
    m_onlyBeyond = only;
    invalidateFilter();
}

bool PriceCheckReportFilter::filterAcceptsRow(int sourceRow, const QModelIndex &sourceParent) const
{
    const QAbstractItemModel *model = sourceModel();
    if (m_onlyBeyond && !model->index(sourceRow, 0, sourceParent).data(PriceCheckReportModel::BeyondRole).toBool())
        return false;
    if (m_text.isEmpty())
        return true;
    for (int column : {PriceCheckReportModel::CodeColumn, PriceCheckReportModel::NameColumn}) {
        if (model->index(sourceRow, column, sourceParent).data().toString().contains(m_text, Qt::CaseInsensitive))
            return true;
    }
    return false;
}
