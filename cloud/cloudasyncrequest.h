#pragma once
#include "cloudrequest.h"

#include <hostapi/servicesutil.h>

#include <QMetaObject>
#include <QObject>

// The host's asynchronous message service: found as the application property
// "ServicesUtil" (its address as a qlonglong). Replies of every asynchronous
// request arrive, already parsed, through its doGotMsg signal.
class CloudAsyncRequest
{
public:
    // The published service object, or null when the host published none.
    static ServicesUtil *service();

    // Connects doGotMsg to `slot` of `receiver` (once, however often called).
    template <typename Receiver>
    static QMetaObject::Connection listen(Receiver *receiver, void (Receiver::*slot)(const QJsonObject &))
    {
        ServicesUtil *s = service();
        if (!s || !receiver)
            return {};
        return QObject::connect(s, &ServicesUtil::doGotMsg, receiver, slot, Qt::UniqueConnection);
    }

    // Hands the request to the service's "metaMsgSync"; false without a service.
    static bool send(const CloudRequest &request);
};
