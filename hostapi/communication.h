#pragma once
#include <QObject>
#include <QVariant>

// Messages to the host main window (e.g. 4, 63: refresh the login display).
class Communication : public QObject
{
    Q_OBJECT
public:
    static Communication *GetInstance();
    void SendMsg(int group, int code, const QVariant &value);

signals:
    void messageSent(int group, int code, const QVariant &value);

private:
    using QObject::QObject;
};
