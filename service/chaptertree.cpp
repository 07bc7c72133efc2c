#include "chaptertree.h"
#include "billstore.h"

#include <QJsonObject>
#include <QVector>

namespace {

// One level being built: the chapters of one parent, the next to visit and
// the records made so far.
struct Level {
    QList<BillStore::Chapter> chapters;
    int next = 0;
    QJsonArray records;
};

QJsonObject record(const BillStore::Chapter &c, bool expanded, const QJsonArray &children)
{
    QJsonObject r{{QStringLiteral("_id"), c.id},
                  {QStringLiteral("zjmc"), c.name},
                  {QStringLiteral("pid"), c.parentId},
                  {QStringLiteral("state"), c.hasChildren && !expanded ? QStringLiteral("closed") : QStringLiteral("open")}};
    if (expanded)
        r.insert(QStringLiteral("children"), children);
    return r;
}

} // namespace

QJsonArray ChapterTree::records(BillStore &store, int libraryId, const QString &parentId, bool subtree)
{
    QVector<Level> stack{Level{store.chapters(libraryId, parentId), 0, {}}};
    for (;;) {
        Level &level = stack.last();
        if (level.next < level.chapters.size()) {
            const BillStore::Chapter &c = level.chapters.at(level.next);
            if (subtree && c.hasChildren && stack.size() < BillStore::MaxChapterDepth) {
                stack.append(Level{store.chapters(libraryId, c.id), 0, {}});
                continue;
            }
            level.records.append(record(c, false, {}));
            ++level.next;
            continue;
        }
        const QJsonArray done = level.records;
        stack.removeLast();
        if (stack.isEmpty())
            return done;
        Level &parent = stack.last();
        parent.records.append(record(parent.chapters.at(parent.next), true, done));
        ++parent.next;
    }
}
