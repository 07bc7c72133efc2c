#pragma once
#include <QObject>

#include <functional>

// The modal login dialog of one enterprise server, given the server's index in
// the host's full server list.
class userSyyLogin : public QObject
{
    Q_OBJECT
public:
    userSyyLogin(int serverIndex, QObject *parent = nullptr);
    ~userSyyLogin() override = default;
    void SetKvyLoginSueecss(std::function<void()> onSuccess);
    void SetKvyClose(std::function<void()> onClose);
    int SyyExec();

private:
    int m_serverIndex;
    std::function<void()> m_onSuccess;
    std::function<void()> m_onClose;
};
