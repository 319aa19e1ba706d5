#include <Foundation/Foundation.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <latch>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

class DispatchApply : public testing::Test {
protected:
    const RetainPtr<dispatch_queue_s> serial = adopt(dispatch_queue_create("serial", DISPATCH_QUEUE_SERIAL));
    const RetainPtr<dispatch_queue_s> concurrent =
        adopt(dispatch_queue_create("concurrent", DISPATCH_QUEUE_CONCURRENT));
};
using DispatchApplyDeathTest = DispatchApply;

} // namespace

TEST_F(DispatchApply, CallsItsBlockOnceWithEachNumberAndReturnsWhenAllCallsHaveEnded)
{
    for (const std::size_t count : {1, 2, 3, 100, 10'000}) {
        // Not atomic: no number may come twice, and the caller sees what all the calls wrote.
        std::vector<int> calls(count, 0);
        dispatch_apply(count, concurrent, [&](std::size_t i) { ++calls[i]; });
        EXPECT_EQ(calls, std::vector<int>(count, 1));
    }
}

TEST_F(DispatchApply, RunsOnTwoThreadsAtTheSameTime)
{
    // Neither can pass before the other has come: one thread alone would never get further.
    std::barrier meeting(2);
    std::mutex mutex;
    std::vector<std::thread::id> threads;
    dispatch_apply(2, concurrent, [&](std::size_t) {
        meeting.arrive_and_wait();
        const std::lock_guard lock(mutex);
        threads.push_back(std::this_thread::get_id());
    });
    ASSERT_EQ(threads.size(), 2U);
    EXPECT_NE(threads[0], threads[1]);
    EXPECT_EQ(std::count(threads.begin(), threads.end(), std::this_thread::get_id()), 1);
}

TEST_F(DispatchApply, RunsOneByOneInOrderOnASerialQueue)
{
    std::vector<std::size_t> order;
    dispatch_async(serial, [&] { order.push_back(99); });
    dispatch_apply(4, serial, [&](std::size_t i) { order.push_back(i); });
    EXPECT_EQ(order, (std::vector<std::size_t>{99, 0, 1, 2, 3}));
}

TEST_F(DispatchApply, WithoutIterationsAQueueOrABlockDoesNothing)
{
    int calls = 0;
    const auto count = [&](std::size_t) { ++calls; };
    dispatch_apply(0, concurrent, count);
    dispatch_apply(0, serial, count);
    dispatch_apply(3, nullptr, count);
    dispatch_apply(3, concurrent, nullptr);
    dispatch_apply(3, serial, nullptr);
    EXPECT_EQ(calls, 0);
    dispatch_apply(1, concurrent, count);
    EXPECT_EQ(calls, 1);
}

TEST_F(DispatchApply, WithinItselfDoesNotUseUpTheThreads)
{
    std::atomic<int> calls = 0;
    dispatch_apply(20, concurrent, [&](std::size_t) {
        dispatch_apply(20, concurrent,
            [&](std::size_t) { dispatch_apply(3, concurrent, [&](std::size_t) { ++calls; }); });
    });
    EXPECT_EQ(calls, 20 * 20 * 3);
}

TEST_F(DispatchApply, FromManyThreadsRunsEveryCall)
{
    std::vector<std::thread> threads;
    std::atomic<int> calls = 0;
    std::atomic<int> early = 0;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                std::atomic<int> own = 0; // gone when the call has returned
                dispatch_apply(7, concurrent, [&](std::size_t) {
                    ++own;
                    ++calls;
                });
                early += own != 7;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(calls, 4 * 200 * 7);
    EXPECT_EQ(early, 0);
}

TEST_F(DispatchApply, RunsWhollyBeforeOrWhollyAfterABarrier)
{
    for (int round = 0; round < 100; ++round) {
        std::atomic<int> ended = 0;
        std::atomic<int> seen = -1;
        dispatch_apply(8, concurrent, [&](std::size_t i) {
            if (i == 0)
                dispatch_barrier_async(concurrent, [&] { seen = ended.load(); });
            std::this_thread::yield();
            ++ended;
        });
        std::latch done(1);
        dispatch_barrier_async(concurrent, [&] { done.count_down(); });
        done.wait();
        EXPECT_EQ(seen, 8);
    }
}

TEST_F(DispatchApply, WaitsForABarrierThatCameBefore)
{
    int written = 0; // by the barrier only
    std::atomic<int> wrong = 0;
    for (int round = 1; round <= 50; ++round) {
        dispatch_barrier_async(concurrent, [&] {
            std::this_thread::yield();
            ++written;
        });
        dispatch_apply(4, concurrent, [&](std::size_t) { wrong += written != round; });
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(DispatchApplyDeathTest, ExceptionOfABlockEndsTheProcess)
{
    // Of one call: two that end the process at the same time leave no message.
    const auto throwOnce = [](std::size_t i) {
        if (i == 2)
            throw std::runtime_error("out of a block");
    };
    EXPECT_DEATH(dispatch_apply(4, concurrent, throwOnce), "out of a block");
}

TEST_F(DispatchApplyDeathTest, WaitingForItselfOnASerialQueueEndsTheProcess)
{
    EXPECT_DEATH(
        dispatch_apply(1, serial, [&](std::size_t) { dispatch_apply(1, serial, [](std::size_t) {}); }),
        "the queue \"serial\" would wait for itself");
}
