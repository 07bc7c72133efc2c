#pragma once

class CloudCall;

// How a blocking cloud call waits for its reply. The quiet wait runs a local
// loop that keeps windows painting but takes no user input; a host installs
// its own waiter on the GUI thread to show the wait and let the user cancel
// (ServicesUtil::setWaiter). Cancelling finishes the call with empty bytes,
// which every caller already treats as no reply.
class CloudWaiter
{
public:
    virtual ~CloudWaiter();
    virtual void wait(CloudCall &call) = 0;

    static void waitQuietly(CloudCall &call);
};
