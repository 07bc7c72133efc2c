#include "hostcontext.h"
#include "materialtablemodel.h"
#include "projectdocument.h"

#include <QItemSelectionModel>

#include <set>

void HostContext::setCurrentBill(BaseDataItem *bill)
{
    currentBill = bill;
    if (project)
        currentTable = project->tableOf(bill);
    if (onCurrentBillChanged)
        onCurrentBillChanged(bill);
}

QString HostContext::sjkm() const
{
    if (!currentBill)
        return QString();
    if (currentBill->IsSelfMade())
        return QStringLiteral("自编");
    return currentBill->text(BaseDataItem::KindRole).toUpper();
}

QString HostContext::scopeLabel() const
{
    return currentTable ? currentTable->GetName() : QString();
}

QList<GljBean *> HostContext::selectedMaterials() const
{
    QList<GljBean *> out;
    if (!materials || !materialSelection)
        return out;
    std::set<int> rows;
    for (const QModelIndex &cell : materialSelection->selectedIndexes())
        rows.insert(cell.row());
    for (int row : rows)
        if (GljBean *m = materials->materialAt(row))
            out << m;
    return out;
}
