#pragma once
#include "backgroundrun.h"
#include "compositionwriter.h"

#include <QJsonObject>
#include <QList>

#include <memory>

// Sends the match requests of a batch pricing in the background, a few at a
// time, from prepared envelopes, and reads the best match of each reply
// ready to be written. A cancelled run delivers nothing, so the project stays
// as it was.
class BatchPricingRun : public BackgroundRun
{
    Q_OBJECT
public:
    using BackgroundRun::BackgroundRun;

    void start(const QList<QJsonObject> &requests);
    // The replies of the finished run, in request order; it ends early at an
    // unanswered request, the last reply then being empty.
    QList<QJsonObject> takeReplies();
    // The first match of each reply read for writing (empty values where a
    // reply has none), in request order.
    QList<CompositionWriter::Values> takeBest();

private:
    void deliver() override;

    struct Work
    {
        QList<QJsonObject> replies;
        QList<CompositionWriter::Values> best;
    };
    std::shared_ptr<Work> m_work;
    QList<QJsonObject> m_replies;
    QList<CompositionWriter::Values> m_best;
};
