#pragma once
#include <cloud/cloudrequest.h>

#include <hostapi/tqdnodeinfo.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

class BaseDataItem;
class CloudZjBean;
class JJBTableBase;
class LtdInfo;

// The "getppqd" match of one bill: the project's pricing attributes, the
// sources and the keyword that go into "cond", and the bill itself. Built on
// the GUI thread; the request may then be sent from any thread.
class PricingMatch
{
public:
    TQDNodeInfo attributes;
    // 1 standard bills, 2 accumulated project bills, 3 both.
    int qdly = 0;
    QStringList projectIds;
    QString keyword;

    CloudRequest request(const LtdInfo *server, const BaseDataItem *bill) const;
    QJsonObject condition(const BaseDataItem *bill) const;
    static QJsonObject billObject(const BaseDataItem *bill);
    // The bill's kind upper-cased, "自编" for a self-made bill.
    static QString subjectCode(const BaseDataItem *bill);

    // A bill row that is not marked for temporary removal.
    static bool canMatch(const BaseDataItem *bill);
    // Inside the organisation-measure part of the measure table.
    static bool isOrganisationMeasure(const BaseDataItem *bill, const JJBTableBase *table);

    // The source-project information of a matched bill on `server`'s tier.
    static CloudRequest projectInfoRequest(const LtdInfo *server, const CloudZjBean &bill);
};
