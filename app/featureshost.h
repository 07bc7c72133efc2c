#pragma once
#include <QStringList>

class HostContext;
class LtdInfo;
class QWidget;

// The host's side of the feature functions: the non-modal feature guide that
// follows the current bill, "项目云特征" and the user's own description lines.
class FeaturesHost
{
public:
    static QWidget *openGuide(HostContext &host);
    static QWidget *tourGuide(HostContext &host);
    static QWidget *openProjectFeatures(HostContext &host);
    static QWidget *openCustomLine(HostContext &host);
    // Fills the features of the current table's bills from the cloud.
    static void fillFeatures(HostContext &host, LtdInfo *server, bool skipPriced, int sourceMask,
                             const QStringList &projectIds);
};
