#include "pricingmatchreply.h"

PricingMatchReply::PricingMatchReply(const QJsonArray &data)
{
    // Anything but an object is no bill: it would list as an empty row whose
    // id 0 the follow-up requests then ask the cloud about.
    for (const QJsonValue &bill : data) {
        if (!bill.isObject())
            continue;
        m_data.append(bill);
        m_bills.append(CloudZjBean::fromJson(bill.toObject()));
    }
}
