#include "cloudsourcerules.h"
#include <hostapi/cloudtier.h>

#include <hostapi/globalsettingsinfo.h>
#include <hostapi/ltdinfo.h>
#include <hostapi/users.h>

#include <QFontMetrics>

int CloudSourceRules::mode(bool standard, bool accumulated)
{
    return (standard ? 1 : 0) | (accumulated ? 2 : 0);
}

QString CloudSourceRules::accumulatedCaption(const LtdInfo *server)
{
    return tierOf(server) == CloudTier::Korvane ? QStringLiteral("案例工程清单")
                                               : QStringLiteral("积累工程清单");
}

QString CloudSourceRules::selectionKey(const LtdInfo *server)
{
    if (!server)
        return QString();
    return GlobalSettingsInfo::selectionKey(Users::Instance()->Kvy()->UserID(), server->getToken(),
                                            server->getQyid());
}

QString CloudSourceRules::selectionText(const QStringList &names, const QFontMetrics &metrics, int width)
{
    if (names.isEmpty())
        return QString();
    const QString suffix = names.size() > 1 ? QStringLiteral("等%1个工程").arg(names.size()) : QString();
    const int room = qMax(0, width - metrics.horizontalAdvance(suffix));
    return metrics.elidedText(names.first(), Qt::ElideRight, room) + suffix;
}
