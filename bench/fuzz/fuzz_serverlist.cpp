// The server list as the host registry takes it in.
#include "fuzzsupport.h"

#include <hostapi/serverregistry.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::ensureApplication();
    FuzzSupport::answerWith(FuzzSupport::bytes(data, size));
    ServerRegistry *registry = ServerRegistry::instance();
    if (registry->refresh())
        for (LtdInfo *entry : registry->servers())
            entry->getServerName().size();
    FuzzSupport::drainEvents();
    return 0;
}
