#pragma once

#include <cstddef>
#include <functional>

/// The threads that run the blocks of all queues: as many at a time as the machine has processors, at least
/// two. They are started on demand.
class DispatchPool {
public:
    DispatchPool() = delete;

    /// Runs `work` on one of the threads as soon as one is free, in the order of the calls.
    static void run(std::function<void()> work);

    /// How many of its threads may run blocks at a time.
    static std::size_t width();

    /// In scope while the calling thread only waits for another one. If it is one of the pool's, another
    /// thread may run meanwhile; otherwise blocks that wait for later ones could occupy all threads.
    class BlockedScope {
    public:
        BlockedScope();
        BlockedScope(const BlockedScope&) = delete;
        BlockedScope& operator=(const BlockedScope&) = delete;
        ~BlockedScope();
    };
};
