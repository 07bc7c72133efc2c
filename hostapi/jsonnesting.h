#pragma once
#include <QByteArray>
#include <QJsonDocument>

// How deeply JSON text nests, found in one pass without parsing it. Qt's JSON
// parser and writer recurse once per array or object level, so text from the
// network is checked here first: a thread with a small stack (a server worker
// has 100 KiB) would otherwise overflow on a kilobyte of brackets.
class JsonNesting
{
public:
    // The deepest legitimate message is a whole chapter tree, two levels per
    // chapter level (record object and its "children" array) plus the
    // envelope: 65 levels at the deepest chapter depth the cloud stores (32).
    // At 128 levels Qt 5.15's parser and writer together need under 48 KiB
    // of stack, half of a server worker's.
    static constexpr int MaxDepth = 128;

    // True when no array or object in `text` lies deeper than `limit` levels.
    // Brackets inside strings do not count; the text need not be valid JSON.
    static bool within(const QByteArray &text, int limit = MaxDepth);
    // `text` parsed when it is within MaxDepth, else a null document.
    static QJsonDocument parse(const QByteArray &text);
};
