#include "rurecordcontrol.h"
#include "rurecordcommand.h"

#include <QPointer>
#include <QUndoStack>

#include <memory>

namespace {
struct RecordState
{
    QPointer<QUndoStack> hostStack;
    std::unique_ptr<QUndoStack> ownStack;
    std::unique_ptr<RURecordCommand> open;
    int depth = 0;
};

RecordState &state()
{
    static RecordState s;
    return s;
}
}

void RURecordControl::BeginRecord(const TableRedoUIInfo &info)
{
    RecordState &s = state();
    if (s.depth++ == 0)
        s.open = std::make_unique<RURecordCommand>(info);
}

void RURecordControl::EndRecord()
{
    RecordState &s = state();
    if (s.depth == 0)
        return;
    if (--s.depth > 0)
        return;
    std::unique_ptr<RURecordCommand> record = std::move(s.open);
    if (record && record->changeCount() > 0)
        undoStack()->push(record.release());
}

bool RURecordControl::IsRecording()
{
    return state().depth > 0;
}

void RURecordControl::RecordChange(std::function<void()> undo, std::function<void()> redo)
{
    RecordState &s = state();
    if (s.open)
        s.open->addChange(std::move(undo), std::move(redo));
}

QUndoStack *RURecordControl::undoStack()
{
    RecordState &s = state();
    if (s.hostStack)
        return s.hostStack;
    if (!s.ownStack)
        s.ownStack = std::make_unique<QUndoStack>();
    return s.ownStack.get();
}

void RURecordControl::setUndoStack(QUndoStack *stack)
{
    state().hostStack = stack;
}

void RURecordControl::abandonRecord()
{
    RecordState &s = state();
    s.open.reset();
    s.depth = 0;
}
