#include "usersyylogin.h"
#include "logindialog.h"
#include "modalrun.h"
#include "serverregistry.h"

userSyyLogin::userSyyLogin(int serverIndex, QObject *parent)
    : QObject(parent), m_serverIndex(serverIndex)
{
}

void userSyyLogin::SetKvyLoginSueecss(std::function<void()> onSuccess)
{
    m_onSuccess = std::move(onSuccess);
}

void userSyyLogin::SetKvyClose(std::function<void()> onClose)
{
    m_onClose = std::move(onClose);
}

int userSyyLogin::SyyExec()
{
    const QList<LtdInfo *> servers = ServerRegistry::instance()->servers();
    const QString name = m_serverIndex >= 0 && m_serverIndex < servers.size()
                             ? servers.at(m_serverIndex)->getServerName()
                             : QStringLiteral("企业云");
    const int index = m_serverIndex;
    int result = QDialog::Rejected;
    {
        LoginDialog dialog(QStringLiteral("登录"), name, [index](const QString &user, const QString &password) {
            return ServerRegistry::instance()->loginEnterprise(index, user, password);
        });
        // Only a login the form itself accepted counts as success.
        if (ModalRun::exec(&dialog) == QDialog::Accepted && dialog.result() == QDialog::Accepted)
            result = QDialog::Accepted;
    }
    if (result == QDialog::Accepted) {
        if (m_onSuccess)
            m_onSuccess();
    } else if (m_onClose) {
        m_onClose();
    }
    return result;
}
