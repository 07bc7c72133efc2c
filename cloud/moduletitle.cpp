#include "moduletitle.h"

QString veloraModuleTitle()
{
    return QStringLiteral("Velora");
}
