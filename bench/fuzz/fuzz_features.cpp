// Feature matches ("matchqdtz") as the feature guide pages through them.
#include "fuzzsupport.h"

#include <cloud/cloudreply.h>
#include <features/featurecloudreply.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const CloudReply reply = CloudReply::parse(FuzzSupport::bytes(data, size));
    const int pages = FeatureCloudReply::pageCount(reply.object());
    const QList<CloudZnytzBean> results = FeatureCloudReply::results(reply.object());
    FeatureCloudReply::number(pages, results.size() * 2, 1);
    return 0;
}
