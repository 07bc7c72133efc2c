// "getppqd" bills with their "zjnr": the string form a matched bill travels
// in, and the composition tree the unit-price browser shows.
#include "fuzzsupport.h"

#include <hostapi/cloudzjbean.h>
#include <hostapi/zstandardtreenodedata.h>
#include <pricecheck/pricecheckdetails.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = QString::fromUtf8(FuzzSupport::bytes(data, size));
    const CloudZjBean bill(text);
    PriceCheckDetails::firstTabText(bill.getXmtz(), bill);
    PriceCheckDetails::compositionTree(bill.getZjnrlist());
    const QList<cloudZjnr> lines = cloudZjnr::parseList(QJsonValue(text));
    PriceCheckDetails::compositionTree(lines);
    cloudZjnr::toZjnrText(lines);
    if (bill.isValid())
        CloudZjBean(bill.toString()).toJson();
    return 0;
}
