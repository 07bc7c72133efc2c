#pragma once
#include <QString>

// Finds the division code of a place path as the influence-factor dialogs
// write it: the names of its levels joined without separator
// ("湖北省武汉市江汉区"), read level by level down the place dictionary.
class PlaceCodeResolver
{
public:
    // The code of the deepest level the path names in full; empty when the
    // first level is unknown or the dictionary is missing.
    static QString codeOfPath(const QString &place);
};
