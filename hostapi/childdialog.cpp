#include "childdialog.h"
#include "modalrun.h"

#include <QPointer>

int ChildDialog::run(QObject *owner, QDialog *child, const Read &read)
{
    QPointer<QObject> ownerAlive(owner);
    QPointer<QDialog> childAlive(child);
    auto ownerGone = [&] { return owner && !ownerAlive; };
    const int result = ModalRun::exec(child);
    if (ownerGone() || !childAlive)
        return Gone;
    if (read)
        read(result);
    const bool gone = ownerGone();
    delete childAlive.data();
    return gone ? Gone : result;
}
