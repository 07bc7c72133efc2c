#pragma once
#include <QString>

// What tells the influence-factor dialogs apart: captions, which buttons they
// carry, whether they drive their buttons themselves, the place query and the
// field styles. One instance per variant.
struct InfluenceFactorLayout
{
    const char *sourceName = "";  // source file name in exception reports
    QString timeCaption;
    QString placeCaption;
    bool timeButton = true;       // "修改" beside the time
    bool placeButton = true;      // "修改" beside the place
    QString clearText;            // clear button caption; empty: none
    QString closeText;
    bool ownSlots = true;         // false: the owner wires the buttons
    QString placeQuery;           // statement with %1 for the place set id
    bool styledFields = false;
};
