#include "batchpricingrun.h"

#include <hostapi/cloudenvelope.h>

#include <QJsonArray>

void BatchPricingRun::start(const QList<QJsonObject> &requests)
{
    m_replies.clear();
    m_best.clear();
    const auto work = std::make_shared<Work>();
    m_work = work;
    startJob([work, requests](const Step &step) {
        for (const QJsonObject &request : requests) {
            const QJsonObject reply = CloudEnvelope::send(request);
            work->replies.append(reply);
            const QJsonArray matches = reply.value(QStringLiteral("data")).toArray();
            work->best.append(matches.isEmpty() ? CompositionWriter::Values()
                                                : CompositionWriter::prepare(matches.first().toObject()));
            // A server that does not answer will not answer the next bill either.
            if (reply.isEmpty())
                break;
            if (!step(work->replies.size(), requests.size()))
                return false;
        }
        return true;
    });
}

void BatchPricingRun::deliver()
{
    m_replies = m_work->replies;
    m_best = m_work->best;
}

QList<QJsonObject> BatchPricingRun::takeReplies()
{
    QList<QJsonObject> replies;
    replies.swap(m_replies);
    return replies;
}

QList<CompositionWriter::Values> BatchPricingRun::takeBest()
{
    QList<CompositionWriter::Values> best;
    best.swap(m_best);
    return best;
}
