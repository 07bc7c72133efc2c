#pragma once
#include <QStringList>

class HostContext;
class LtdInfo;
class QWidget;
class TZnyzj;
class VelDqqdznzj;

// The host's side of intelligent cloud pricing: the batch setup and the
// batch run over the whole project, and the current-bill browser whose
// choices are written into the bills.
class SmartPricingHost
{
public:
    static QWidget *openBatch(HostContext &host);
    static QWidget *tourBatch(HostContext &host);
    static QWidget *openCurrent(HostContext &host);
    static QWidget *tourCurrent(HostContext &host);

    static void prepareSetup(TZnyzj &dialog, HostContext &host);
    // Matches every taking part bill on a worker thread behind a progress
    // dialog, applies the best compositions as one undo step and shows the
    // summary. False when cancelled or nothing was applied.
    static bool runBatch(HostContext &host, const LtdInfo &server, bool skipPriced, int gcType,
                         const QStringList &projectIds);
    static void prepareBrowser(VelDqqdznzj &dialog, HostContext &host);
    // Makes the previous or next bill current and shows it in the browser.
    static void step(VelDqqdznzj &dialog, HostContext &host, bool forward, bool skipPriced);
};
