#include "fuzzsupport.h"

#include <hostapi/servicesutil.h>

#include <QApplication>

#include <memory>

namespace {
std::shared_ptr<FixedReplyChannel> s_channel;
}

CloudCall *FixedReplyChannel::start(const QJsonObject &, const QString &)
{
    auto *call = new CloudCall;
    call->finish(reply);
    return call;
}

void FuzzSupport::ensureApplication()
{
    if (QCoreApplication::instance())
        return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "velora-fuzz";
    static char *argv[] = {name, nullptr};
    new QApplication(argc, argv);
}

QByteArray FuzzSupport::bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

void FuzzSupport::answerWith(const QByteArray &reply)
{
    if (!s_channel) {
        s_channel = std::make_shared<FixedReplyChannel>();
        ServicesUtil::setChannel(s_channel);
    }
    s_channel->reply = reply;
}

void FuzzSupport::drainEvents()
{
    QCoreApplication::processEvents();
}
