#include "jsonnesting.h"

#include <QJsonArray>

#include <algorithm>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace {

// One open array or object. An object's keys are collected as views into the
// text (or into decoded copies) and checked once, sorted, when it closes.
struct Level
{
    bool object = false;
    bool expectKey = false;
    std::vector<std::string_view> keys;
};

class Scanner
{
public:
    Scanner(const QByteArray &text, int limit) : m_text(text), m_limit(limit) {}
    JsonNesting::Verdict run();

private:
    bool open(bool object);
    bool close();
    void addKey(int begin, int end, bool escaped);

    const QByteArray &m_text;
    const int m_limit;
    int m_depth = 0;
    // Levels keep their key vectors' capacity when reused at the same depth.
    std::vector<Level> m_levels;
    std::deque<std::string> m_decoded;
};

JsonNesting::Verdict Scanner::run()
{
    const char *data = m_text.constData();
    const int size = m_text.size();
    for (int i = 0; i < size; ++i) {
        const char c = data[i];
        if (c == '"') {
            const int begin = i + 1;
            bool escaped = false;
            for (++i; i < size && data[i] != '"'; ++i) {
                if (data[i] == '\\') {
                    escaped = true;
                    ++i;
                }
            }
            Level *top = m_depth > 0 ? &m_levels[size_t(m_depth - 1)] : nullptr;
            if (top && top->object && top->expectKey) {
                addKey(begin, std::min(i, size), escaped);
                top->expectKey = false;
            }
        } else if (c == '[' || c == '{') {
            if (!open(c == '{'))
                return JsonNesting::Verdict::TooDeep;
        } else if (c == ']' || c == '}') {
            if (!close())
                return JsonNesting::Verdict::DuplicateKey;
        } else if (c == ',' && m_depth > 0) {
            Level &top = m_levels[size_t(m_depth - 1)];
            top.expectKey = top.object;
        }
    }
    return JsonNesting::Verdict::Fine;
}

bool Scanner::open(bool object)
{
    if (++m_depth > m_limit)
        return false;
    if (m_levels.size() < size_t(m_depth))
        m_levels.emplace_back();
    Level &level = m_levels[size_t(m_depth - 1)];
    level.object = object;
    level.expectKey = object;
    level.keys.clear();
    return true;
}

// False when the closing level is an object with a repeated key. A stray
// closer ends a parse; never letting the depth go below zero keeps the check
// conservative for such text.
bool Scanner::close()
{
    if (m_depth == 0)
        return true;
    std::vector<std::string_view> &keys = m_levels[size_t(--m_depth)].keys;
    if (keys.size() < 2)
        return true;
    std::sort(keys.begin(), keys.end());
    return std::adjacent_find(keys.begin(), keys.end()) == keys.end();
}

void Scanner::addKey(int begin, int end, bool escaped)
{
    std::string_view key(m_text.constData() + begin, size_t(end - begin));
    if (escaped) {
        // Rare in real messages: let Qt decode just this string, so keys that
        // differ only in their escapes compare as the parser will see them.
        const QByteArray quoted = '[' + m_text.mid(begin - 1, end - begin + 2) + ']';
        m_decoded.push_back(QJsonDocument::fromJson(quoted).array().at(0).toString().toStdString());
        key = m_decoded.back();
    }
    m_levels[size_t(m_depth - 1)].keys.push_back(key);
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
