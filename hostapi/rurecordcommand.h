#pragma once
#include "tableredouiinfo.h"

#include <QUndoCommand>

#include <functional>
#include <utility>
#include <vector>

// One undo record: every change noted between BeginRecord and EndRecord.
// The changes are already applied when the record is pushed, so the first
// redo (QUndoStack::push) does nothing.
class RURecordCommand : public QUndoCommand
{
public:
    explicit RURecordCommand(const TableRedoUIInfo &info);

    void addChange(std::function<void()> undo, std::function<void()> redo);
    int changeCount() const { return static_cast<int>(m_changes.size()); }
    TableRedoUIInfo info() const { return m_info; }

    void undo() override;
    void redo() override;

private:
    TableRedoUIInfo m_info;
    std::vector<std::pair<std::function<void()>, std::function<void()>>> m_changes;
    bool m_applied = true;
};
