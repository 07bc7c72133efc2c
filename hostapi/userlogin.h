#pragma once
#include "loginformrun.h"

// The modal login dialog of the Korvane cloud (user name and password, checked
// by the cloud). The success callback runs after a successful login, the close
// callback when the user cancels.
class userLogin : public LoginFormRun
{
    Q_OBJECT
public:
    explicit userLogin(QObject *parent = nullptr);
    int KvyExec();
};
