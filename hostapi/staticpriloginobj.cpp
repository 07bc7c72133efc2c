#include "staticpriloginobj.h"

staticPriLoginObj *staticPriLoginObj::GetInstance()
{
    static staticPriLoginObj *broker = new staticPriLoginObj;
    return broker;
}
