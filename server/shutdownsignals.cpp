#include "shutdownsignals.h"

#include <csignal>
#include <pthread.h>

namespace {

sigset_t stopSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

} // namespace

bool ShutdownSignals::block()
{
    const sigset_t set = stopSignals();
    // A client that vanishes mid-reply must not kill the server.
    std::signal(SIGPIPE, SIG_IGN);
    return pthread_sigmask(SIG_BLOCK, &set, nullptr) == 0;
}

int ShutdownSignals::wait()
{
    const sigset_t set = stopSignals();
    int signal = 0;
    while (sigwait(&set, &signal) != 0) {
    }
    return signal;
}
