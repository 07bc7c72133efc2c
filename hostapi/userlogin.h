#pragma once
#include <QObject>

#include <functional>

// The modal login dialog of the Korvane cloud (user name and password, checked
// by the cloud). The success callback runs after a successful login, the close
// callback when the user cancels.
class userLogin : public QObject
{
    Q_OBJECT
public:
    explicit userLogin(QObject *parent = nullptr);
    ~userLogin() override = default;
    void SetKvyLoginSueecss(std::function<void()> onSuccess);
    void SetKvyClose(std::function<void()> onClose);
    int KvyExec();

private:
    std::function<void()> m_onSuccess;
    std::function<void()> m_onClose;
};
