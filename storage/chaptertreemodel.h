#pragma once
#include "qdtreemodel.h"

#include <QIcon>
#include <QJsonArray>
#include <QSet>

// The chapter tree of a cloud bill library, loaded lazily: a chapter the
// cloud reports "closed" gets one placeholder child until its real children
// are filled in. Folders show open while expanded, leaves as files.
class ChapterTreeModel : public QDTreeModel
{
    Q_OBJECT
public:
    explicit ChapterTreeModel(QObject *parent = nullptr);

    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    // Replaces the children of `parent` (the top level when null) by the
    // reply records {"_id", "zjmc", "state"}.
    void fill(QDTreeItem *parent, const QJsonArray &records);
    // True while `item` holds only the placeholder of unloaded children.
    static bool waitsForChildren(const QDTreeItem *item);
    static bool isPlaceholder(const QDTreeItem *item);
    // Depth below the root: 1 for a top-level chapter, 0 for none.
    static int level(const QDTreeItem *item);

    void setExpanded(const QModelIndex &index, bool expanded);

private:
    QSet<const QDTreeItem *> m_expanded;
    QIcon m_open;
    QIcon m_closed;
    QIcon m_file;
};
