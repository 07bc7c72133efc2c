#pragma once

class HostContext;
class QWidget;

// The host's menu entry for the project unit-price check report.
class PriceCheckReportHost
{
public:
    // Opens the report window beside the main window; its shading of the
    // out-of-range bills follows into the bill tree.
    static QWidget *open(HostContext &host);
    // The tour: the report after a whole check, with its charts.
    static QWidget *tour(HostContext &host);
};
