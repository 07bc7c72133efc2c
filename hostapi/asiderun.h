#pragma once
#include <functional>

// Runs a job on a pool thread while the calling thread's local loop keeps
// the windows painting (user input held back until it ends); for the first
// builds of local data that take tens of milliseconds. Returns when the job
// has ended. An exception of the job ends it and is dropped: callers check
// the outcome themselves.
class AsideRun
{
public:
    static void wait(const std::function<void()> &job);
};
