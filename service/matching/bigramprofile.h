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

private:
    std::vector<uint32_t> m_grams; // sorted, unique
    std::vector<float> m_weights;  // 1 + log(count), in the order of m_grams
    double m_norm = 0.0;
};
