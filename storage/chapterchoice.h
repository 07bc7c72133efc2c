#pragma once
#include <QString>

// The chapter answers of the storage wizard's second page, and the checks
// "确定" runs on them before a saving task is opened.
struct ChapterChoice
{
    bool gml = true;        // "根目录" chosen
    bool replace = false;   // "替换存储" chosen
    bool childZj = false;   // sub-chapters follow the project structure
    bool radZjxx = false;   // "从右侧章节选择" chosen
    bool finalTree = false; // the chosen chapter is a leaf
    QString zjid = QStringLiteral("null");

    // The message that refuses the choice, empty when it passes.
    QString refusal() const;
    bool hasChapter() const { return zjid != QLatin1String("null"); }
};
