#include "nameoverlap.h"

#include <algorithm>

NameOverlap::NameOverlap(const QString &name)
{
    charactersOf(reinterpret_cast<const char16_t *>(name.utf16()), name.size(), m_chars);
}

void NameOverlap::charactersOf(const char16_t *text, int size, std::vector<char16_t> &out)
{
    out.clear();
    for (int i = 0; i < size && text[i] != u' '; ++i)
        out.push_back(text[i]);
    std::sort(out.begin(), out.end());
    out.erase(std::unique(out.begin(), out.end()), out.end());
}

double NameOverlap::dice(const char16_t *text, int size) const
{
    thread_local std::vector<char16_t> theirs;
    charactersOf(text, size, theirs);
    if (m_chars.empty() || theirs.empty())
        return 0.0;
    size_t shared = 0;
    for (size_t a = 0, b = 0; a < m_chars.size() && b < theirs.size();) {
        if (m_chars[a] < theirs[b]) {
            ++a;
        } else if (theirs[b] < m_chars[a]) {
            ++b;
        } else {
            ++shared;
            ++a;
            ++b;
        }
    }
    return 2.0 * double(shared) / double(m_chars.size() + theirs.size());
}
