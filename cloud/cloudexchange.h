#pragma once
#include "cloudreply.h"
#include "cloudrequest.h"

#include <QJsonValue>
#include <QString>

#include <optional>

class QWidget;

// Sends requests through the host's blocking reply loop and applies the
// module's reply rules, so that no dialog repeats them.
class CloudExchange
{
public:
    // The usual call: the reply's "data" on success (undefined when the reply
    // has none); std::nullopt when unanswered (silently) or refused (its "msg"
    // is shown unchanged in a message box parented to `dialog`).
    static std::optional<QJsonValue> call(const CloudRequest &request, QWidget *dialog);

    // Sends and parses, nothing shown: for callers that read "code" themselves.
    static CloudReply send(const CloudRequest &request);

    // Shows the reply's "msg" the way every failed request does.
    static void showFailure(const CloudReply &reply, QWidget *dialog);

    // The host's local configuration value `key` ("cmd" "getConfigValue");
    // empty when there is none.
    static QString configValue(const QString &key);
};
