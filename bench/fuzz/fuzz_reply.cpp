// The reply envelope every cloud call goes through.
#include "fuzzsupport.h"

#include <cloud/cloudreply.h>
#include <hostapi/jsonnesting.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text = FuzzSupport::bytes(data, size);
    JsonNesting::within(text, 4);
    const CloudReply reply = CloudReply::parse(text);
    if (reply.succeeded() || reply.answered()) {
        reply.msg().size();
        reply.dataArray().size();
        reply.dataObject().size();
        reply.value(QStringLiteral("allCount")).toInt();
    }
    return 0;
}
