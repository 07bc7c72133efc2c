#pragma once
#include <hostapi/ltdinfo.h>
#include <hostapi/tqdnodeinfo.h>

#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>

class BaseDataItem;
class JJBTableBase;

// Batch intelligent pricing of a project without a window: which bills take
// part, the match request of each, the best match read from each reply and
// the summary rows. Requests are built on the GUI thread; the replies may be
// fetched anywhere (BatchPricingRun) and handed back in request order.
class BatchPricing
{
public:
    enum Outcome { Pending, Applied, NoMatch, Skipped };
    struct Row
    {
        BaseDataItem *bill = nullptr;
        Outcome outcome = Pending;
        QString note;
        double before = 0.0;
        QJsonObject match;
    };

    BatchPricing(const LtdInfo &server, bool skipPriced, int gcType, const QStringList &projectIds,
                 const TQDNodeInfo &attributes);

    // One row per bill; bills that do not take part are skipped with the reason.
    void plan(const QList<BaseDataItem *> &bills, const std::function<JJBTableBase *(BaseDataItem *)> &tableOf);
    // The envelopes of the pending rows, in row order: `count` of them (all
    // when negative) from the pending row `first` on.
    QList<QJsonObject> requests(int first = 0, int count = -1) const;
    // The replies to requests(), in the same order. Returns the first refusal's
    // message (empty when none).
    QString takeReplies(const QList<QJsonObject> &replies);
    // The applied rows' bills with their best matches.
    QList<QPair<BaseDataItem *, QJsonObject>> choices() const;

    QList<Row> rows() const { return m_rows; }
    int count(Outcome outcome) const;
    // "已组价 3 条，未匹配 1 条，跳过 2 条"
    QString summaryText() const;
    static QString outcomeText(Outcome outcome);

private:
    QString skipReason(const BaseDataItem *bill, JJBTableBase *table) const;

    LtdInfo m_server;
    bool m_skipPriced;
    int m_gcType;
    QStringList m_projectIds;
    TQDNodeInfo m_attributes;
    QList<Row> m_rows;
};
