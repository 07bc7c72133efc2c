#pragma once
#include <hostapi/cloudchannel.h>

#include <memory>

class CloudService;

// The in-process channel: each request runs CloudService::handle on a pool
// thread and is finished on the caller's thread, so its event loop keeps going.
class EmbeddedChannel : public CloudChannel
{
public:
    explicit EmbeddedChannel(const QString &dataDir);
    explicit EmbeddedChannel(std::shared_ptr<CloudService> service);
    ~EmbeddedChannel() override;

    CloudCall *start(const QJsonObject &request, const QString &session) override;
    QString name() const override;

    std::shared_ptr<CloudService> service() const { return m_service; }

private:
    std::shared_ptr<CloudService> m_service;
};
