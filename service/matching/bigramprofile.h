#pragma once
#include <QString>

#include <cstdint>
#include <vector>

// A second view of how alike two bill texts are: the cosine of their
// character-bigram counts (log-scaled) over the whole normalised text,
// feature labels and numbers included. The index's own score drops labels
// and weighs rare grams; this view reaches some partners that one ranks
// too low to be re-ranked.
class BigramProfile
{
public:
    // `text` already normalised (BillText::normalise).
    explicit BigramProfile(const QString &text);
    double cosine(const BigramProfile &other) const;
    // The cosine with a normalised text, without keeping its profile.
    double cosine(const char16_t *text, int size) const;

private:
    // Sorted bigrams of `text`, each once per occurrence, into `out`.
    static void bigrams(const char16_t *text, int size, std::vector<uint32_t> &out);
    static double weight(size_t count);

    std::vector<uint32_t> m_grams; // sorted, unique
    std::vector<double> m_weights; // 1 + log(count), in the order of m_grams
    double m_norm = 0.0;
};
