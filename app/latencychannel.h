#pragma once
#include <hostapi/cloudchannel.h>

#include <atomic>
#include <memory>

// A channel that hands on each reply of another channel only after a set
// delay, as a slow line to the cloud would: the host's waits can be tried
// and measured on the embedded cloud.
class LatencyChannel : public CloudChannel
{
public:
    LatencyChannel(std::shared_ptr<CloudChannel> inner, int delayMs);

    CloudCall *start(const QJsonObject &request, const QString &session) override;
    QString name() const override;
    QString unreachableReason() const override;

    void setDelay(int delayMs) { m_delayMs = delayMs; }
    int delay() const { return m_delayMs; }

private:
    std::shared_ptr<CloudChannel> m_inner;
    std::atomic<int> m_delayMs;
};
