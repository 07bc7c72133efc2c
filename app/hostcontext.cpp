#include "hostcontext.h"
#include "projectdocument.h"

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
