#pragma once
#include <hostapi/cloudchannel.h>

#include <QByteArray>
#include <QJsonObject>

#include <cstddef>
#include <cstdint>

// What every target shares: one offscreen application for the process and
// a channel that answers any request with the bytes of the current input.
namespace FuzzSupport {
void ensureApplication();
QByteArray bytes(const uint8_t *data, size_t size);
// Installs the answering channel (once) and sets what it answers next.
void answerWith(const QByteArray &reply);
// Runs the events the host layer queued while answering.
void drainEvents();
}

class FixedReplyChannel : public CloudChannel
{
public:
    CloudCall *start(const QJsonObject &request, const QString &session) override;
    QString name() const override { return QStringLiteral("fuzz"); }
    QByteArray reply;
};
