#pragma once

#include <thread>
#include <vector>

/// Calls `work` with 0 to `count` - 1, each on a thread of its own and all at the same time; returns when all
/// are done.
template <class Work> void onThreads(int count, Work work)
{
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int index = 0; index < count; ++index)
        threads.emplace_back([&work, index] { work(index); });
    for (auto& thread : threads)
        thread.join();
}
