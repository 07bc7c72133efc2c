#include "usersyylogin.h"
#include "serverregistry.h"

userSyyLogin::userSyyLogin(int serverIndex, QObject *parent) : LoginFormRun(parent), m_serverIndex(serverIndex) {}

int userSyyLogin::SyyExec()
{
    const QList<LtdInfo *> servers = ServerRegistry::instance()->servers();
    const int index = m_serverIndex;
    const QString name = index >= 0 && index < servers.size() ? servers.at(index)->getServerName()
                                                              : QStringLiteral("企业云");
    return runForm(name, [index](const QString &user, const QString &password) {
        return ServerRegistry::instance()->loginEnterprise(index, user, password);
    });
}
