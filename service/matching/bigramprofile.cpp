#include "bigramprofile.h"

#include <algorithm>
#include <cmath>

BigramProfile::BigramProfile(const QString &text)
{
    std::vector<uint32_t> all;
    all.reserve(size_t(std::max(0, text.size() - 1)));
    for (int i = 0; i + 1 < text.size(); ++i)
        if (!text.at(i).isSpace() && !text.at(i + 1).isSpace())
            all.push_back((uint32_t(text.at(i).unicode()) << 16) | text.at(i + 1).unicode());
    std::sort(all.begin(), all.end());
    for (size_t i = 0; i < all.size();) {
        size_t j = i;
        while (j < all.size() && all[j] == all[i])
            ++j;
        const float w = 1.0f + float(std::log(double(j - i)));
        m_grams.push_back(all[i]);
        m_weights.push_back(w);
        m_norm += double(w) * w;
        i = j;
    }
    m_norm = std::sqrt(m_norm);
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
            dot += double(m_weights[a]) * o.m_weights[b];
            ++a;
            ++b;
        }
    }
    return dot / (m_norm * o.m_norm);
}
