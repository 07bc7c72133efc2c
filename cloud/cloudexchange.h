#pragma once
#include "cloudreply.h"
#include "cloudrequest.h"

#include <hostapi/guardsite.h>

#include <QString>

#include <optional>

class QWidget;

// Sends a dialog's requests through the host's blocking reply loop and
// applies the module's reply rules, so that no dialog repeats them. Failure
// messages are parented to the site's owner; exceptions are reported under
// the site (the dialog that made the request).
//
//   CloudExchange cloud(GuardSite(kSource, this));
//   if (const auto reply = cloud.call(request)) use(reply->dataArray(), reply->value("allCount"));
class CloudExchange
{
public:
    explicit CloudExchange(const GuardSite &site);

    // The whole reply when it succeeded ("code" 0); std::nullopt when
    // unanswered (silently), refused (its "msg" is shown unchanged) or when
    // sending threw.
    std::optional<CloudReply> call(const CloudRequest &request) const;
    // Shows the reply's "msg" the way every failed request does.
    void showFailure(const CloudReply &reply) const;

    // Sends and parses, nothing shown: for callers that read "code" themselves.
    static CloudReply send(const CloudRequest &request);
    // The host's local configuration value `key` ("cmd" "getConfigValue");
    // empty when there is none.
    static QString configValue(const QString &key);

private:
    QWidget *dialog() const;
    GuardSite m_site;
};
