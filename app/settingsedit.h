#pragma once
#include <QString>

// Writes one project setting as the user typed it, one undo step: the time,
// the place (its code looked up again), the altitude or the tax mode.
class SettingsEdit
{
public:
    enum Field { Time, Place, Altitude, TaxMode };
    // False when nothing changed.
    static bool apply(int field, const QString &text);
};
