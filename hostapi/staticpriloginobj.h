#pragma once
#include <QObject>
#include <QString>

// The host's login broker: announces login changes made anywhere in the host.
class staticPriLoginObj : public QObject
{
    Q_OBJECT
public:
    static staticPriLoginObj *GetInstance();

signals:
    void priLogin(const QString &serverName);
    void priForceExit(const QString &serverName);
    void priExit(const QString &serverName);
    void kvyLogin();
    void kvyExit();
    void kvyForceExit();
    void addpri();
    void priDel();

private:
    using QObject::QObject;
};
