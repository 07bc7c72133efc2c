#pragma once
#include "billupload.h"

#include <QString>

class LtdInfo;

// Stores bills in a named library of a cloud tier, made when missing: the
// item features (bill only) or the pricing schemes (full composition) of the
// selected bills, so that the cloud's matching finds them afterwards.
class TierBillStorage
{
public:
    static const QString FeatureLibrary;
    static const QString SchemeLibrary;

    TierBillStorage(LtdInfo *server, const QString &libraryName);

    // Opens a saving task in the library and uploads `bills`. On a refusal
    // the result's error carries the cloud's message.
    BillUpload::Result store(const QList<BaseDataItem *> &bills, int content) const;

private:
    QString libraryId(QString *error) const;

    LtdInfo *m_server;
    QString m_library;
};
