#pragma once
#include <QByteArray>
#include <QString>

// What sets one dialog's cloud sources block apart from the others'.
struct CloudSourcesOptions
{
    // Whether the two check states come from the global settings at start and
    // go back there on every change.
    enum class CheckStorage { None, ReadOnly, ReadWrite };

    // Source name of the owning dialog in exception reports ("Znyzj", ...).
    QByteArray source;
    QString filterText = QStringLiteral("(工程筛选)");
    // Source mode before (or without) stored check states.
    int initialMode = 0;
    CheckStorage checkStorage = CheckStorage::ReadWrite;
    // Hide the filter link, not only disable it, while no source is checked.
    bool hideLinkWithoutSource = false;
};
