#include "jsonnesting.h"

#include <QJsonArray>

#include <algorithm>
#include <cstring>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Where the string whose text starts at `from` ends: its closing quote, or
// `size` when it has none. Strings hold most of the bytes, so they are
// skipped a quote at a time; a quote after an odd run of backslashes is text.
int stringEnd(const char *data, int from, int size)
{
    for (int i = from; i < size;) {
        const auto *quote = static_cast<const char *>(std::memchr(data + i, '"', size_t(size - i)));
        if (!quote)
            break;
        const int end = int(quote - data);
        int slashes = 0;
        while (end - slashes > from && data[end - slashes - 1] == '\\')
            ++slashes;
        if (slashes % 2 == 0)
            return end;
        i = end + 1;
    }
    return size;
}

// One open array or object. The keys of open objects lie on one stack of
// views into the text (or into decoded copies), an object's from `firstKey`
// on: an object's first keys are compared as they come, a larger object's are
// sorted and checked once when it closes.
struct Level
{
    bool object;
    bool expectKey;
    // One bit per key by length and end bytes: most keys need no comparison.
    quint64 seen;
    size_t firstKey;
};

class Scanner
{
public:
    Scanner(const QByteArray &text, int limit) : m_text(text), m_limit(limit)
    {
        m_levels.reserve(16);
        m_keys.reserve(64);
    }
    JsonNesting::Verdict run();

private:
    static constexpr size_t ComparedKeys = 16;

    bool open(bool object);
    bool close();
    bool addKey(int begin, int end);

    const QByteArray &m_text;
    const int m_limit;
    std::vector<Level> m_levels;
    std::vector<std::string_view> m_keys;
    std::forward_list<std::string> m_decoded;
};

JsonNesting::Verdict Scanner::run()
{
    const char *data = m_text.constData();
    const int size = m_text.size();
    for (int i = 0; i < size; ++i) {
        const char c = data[i];
        if (c == '"') {
            const int begin = i + 1;
            i = stringEnd(data, begin, size);
            Level *top = m_levels.empty() ? nullptr : &m_levels.back();
            if (top && top->object && top->expectKey) {
                if (!addKey(begin, i))
                    return JsonNesting::Verdict::DuplicateKey;
                top->expectKey = false;
            }
        } else if (c == '[' || c == '{') {
            if (!open(c == '{'))
                return JsonNesting::Verdict::TooDeep;
        } else if (c == ']' || c == '}') {
            if (!close())
                return JsonNesting::Verdict::DuplicateKey;
        } else if (c == ',' && !m_levels.empty()) {
            m_levels.back().expectKey = m_levels.back().object;
        }
    }
    return JsonNesting::Verdict::Fine;
}

bool Scanner::open(bool object)
{
    if (int(m_levels.size()) >= m_limit)
        return false;
    m_levels.push_back(Level{object, object, 0, m_keys.size()});
    return true;
}

// False when the closing level is an object with a repeated key. A stray
// closer ends a parse; never letting the depth go below zero keeps the check
// conservative for such text.
bool Scanner::close()
{
    if (m_levels.empty())
        return true;
    const auto first = m_keys.begin() + std::ptrdiff_t(m_levels.back().firstKey);
    m_levels.pop_back();
    bool unique = true;
    if (size_t(m_keys.end() - first) > ComparedKeys) {
        std::sort(first, m_keys.end());
        unique = std::adjacent_find(first, m_keys.end()) == m_keys.end();
    }
    m_keys.erase(first, m_keys.end());
    return unique;
}

// False when an object's first keys already hold this one.
bool Scanner::addKey(int begin, int end)
{
    std::string_view key(m_text.constData() + begin, size_t(end - begin));
    if (key.find('\\') != std::string_view::npos) {
        // Rare in real messages: let Qt decode just this string, so keys that
        // differ only in their escapes compare as the parser will see them.
        const QByteArray quoted = '[' + m_text.mid(begin - 1, end - begin + 2) + ']';
        m_decoded.push_front(QJsonDocument::fromJson(quoted).array().at(0).toString().toStdString());
        key = m_decoded.front();
    }
    Level &level = m_levels.back();
    const auto first = m_keys.begin() + std::ptrdiff_t(level.firstKey);
    const quint64 bit = key.empty() ? 1 : quint64(1) << ((key.size() * 7 + uchar(key.front()) + uchar(key.back())) & 63);
    if ((level.seen & bit) && size_t(m_keys.end() - first) <= ComparedKeys
        && std::find(first, m_keys.end(), key) != m_keys.end())
        return false;
    level.seen |= bit;
    m_keys.push_back(key);
    return true;
}

} // namespace

JsonNesting::Verdict JsonNesting::scan(const QByteArray &text, int limit)
{
    return Scanner(text, limit).run();
}

QJsonDocument JsonNesting::parse(const QByteArray &text)
{
    return within(text) ? QJsonDocument::fromJson(text) : QJsonDocument();
}
