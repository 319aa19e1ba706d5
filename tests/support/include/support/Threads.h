#pragma once

#include <algorithm>
#include <cstddef>
#include <latch>
#include <thread>
#include <type_traits>
#include <vector>

/// Calls `work` with 0 to `count` - 1, each on a thread of its own and all at the same time; returns when all
/// are done.
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

/// Whether eight threads that ask at the same time get the same pointer, and not a null one.
template <class Ask> bool allThreadsGetTheSame(Ask ask)
{
    std::vector<std::invoke_result_t<Ask>> answers(8);
    onThreads(8, [&](int index) { answers[static_cast<std::size_t>(index)] = ask(); });
    return answers.front() && std::all_of(answers.begin(), answers.end(), [&](const auto& answer) {
        return answer == answers.front();
    });
}
