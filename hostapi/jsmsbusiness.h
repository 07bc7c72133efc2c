#pragma once
#include "tqdnodeinfo.h"

class JJBTableBase;
class WorkBaseObject;

// Host business calls about a unit project's pricing attributes.
class JsMsBusiness
{
public:
    // Fills `info` from the unit project (pricing file, quota category, bill
    // 规范) and the project settings (tax mode, place, time). A null
    // unit project leaves those indexes 0. False when the project settings
    // have no time (the attributes are then incomplete), true otherwise.
    static bool GetQDSaveAttr(WorkBaseObject *unitWork, JJBTableBase *table, TQDNodeInfo &info);

    // "一般计税" 0, "简易计税" 1, anything else 0.
    static int taxModeIndex(const QString &taxMode);
    // "2024年05月" -> "2024-05"; empty when the text is no such month.
    static QString baseDate(const QString &time);
};
