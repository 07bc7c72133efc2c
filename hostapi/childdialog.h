#pragma once
#include <functional>

class QDialog;
class QObject;

// Runs a child dialog modally (through ModalRun) on behalf of its owner and
// deletes it afterwards. The owner or the child may die during the modal run
// (the host closes a window, a login resets the page): then nothing of either
// is touched once the run returns.
//
//     auto *picker = new XmgkTime(this);
//     picker->SetTimeData(m_comSj->text());
//     ChildDialog::run(this, picker, [&](int result) {
//         if (result == XmgkTime::Chosen)
//             m_comSj->setText(picker->GetTimeData());
//     });
//
// Create the child with the owner (or one of the owner's widgets) as parent,
// so that it dies with the owner.
class ChildDialog
{
public:
    // Returned when the owner or the child died during the run.
    enum { Gone = -1 };
    using Read = std::function<void(int result)>;

    // The modal result, or Gone. `read` runs only when owner and child both
    // survived the run, before the child is deleted. A null owner: the child
    // alone is watched.
    static int run(QObject *owner, QDialog *child, const Read &read = Read());
};
