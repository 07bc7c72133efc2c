#include "communication.h"

Communication *Communication::GetInstance()
{
    static Communication *c = new Communication;
    return c;
}

void Communication::SendMsg(int group, int code, const QVariant &value)
{
    emit messageSent(group, code, value);
}
