#pragma once
#include "cloudchannel.h"

#include <QUrl>

class QNetworkReply;

#include <atomic>
#include <memory>

// The cloud service over HTTP (velora-cloud): each request is one POST of the
// envelope to <base URL>/cloud, the session in the header "X-Velora-Session".
// Transport errors, HTTP error statuses, time-outs and a reply nested deeper
// than JsonNesting::MaxDepth or repeating a key within one object finish the
// call with empty bytes (no reply).
// start() may be called from any thread that runs an event loop while it
// waits; each thread gets its own network manager, so connections are reused
// per thread and the call finishes on that thread.
class HttpCloudChannel : public CloudChannel
{
public:
    static constexpr int DefaultTimeoutMs = 30000;
    // A server that takes no connection in this time is taken as down.
    static constexpr int DefaultConnectTimeoutMs = 3000;
    static const char SessionHeader[];

    explicit HttpCloudChannel(const QUrl &baseUrl, int timeoutMs = DefaultTimeoutMs,
                              int connectTimeoutMs = DefaultConnectTimeoutMs);

    CloudCall *start(const QJsonObject &request, const QString &session) override;
    QString name() const override { return QStringLiteral("http"); }
    QString unreachableReason() const override;

    // <base URL>/cloud (a trailing slash of the base is ignored).
    QUrl endpoint() const { return m_endpoint; }
    int timeoutMs() const { return m_timeoutMs.load(); }
    void setTimeoutMs(int ms) { m_timeoutMs.store(ms); }

    static QUrl endpointFor(const QUrl &baseUrl);

private:
    class Reachability;
    void watchConnect(QNetworkReply *reply, CloudCall *call) const;

    const QUrl m_endpoint;
    std::atomic<int> m_timeoutMs;
    const int m_connectTimeoutMs;
    // Shared with the replies in flight, which may outlive the channel.
    const std::shared_ptr<Reachability> m_reachability;
};
