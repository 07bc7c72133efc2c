#include "veloraresources.h"

#include <QtGlobal>

void veloraInitResources()
{
    Q_INIT_RESOURCE(velora);
}
