#include "batchpricingrun.h"

#include <hostapi/cloudenvelope.h>

void BatchPricingRun::start(const QList<QJsonObject> &requests)
{
    m_replies.clear();
    const auto work = std::make_shared<QList<QJsonObject>>();
    m_work = work;
    startJob([work, requests](const Step &step) {
        for (const QJsonObject &request : requests) {
            work->append(CloudEnvelope::send(request));
            // A server that does not answer will not answer the next bill either.
            if (work->last().isEmpty())
                break;
            if (!step(work->size(), requests.size()))
                return false;
        }
        return true;
    });
}

void BatchPricingRun::deliver()
{
    m_replies = *m_work;
}

QList<QJsonObject> BatchPricingRun::takeReplies()
{
    QList<QJsonObject> replies;
    replies.swap(m_replies);
    return replies;
}
