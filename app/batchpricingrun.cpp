#include "batchpricingrun.h"

#include <hostapi/cloudenvelope.h>

#include <QJsonArray>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace {
// Requests in flight at once: the cloud answers several as fast as one.
int senders()
{
    return qBound(2, QThread::idealThreadCount(), 4);
}
}

void BatchPricingRun::start(const QList<QJsonObject> &requests)
{
    m_replies.clear();
    m_best.clear();
    const auto work = std::make_shared<Work>();
    m_work = work;
    startJob([work, requests](const Step &step) {
        const int total = requests.size();
        std::vector<QJsonObject> replies(static_cast<size_t>(total));
        std::vector<CompositionWriter::Values> best(static_cast<size_t>(total));
        std::atomic<int> next{0};
        std::atomic<int> done{0};
        std::atomic<int> unanswered{total};
        std::atomic<bool> cancelled{false};
        auto send = [&] {
            for (int i = next++; i < total && !cancelled && i < unanswered; i = next++) {
                replies[size_t(i)] = CloudEnvelope::send(requests.at(i));
                const QJsonArray matches = replies[size_t(i)].value(QStringLiteral("data")).toArray();
                if (!matches.isEmpty())
                    best[size_t(i)] = CompositionWriter::prepare(matches.first().toObject());
                // A server that does not answer will not answer the next bill either.
                if (replies[size_t(i)].isEmpty()) {
                    for (int seen = unanswered; i < seen && !unanswered.compare_exchange_weak(seen, i);) {
                    }
                }
                if (!step(++done, total))
                    cancelled = true;
            }
        };
        // std::thread, whose join orders the helpers' writes before the
        // reads below for the thread sanitizer too (QThread::wait does not).
        std::vector<std::thread> helpers;
        for (int n = 1; n < senders(); ++n)
            helpers.emplace_back(send);
        send();
        for (std::thread &helper : helpers)
            helper.join();
        // Up to the first unanswered request, that one included.
        const int kept = std::min(total, unanswered + 1);
        for (int i = 0; i < kept; ++i) {
            work->replies.append(replies[size_t(i)]);
            work->best.append(best[size_t(i)]);
        }
        return !cancelled;
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
