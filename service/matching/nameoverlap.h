#pragma once
#include <QString>

#include <vector>

// A third view of two bills: the characters their names share (Dice over
// distinct characters). It reaches partners named with a synonym that no
// bigram connects ("拖把池" and "拖布池").
class NameOverlap
{
public:
    // `name` already normalised (BillText::normalise).
    explicit NameOverlap(const QString &name);
    // Against a normalised bill text, whose name runs up to its first space.
    double dice(const char16_t *text, int size) const;

private:
    // Distinct characters of `text` up to its first space, sorted, into `out`.
    static void charactersOf(const char16_t *text, int size, std::vector<char16_t> &out);

    std::vector<char16_t> m_chars;
};
