#pragma once

// SIGINT and SIGTERM as a clean stop: blocked in every thread (call block()
// before any thread starts, so that they inherit the mask) and collected by
// wait() on the main thread.
class ShutdownSignals
{
public:
    static bool block();
    // Blocks until SIGINT or SIGTERM arrives; returns its number.
    static int wait();
};
