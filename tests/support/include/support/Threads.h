#pragma once

#include <algorithm>
#include <cstddef>
#include <latch>
#include <thread>
#include <type_traits>
#include <vector>

/// Calls `work` with 0 to `count` - 1, each on its own thread, all started together; returns when all calls
/// have returned.
template <class Work> void onThreads(int count, Work work)
{
    std::latch start(count);
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int index = 0; index < count; ++index)
        threads.emplace_back([&work, &start, index] {
            start.arrive_and_wait();
            work(index);
        });
    for (auto& thread : threads)
        thread.join();
}

/// Whether eight threads that call `get` at the same time get the same pointer, and not a null one.
template <class Get> bool allThreadsGetTheSame(Get get)
{
    std::vector<std::invoke_result_t<Get>> results(8);
    onThreads(8, [&](int index) { results[static_cast<std::size_t>(index)] = get(); });
    return results.front() && std::all_of(results.begin(), results.end(), [&](const auto& result) {
        return result == results.front();
    });
}
