// "getppqd" bills with their "zjnr": the string form a matched bill travels
// in, and the composition tree the unit-price browser shows. The input is
// parsed once, as the reply carrying it is: an object is read as a bill (its
// "zjnr" as text or as JSON), an array as the lines themselves; the bill's
// text form is reached through its round trip.
#include "fuzzsupport.h"

#include <hostapi/cloudzjbean.h>
#include <hostapi/jsonnesting.h>
#include <hostapi/zstandardtreenodedata.h>
#include <pricecheck/pricecheckdetails.h>

#include <QJsonArray>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QJsonDocument doc = JsonNesting::parse(FuzzSupport::bytes(data, size));
    const CloudZjBean bill = doc.isObject() ? CloudZjBean::fromJson(doc.object()) : CloudZjBean();
    PriceCheckDetails::firstTabText(bill.getXmtz(), bill);
    const QList<cloudZjnr> lines = doc.isArray() ? cloudZjnr::parseList(doc.array()) : bill.getZjnrlist();
    PriceCheckDetails::compositionTree(lines);
    cloudZjnr::toZjnrText(lines);
    if (bill.isValid())
        CloudZjBean(bill.toString()).toJson();
    return 0;
}
