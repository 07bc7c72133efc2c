#pragma once

class HostContext;
class QWidget;

// The material list's deviation tools after a check: the highlight rate and
// the chart of the materials that cost most above the cloud price.
class MaterialDeviationHost
{
public:
    static QWidget *openRate(HostContext &host);
    static QWidget *openChart(HostContext &host);
};
