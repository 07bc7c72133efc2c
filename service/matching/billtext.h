#pragma once
#include <QString>

#include <cstdint>
#include <vector>

// Turns bill text into the terms the matcher compares: character bigrams of the
// normalised text (full-width folded, lower case, feature labels such as
// "名称：" dropped, whitespace and line breaks as separators) plus each whole
// number as its own term, since sizes (DN40, 2.5mm2) decide the quota.
class BillText
{
public:
    // NFKC-folded, lower-cased, whitespace runs collapsed to one space.
    static QString normalise(const QString &text);
    // normalise() without the "label:" prefixes of feature lines.
    static QString stripLabels(const QString &normalised);
    // Sorted, unique term keys of already normalised, label-free text.
    static std::vector<uint64_t> terms(const QString &prepared);
    // Terms of raw bill text (normalise + stripLabels + terms).
    static std::vector<uint64_t> termsOf(const QString &raw);
    // Normalised unit; a few spellings of the same unit fold together.
    static QString unitKey(const QString &unit);
    // 9-digit code as a number, 0 when the text is not one.
    static uint32_t codeKey(const QString &code);
};
