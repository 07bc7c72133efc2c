#pragma once
#include <QJsonArray>
#include <QString>

class BillStore;

// A library's chapters below one parent as the chapter-tree methods answer
// them: {"_id", "zjmc", "pid", "state"}, each with its "children" when the
// whole subtree is asked for. Built with an explicit stack, never by
// recursion: requests run on threads with small stacks. Subtrees end
// BillStore::MaxChapterDepth levels down (only an older database holds deeper
// ones); the records there stay "closed" and are loaded by their own id, so
// the reply's nesting stays bounded too.
class ChapterTree
{
public:
    static QJsonArray records(BillStore &store, int libraryId, const QString &parentId, bool subtree);
};
