#pragma once
#include <QString>
#include <QStringList>

class LtdInfo;
class QFontMetrics;

// The rules of the cloud sources block ("标准清单", "积累工程清单", the project
// filter and the "已选工程：" row) that need no window.
class CloudSourceRules
{
public:
    // 0 none, 1 standard bills only, 2 accumulated project bills only, 3 both.
    static int mode(bool standard, bool accumulated);
    static bool hasStandard(int mode) { return mode & 1; }
    static bool hasAccumulated(int mode) { return mode & 2; }

    // "案例工程清单" on the Korvane cloud, "积累工程清单" everywhere else.
    static QString accumulatedCaption(const LtdInfo *server);

    // The global-settings key of the chosen projects: the logged-in user, the
    // server's token and its enterprise id. Empty without a server.
    static QString selectionKey(const LtdInfo *server);

    // The first name, elided at the right so that the whole text fits `width`,
    // followed by "等%1个工程" when there are several.
    static QString selectionText(const QStringList &names, const QFontMetrics &metrics, int width);

    // The "已选工程：" row shows only a selection that is in force.
    static bool selectionRowVisible(bool accumulated, int count) { return accumulated && count > 0; }
};
