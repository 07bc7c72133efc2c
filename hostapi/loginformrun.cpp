#include "loginformrun.h"
#include "modalrun.h"

LoginFormRun::LoginFormRun(QObject *parent) : QObject(parent) {}

void LoginFormRun::SetKvyLoginSueecss(std::function<void()> onSuccess)
{
    m_onSuccess = std::move(onSuccess);
}

void LoginFormRun::SetKvyClose(std::function<void()> onClose)
{
    m_onClose = std::move(onClose);
}

int LoginFormRun::runForm(const QString &serverName, LoginDialog::Attempt attempt)
{
    int result = QDialog::Rejected;
    {
        LoginDialog dialog(QStringLiteral("登录"), serverName, std::move(attempt));
        if (ModalRun::exec(&dialog) == QDialog::Accepted && dialog.result() == QDialog::Accepted)
            result = QDialog::Accepted;
    }
    const std::function<void()> after = result == QDialog::Accepted ? m_onSuccess : m_onClose;
    if (after)
        after();
    return result;
}
