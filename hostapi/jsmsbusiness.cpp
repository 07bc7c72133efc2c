#include "jsmsbusiness.h"
#include "jjbtablebase.h"
#include "projectsettinghelper.h"
#include "workbaseobject.h"

#include <QRegularExpression>

bool JsMsBusiness::GetQDSaveAttr(WorkBaseObject *unitWork, JJBTableBase *table, TQDNodeInfo &info)
{
    Q_UNUSED(table)
    const ProjectSettingsInfo settings = ProjectSettingHelper::GetProjectSettingsInfo();
    info = TQDNodeInfo();
    info.jsfs = settings.taxMode;
    info.jsfsIndex = taxModeIndex(settings.taxMode);
    info.dd = settings.place;
    info.ddCode = settings.placeCode;
    info.dateB = baseDate(settings.time);
    if (unitWork) {
        info.jswjIndex = unitWork->GetJswjIndex();
        info.delbIndex = unitWork->GetDelbIndex();
        info.qdgf = unitWork->GetQdSpec();
    }
    return !info.dateB.isEmpty();
}

int JsMsBusiness::taxModeIndex(const QString &taxMode)
{
    return taxMode.contains(QStringLiteral("简易计税")) ? 1 : 0;
}

QString JsMsBusiness::baseDate(const QString &time)
{
    static const QRegularExpression month(QStringLiteral("^(\\d{4})年(\\d{1,2})月"));
    const QRegularExpressionMatch m = month.match(time.trimmed());
    if (!m.hasMatch())
        return QString();
    const int mm = m.captured(2).toInt();
    if (mm < 1 || mm > 12)
        return QString();
    return m.captured(1) + QLatin1Char('-') + QStringLiteral("%1").arg(mm, 2, 10, QLatin1Char('0'));
}
