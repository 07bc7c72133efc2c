#include "cloudwaiter.h"
#include "cloudchannel.h"

#include <QEventLoop>

CloudWaiter::~CloudWaiter() = default;

void CloudWaiter::waitQuietly(CloudCall &call)
{
    if (call.isFinished())
        return;
    QEventLoop loop;
    QObject::connect(&call, &CloudCall::finished, &loop, &QEventLoop::quit);
    if (!call.isFinished())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
}
