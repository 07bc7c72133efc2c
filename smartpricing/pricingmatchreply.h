#pragma once
#include <hostapi/cloudzjbean.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QList>

// The matched bills of a "getppqd" reply, best first: the raw objects (what
// "选用" hands to the host) and the beans the list and the tabs show.
class PricingMatchReply
{
public:
    PricingMatchReply() = default;
    explicit PricingMatchReply(const QJsonArray &data);

    QJsonArray data() const { return m_data; }
    QList<CloudZjBean> bills() const { return m_bills; }
    int size() const { return m_bills.size(); }
    bool contains(int row) const { return row >= 0 && row < m_data.size(); }
    QJsonObject object(int row) const { return m_data.at(row).toObject(); }
    const CloudZjBean &bill(int row) const { return m_bills.at(row); }

private:
    QJsonArray m_data;
    QList<CloudZjBean> m_bills;
};
