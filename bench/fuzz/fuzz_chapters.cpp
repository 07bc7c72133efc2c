// Library and chapter lists of the storage wizard: a reply's records fill the
// top level of the chapter tree, then again the children of its first chapter.
#include "fuzzsupport.h"

#include <cloud/cloudreply.h>
#include <storage/chaptertreemodel.h>

namespace {
void readAll(const ChapterTreeModel &model, const QModelIndex &parent)
{
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        model.data(index, Qt::DisplayRole);
        model.data(index, Qt::DecorationRole);
        ChapterTreeModel::level(model.itemForIndex(index));
        readAll(model, index);
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::ensureApplication();
    const CloudReply reply = CloudReply::parse(FuzzSupport::bytes(data, size));
    for (const QJsonValue &library : reply.dataArray())
        library.toObject().value(QStringLiteral("id")).toVariant().toString();
    // One model for the run, as the wizard keeps one: filling the top level
    // replaces the whole tree, and building the model loads its icons.
    static ChapterTreeModel model;
    model.fill(nullptr, reply.dataArray());
    if (model.rowCount() > 0) {
        QDTreeItem *first = model.itemForIndex(model.index(0, 0));
        if (ChapterTreeModel::waitsForChildren(first))
            model.fill(first, reply.dataArray());
        model.setExpanded(model.index(0, 0), true);
    }
    readAll(model, QModelIndex());
    return 0;
}
