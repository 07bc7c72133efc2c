#include "jsonnesting.h"

bool JsonNesting::within(const QByteArray &text, int limit)
{
    int depth = 0;
    bool inString = false;
    bool escaped = false;
    for (const char c : text) {
        if (inString) {
            if (escaped)
                escaped = false;
            else if (c == '\\')
                escaped = true;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > limit)
                return false;
        } else if ((c == ']' || c == '}') && depth > 0) {
            // A stray closer ends a parse; never letting the count go below
            // zero keeps the check conservative for such text.
            --depth;
        }
    }
    return true;
}

QJsonDocument JsonNesting::parse(const QByteArray &text)
{
    return within(text) ? QJsonDocument::fromJson(text) : QJsonDocument();
}
