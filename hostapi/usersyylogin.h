#pragma once
#include "loginformrun.h"

// The modal login dialog of one enterprise server, given the server's index in
// the host's full server list.
class userSyyLogin : public LoginFormRun
{
    Q_OBJECT
public:
    userSyyLogin(int serverIndex, QObject *parent = nullptr);
    int SyyExec();

private:
    int m_serverIndex;
};
