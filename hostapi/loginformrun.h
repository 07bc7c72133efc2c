#pragma once
#include "logindialog.h"

#include <QObject>

#include <functional>

// What the host's login dialogs share: the success and close callbacks and
// one modal run of the login form.
class LoginFormRun : public QObject
{
    Q_OBJECT
public:
    explicit LoginFormRun(QObject *parent = nullptr);

    void SetKvyLoginSueecss(std::function<void()> onSuccess);
    void SetKvyClose(std::function<void()> onClose);

protected:
    // Runs the form for `serverName`. Only a login the form itself accepted
    // counts: then the success callback runs, else the close callback, both
    // after the form is gone (they may rebuild the caller's state).
    int runForm(const QString &serverName, LoginDialog::Attempt attempt);

private:
    std::function<void()> m_onSuccess;
    std::function<void()> m_onClose;
};
