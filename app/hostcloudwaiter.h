#pragma once
#include <hostapi/cloudwaiter.h>

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

// The host's way of waiting for a blocking cloud call: quiet for half a
// second, then a busy cursor, a status message naming the server and a small
// window whose "取消" gives the call up (it then counts as no reply).
class HostCloudWaiter : public CloudWaiter
{
public:
    static constexpr int QuietMs = 500;

    HostCloudWaiter(QWidget *window, std::function<QString()> serverText,
                    std::function<void(const QString &)> showStatus);
    void wait(CloudCall &call) override;

    static QString waitText(const QString &server);

private:
    void waitVisibly(CloudCall &call);

    QPointer<QWidget> m_window;
    std::function<QString()> m_serverText;
    std::function<void(const QString &)> m_showStatus;
};
