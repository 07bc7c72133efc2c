#include "pricingmatchreply.h"

PricingMatchReply::PricingMatchReply(const QJsonArray &data)
    : m_data(data)
{
    for (const QJsonValue &bill : data)
        m_bills.append(CloudZjBean::fromJson(bill.toObject()));
}
