#pragma once
#include <QByteArray>
#include <QJsonDocument>

// JSON text from the network checked in one pass before Qt parses it. Qt's
// JSON parser and writer recurse once per array or object level, so a thread
// with a small stack (a server worker has 100 KiB) would overflow on a
// kilobyte of brackets. And Qt 5.15's parser leaks the earlier value of a key
// that repeats in one object when that value is an array or object, so any
// sender could make the receiver leak memory.
class JsonNesting
{
public:
    // The deepest legitimate message is a whole chapter tree, two levels per
    // chapter level (record object and its "children" array) plus the
    // envelope: 65 levels at the deepest chapter depth the cloud stores (32).
    // At 128 levels Qt 5.15's parser and writer together need under 48 KiB
    // of stack, half of a server worker's.
    static constexpr int MaxDepth = 128;

    enum class Verdict { Fine, TooDeep, DuplicateKey };

    // Brackets and braces inside strings do not count; the text need not be
    // valid JSON. Keys compare as Qt decodes them ("a" equals "\u0061").
    static Verdict scan(const QByteArray &text, int limit = MaxDepth);
    // True when no array or object in `text` lies deeper than `limit` levels
    // and no object repeats a key.
    static bool within(const QByteArray &text, int limit = MaxDepth) { return scan(text, limit) == Verdict::Fine; }
    // `text` parsed when it is within MaxDepth, else a null document.
    static QJsonDocument parse(const QByteArray &text);
};
