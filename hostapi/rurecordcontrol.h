#pragma once
#include "tableredouiinfo.h"

#include <QString>

#include <functional>

class QUndoStack;

// The host's undo record control. Everything changed in the project between
// BeginRecord and EndRecord becomes one step on the host's undo stack, named
// by the record's caption. Records nest: only the outermost pair counts. A
// record without changes leaves no step. GUI thread only.
class RURecordControl
{
public:
    static void BeginRecord(const TableRedoUIInfo &info);
    static void EndRecord();
    static bool IsRecording();

    // Notes a change that has just been made (the project's setters call
    // this): `undo` restores the old state, `redo` makes the change again.
    // Outside a record nothing is kept.
    static void RecordChange(std::function<void()> undo, std::function<void()> redo);

    // The host's undo stack; until the host sets one, a stack of our own.
    static QUndoStack *undoStack();
    static void setUndoStack(QUndoStack *stack);
    // Drops an open record without pushing it (the host discards a project).
    static void abandonRecord();
};
