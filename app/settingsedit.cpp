#include "settingsedit.h"

#include <hostapi/placedictionary.h>
#include <hostapi/projectsettinghelper.h>
#include <hostapi/rurecordcontrol.h>
#include <hostapi/tablebaseobject.h>

#include <QRegularExpression>

bool SettingsEdit::apply(int field, const QString &text)
{
    const ProjectSettingsInfo before = ProjectSettingHelper::GetProjectSettingsInfo();
    ProjectSettingsInfo after = before;
    const QString value = text.trimmed();
    switch (field) {
    case Time: after.time = value; break;
    case Altitude: after.altitude = value; break;
    case TaxMode: after.taxMode = value; break;
    case Place: {
        // The panel shows the code after the place: "…区（420103）".
        static const QRegularExpression code(QStringLiteral("（\\d*）$"));
        after.place = QString(value).remove(code);
        if (after.place != before.place)
            after.placeCode = PlaceDictionary::codeForPath(after.place);
        break;
    }
    default: return false;
    }
    if (after == before)
        return false;
    RURecordControl::BeginRecord(TableBaseObject::GetTableRedoUIInfo(nullptr, 0, QStringLiteral("修改工程设置")));
    ProjectSettingHelper::SetProjectSettingsInfo(after);
    RURecordControl::RecordChange([before] { ProjectSettingHelper::SetProjectSettingsInfo(before); },
                                  [after] { ProjectSettingHelper::SetProjectSettingsInfo(after); });
    RURecordControl::EndRecord();
    return true;
}
