#include "userlogin.h"
#include "logindialog.h"
#include "modalrun.h"
#include "serverregistry.h"

userLogin::userLogin(QObject *parent)
    : QObject(parent)
{
}

void userLogin::SetKvyLoginSueecss(std::function<void()> onSuccess)
{
    m_onSuccess = std::move(onSuccess);
}

void userLogin::SetKvyClose(std::function<void()> onClose)
{
    m_onClose = std::move(onClose);
}

int userLogin::KvyExec()
{
    int result = QDialog::Rejected;
    {
        LoginDialog dialog(QStringLiteral("登录"), QStringLiteral("Korvane云"),
                           [](const QString &user, const QString &password) {
                               return ServerRegistry::instance()->loginKorvane(user, password);
                           });
        // Only a login the form itself accepted counts as success.
        if (ModalRun::exec(&dialog) == QDialog::Accepted && dialog.result() == QDialog::Accepted)
            result = QDialog::Accepted;
    }
    // Callbacks run after the form is gone: they may rebuild the caller's state.
    if (result == QDialog::Accepted) {
        if (m_onSuccess)
            m_onSuccess();
    } else if (m_onClose) {
        m_onClose();
    }
    return result;
}
