// The source project's information shown beside a cloud bill.
#include "fuzzsupport.h"

#include <cloud/cloudreply.h>
#include <pricecheck/pricecheckdetails.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const CloudReply reply = CloudReply::parse(FuzzSupport::bytes(data, size));
    PriceCheckDetails::projectInfoText(reply.dataObject());
    return 0;
}
