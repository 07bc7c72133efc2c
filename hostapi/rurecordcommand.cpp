#include "rurecordcommand.h"

RURecordCommand::RURecordCommand(const TableRedoUIInfo &info) : m_info(info)
{
    setText(info.caption);
}

void RURecordCommand::addChange(std::function<void()> undo, std::function<void()> redo)
{
    m_changes.emplace_back(std::move(undo), std::move(redo));
}

void RURecordCommand::undo()
{
    for (auto it = m_changes.rbegin(); it != m_changes.rend(); ++it)
        it->first();
    m_applied = false;
}

void RURecordCommand::redo()
{
    if (m_applied)
        return;
    for (auto &change : m_changes)
        change.second();
    m_applied = true;
}
