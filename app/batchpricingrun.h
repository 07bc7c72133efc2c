#pragma once
#include "backgroundrun.h"

#include <QJsonObject>
#include <QList>

#include <memory>

// Sends the match requests of a batch pricing in the background, one after
// the other, from prepared envelopes. A cancelled run delivers nothing, so
// the project stays as it was.
class BatchPricingRun : public BackgroundRun
{
    Q_OBJECT
public:
    using BackgroundRun::BackgroundRun;

    void start(const QList<QJsonObject> &requests);
    // The replies of the finished run, in request order; it ends early at an
    // unanswered request, the last reply then being empty.
    QList<QJsonObject> takeReplies();

private:
    void deliver() override;

    std::shared_ptr<QList<QJsonObject>> m_work;
    QList<QJsonObject> m_replies;
};
