#pragma once
#include <QString>

// The project settings table (工程设置表) values the cloud functions use.
struct ProjectSettingsInfo
{
    // "yyyy年MM月".
    QString time;
    // Full place path, e.g. "四川省成都市金牛区", and its division code.
    QString place;
    QString placeCode;
    // Altitude text, e.g. "500m".
    QString altitude;
    // "一般计税" or "简易计税".
    QString taxMode;
    // Application scope text (应用范围), e.g. the current table's name.
    QString scope;

    bool operator==(const ProjectSettingsInfo &o) const
    {
        return time == o.time && place == o.place && placeCode == o.placeCode && altitude == o.altitude
               && taxMode == o.taxMode && scope == o.scope;
    }
    bool operator!=(const ProjectSettingsInfo &o) const { return !(*this == o); }
};
