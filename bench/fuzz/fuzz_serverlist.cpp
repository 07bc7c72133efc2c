// The server list as the host registry takes it in: the reply parsed as
// CloudEnvelope::send parses it, then the registry's reading of its records.
// Only the parsing runs per input, not the request building or the event loop.
#include "fuzzsupport.h"

#include <hostapi/jsonnesting.h>
#include <hostapi/serverregistry.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzSupport::ensureApplication();
    ServerRegistry *registry = ServerRegistry::instance();
    // Entries are kept for the life of the process; without this every name
    // an input ever held would pile up.
    registry->reset();
    if (registry->take(JsonNesting::parse(FuzzSupport::bytes(data, size)).object()))
        for (LtdInfo *entry : registry->servers())
            entry->getServerName().size();
    return 0;
}
