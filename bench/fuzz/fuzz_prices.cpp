// Price lists: similar bills' prices as the unit-price check asks for them,
// and material price records.
#include "fuzzsupport.h"

#include <cloud/cloudreply.h>
#include <hostapi/basedataitem.h>
#include <hostapi/cloudbusiness.h>
#include <hostapi/cloudcjyjcbean.h>
#include <hostapi/cloudzjbean.h>
#include <hostapi/gljbean.h>
#include <hostapi/ltdinfo.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::ensureApplication();
    const QByteArray bytes = FuzzSupport::bytes(data, size);
    FuzzSupport::answerWith(bytes);
    static BaseDataItem item(1);
    static LtdInfo server(QStringLiteral("个人云"), QStringLiteral("kv_token_user"), 0, 0, true);
    QStringList bills;
    if (CloudBusiness::RequestSimilarBillPrices(&item, &server, 5, bills))
        for (const QString &bill : bills)
            CloudZjBean(bill).getZhdj();
    for (const QJsonValue &record : CloudReply::parse(bytes).dataArray()) {
        CloudCjyjcBean::fromJson(record.toObject()).toJson();
        GljBean::fromJson(record.toObject());
    }
    FuzzSupport::drainEvents();
    return 0;
}
