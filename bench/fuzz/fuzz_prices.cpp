// Price lists: similar bills' prices as the unit-price check takes them from
// the reply, and material price records.
#include "fuzzsupport.h"

#include <cloud/cloudreply.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/gljbean.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::ensureApplication();
    // Parsed once: CloudReply::parse is what CloudEnvelope::send does too.
    const CloudReply reply = CloudReply::parse(FuzzSupport::bytes(data, size));
    QStringList bills;
    QString error;
    if (CloudBusiness::TakeSimilarBillPrices(reply.object(), bills, &error))
        for (const QString &bill : bills)
            CloudZjBean(bill).getZhdj();
    for (const QJsonValue &record : reply.dataArray()) {
        CloudCjyjcBean::fromJson(record.toObject()).toJson();
        GljBean::fromJson(record.toObject());
    }
    return 0;
}
