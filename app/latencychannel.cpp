#include "latencychannel.h"

#include <QTimer>

LatencyChannel::LatencyChannel(std::shared_ptr<CloudChannel> inner, int delayMs)
    : m_inner(std::move(inner)), m_delayMs(delayMs)
{
}

CloudCall *LatencyChannel::start(const QJsonObject &request, const QString &session)
{
    auto *call = new CloudCall;
    CloudCall *inner = m_inner ? m_inner->start(request, session) : nullptr;
    const int delay = m_delayMs;
    // The timer runs on the caller's thread, so the call finishes there.
    auto finishLater = [call, delay](const QByteArray &reply) {
        QTimer::singleShot(delay, call, [call, reply] { call->finish(reply); });
    };
    if (!inner) {
        finishLater(QByteArray());
        return call;
    }
    inner->setParent(call);
    if (inner->isFinished())
        finishLater(inner->reply());
    else
        QObject::connect(inner, &CloudCall::finished, call, finishLater);
    return call;
}

QString LatencyChannel::name() const
{
    return m_inner ? m_inner->name() : QString();
}

QString LatencyChannel::unreachableReason() const
{
    return m_inner ? m_inner->unreachableReason() : QString();
}
