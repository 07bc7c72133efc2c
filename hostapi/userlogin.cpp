#include "userlogin.h"
#include "serverregistry.h"

userLogin::userLogin(QObject *parent) : LoginFormRun(parent) {}

int userLogin::KvyExec()
{
    return runForm(QStringLiteral("Korvane云"), [](const QString &user, const QString &password) {
        return ServerRegistry::instance()->loginKorvane(user, password);
    });
}
