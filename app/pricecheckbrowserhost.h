#pragma once

class BaseDataItem;
class HostContext;
class LtdInfo;
class TVelQddjjc;

// The host's side of the unit-price check browser: opens it on the current
// bill, answers its requests for cloud unit prices and walks the project's
// bills on previous/next.
class PriceCheckBrowserHost
{
public:
    // Runs the browser modally on the current bill with `matchNum` similar
    // bills from `server`; returns when it has closed.
    static void open(HostContext &host, LtdInfo *server, int matchNum);
    // The tour: the browser with three similar bills, its composition tab and
    // the fee template of the first line that has one.
    static void tour(HostContext &host, LtdInfo *server);
    // Builds `dialog`, connects its requests and shows the current bill.
    static void prepare(TVelQddjjc &dialog, HostContext &host, int matchNum);
    // The bill's code, name, own price and the project's influence factors.
    static void showBill(TVelQddjjc &dialog, BaseDataItem *bill);
    // The cloud unit prices of the current bill's similar bills.
    static void answer(TVelQddjjc &dialog, HostContext &host, LtdInfo *server, int matchNum);
    // Makes the previous or next bill current and checks it.
    static void step(TVelQddjjc &dialog, HostContext &host, bool forward);
};
