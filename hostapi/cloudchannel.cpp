#include "cloudchannel.h"

void CloudCall::finish(const QByteArray &reply)
{
    if (m_finished)
        return;
    m_finished = true;
    m_reply = reply;
    emit finished(m_reply);
}

CloudChannel::~CloudChannel() = default;
