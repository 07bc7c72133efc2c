#pragma once
#include <QString>

class BaseDataItem;

// The host adds the user's own description lines ("自编") to the custom table
// of the bill's bill standard library; the guide lists, edits and deletes them.
class CustomFeatureLines
{
public:
    // The custom table of `bill`'s library; empty for a bill of no library.
    static QString tableOf(const BaseDataItem *bill);
    // Adds `text` under the bill's code; false (nothing written) for an empty
    // text or a bill of no library.
    static bool add(const BaseDataItem *bill, const QString &text);
};
