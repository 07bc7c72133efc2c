#pragma once
#include <QList>
#include <QString>

#include <functional>

class HostContext;

// Tour steps for the host's own dialogs that the module opens on the way
// (login, month and place pickers, fee template, project filter), so the
// tour shows every dialog that exists, not only the menu's.
class HostDialogTour
{
public:
    struct Step
    {
        QString id;
        std::function<void(HostContext &)> run;
    };
    static QList<Step> steps();
};
