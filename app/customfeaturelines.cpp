#include "customfeaturelines.h"

#include <features/featurestore.h>

#include <hostapi/basedataitem.h>
#include <hostapi/sqlaccess.h>

QString CustomFeatureLines::tableOf(const BaseDataItem *bill)
{
    const QString library = bill ? FeatureStore::libraryOf(bill->text(BaseDataItem::KindRole)) : QString();
    if (library.isEmpty())
        return QString();
    return FeatureStore::customTable(FeatureStore::libraryPath(library), QString());
}

bool CustomFeatureLines::add(const BaseDataItem *bill, const QString &text)
{
    const QString table = tableOf(bill);
    if (table.isEmpty() || text.trimmed().isEmpty())
        return false;
    FeatureStore::ensureTables();
    DBM::clsDAC db(FeatureStore::userDatabasePath());
    db.execPrepared(QStringLiteral("INSERT INTO %1 (Xmbh, Xmmc, Xmtz) VALUES (?, '', ?)").arg(table),
                    {bill->text(BaseDataItem::CodeRole), text.trimmed()});
    return true;
}
