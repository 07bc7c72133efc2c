#pragma once
#include <QDialog>

#include <functional>

// Every modal run of a host dialog goes through here, so that tests (and the
// offscreen tour) can answer a dialog instead of a human: the answerer may
// fill the dialog's fields and returns the exec() result.
class ModalRun
{
public:
    using Answerer = std::function<int(QDialog *)>;
    static void setAnswerer(Answerer answerer);
    // The installed answerer (empty when dialogs run for real).
    static Answerer answerer();
    static int exec(QDialog *dialog);
};
