#include "modalrun.h"

#include <QPointer>

namespace {
ModalRun::Answerer s_answerer;
}

void ModalRun::setAnswerer(Answerer answerer)
{
    s_answerer = std::move(answerer);
}

ModalRun::Answerer ModalRun::answerer()
{
    return s_answerer;
}

int ModalRun::exec(QDialog *dialog)
{
    if (!dialog)
        return 0;
    if (s_answerer) {
        QPointer<QDialog> guard(dialog);
        const Answerer answerer = s_answerer;
        const int result = answerer(dialog);
        if (guard && guard->isVisible())
            guard->hide();
        return result;
    }
    return dialog->exec();
}
