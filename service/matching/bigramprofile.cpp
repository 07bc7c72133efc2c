#include "bigramprofile.h"

#include <algorithm>
#include <cmath>

BigramProfile::BigramProfile(const QString &text)
{
    std::vector<uint32_t> all;
    bigrams(reinterpret_cast<const char16_t *>(text.utf16()), text.size(), all);
    for (size_t i = 0; i < all.size();) {
        size_t j = i;
        while (j < all.size() && all[j] == all[i])
            ++j;
        const double w = weight(j - i);
        m_grams.push_back(all[i]);
        m_weights.push_back(w);
        m_norm += w * w;
        i = j;
    }
    m_norm = std::sqrt(m_norm);
}

void BigramProfile::bigrams(const char16_t *text, int size, std::vector<uint32_t> &out)
{
    out.clear();
    // Normalised text has single spaces for all whitespace.
    for (int i = 0; i + 1 < size; ++i)
        if (text[i] != u' ' && text[i + 1] != u' ')
            out.push_back((uint32_t(text[i]) << 16) | text[i + 1]);
    std::sort(out.begin(), out.end());
}

// Counts are small; their logs are looked up.
double BigramProfile::weight(size_t count)
{
    static const std::vector<double> table = [] {
        std::vector<double> t(64, 0.0);
        for (size_t c = 1; c < t.size(); ++c)
            t[c] = 1.0 + std::log(double(c));
        return t;
    }();
    return count < table.size() ? table[count] : 1.0 + std::log(double(count));
}

double BigramProfile::cosine(const BigramProfile &o) const
{
    if (m_norm == 0.0 || o.m_norm == 0.0)
        return 0.0;
    double dot = 0.0;
    size_t a = 0, b = 0;
    while (a < m_grams.size() && b < o.m_grams.size()) {
        if (m_grams[a] < o.m_grams[b]) {
            ++a;
        } else if (o.m_grams[b] < m_grams[a]) {
            ++b;
        } else {
            dot += m_weights[a] * o.m_weights[b];
            ++a;
            ++b;
        }
    }
    return dot / (m_norm * o.m_norm);
}

double BigramProfile::cosine(const char16_t *text, int size) const
{
    thread_local std::vector<uint32_t> all;
    bigrams(text, size, all);
    double dot = 0.0, norm = 0.0;
    size_t a = 0;
    for (size_t i = 0; i < all.size();) {
        size_t j = i;
        while (j < all.size() && all[j] == all[i])
            ++j;
        const double w = weight(j - i);
        norm += w * w;
        while (a < m_grams.size() && m_grams[a] < all[i])
            ++a;
        if (a < m_grams.size() && m_grams[a] == all[i])
            dot += w * m_weights[a];
        i = j;
    }
    return m_norm == 0.0 || norm == 0.0 ? 0.0 : dot / (m_norm * std::sqrt(norm));
}
