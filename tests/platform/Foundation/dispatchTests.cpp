#include <Foundation/Foundation.h>

#include "Foundation/testing/ManualClock.h"

#include <Foundation/NSDate.h>

#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <latch>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

RetainPtr<dispatch_queue_s> serialQueue()
{
    return adopt(dispatch_queue_create("serial", DISPATCH_QUEUE_SERIAL));
}
RetainPtr<dispatch_queue_s> concurrentQueue()
{
    return adopt(dispatch_queue_create("concurrent", DISPATCH_QUEUE_CONCURRENT));
}

} // namespace

TEST(DispatchOnce, RunsItsBlockOnce)
{
    static dispatch_once_t once;
    int calls = 0;
    for (int i = 0; i < 3; ++i)
        dispatch_once(&once, [&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(DispatchOnce, ThreadsThatComeMeanwhileWaitUntilTheBlockHasEnded)
{
    for (int round = 0; round < 200; ++round) {
        dispatch_once_t once = 0;
        int value = 0; // not atomic: every thread that returns sees what the block wrote
        std::atomic<int> wrong = 0;
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                dispatch_once(&once, [&] {
                    std::this_thread::yield();
                    ++value;
                });
                wrong += value != 1;
            });
        }
        for (auto& thread : threads)
            thread.join();
        EXPECT_EQ(wrong, 0);
    }
}

TEST(DispatchOnce, NullPredicateAndEmptyBlockDoNothing)
{
    int calls = 0;
    dispatch_once(nullptr, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    dispatch_once_t once = 0;
    dispatch_once(&once, dispatch_block_t());
    dispatch_once(&once, [&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(DispatchQueue, KeepsItsLabel)
{
    std::string name = "of mine";
    const auto queue = adopt(dispatch_queue_create(name.c_str(), DISPATCH_QUEUE_CONCURRENT));
    name = "changed";
    EXPECT_STREQ(dispatch_queue_get_label(queue), "of mine");
    const auto nameless = adopt(dispatch_queue_create(nullptr, DISPATCH_QUEUE_SERIAL));
    EXPECT_STREQ(dispatch_queue_get_label(nameless), "");
    EXPECT_STREQ(dispatch_queue_get_label(nullptr), "");
    EXPECT_STREQ(dispatch_queue_get_label(dispatch_get_main_queue()), "com.apple.main-thread");
}

TEST(DispatchQueue, NullQueuesAndEmptyBlocksDoNothing)
{
    int calls = 0;
    dispatch_async(nullptr, [&] { ++calls; });
    dispatch_sync(nullptr, [&] { ++calls; });
    dispatch_barrier_async(nullptr, [&] { ++calls; });
    dispatch_retain(nullptr);
    dispatch_release(nullptr);
    const auto queue = serialQueue();
    dispatch_async(queue, nullptr);
    dispatch_sync(queue, nullptr);
    dispatch_barrier_async(queue, nullptr);
    dispatch_sync(queue, [&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(DispatchQueue, SerialBlocksRunOneByOneInOrder)
{
    const auto queue = serialQueue();
    std::vector<int> order; // not guarded: the queue has to do that
    for (int i = 0; i < 1000; ++i)
        dispatch_async(queue, [&order, i] { order.push_back(i); });
    dispatch_sync(queue, [&] { order.push_back(1000); });
    ASSERT_EQ(order.size(), 1001U);
    for (int i = 0; i <= 1000; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(DispatchQueue, ConcurrentBlocksRunAtTheSameTime)
{
    const auto queue = concurrentQueue();
    // Neither can pass before the other has come: one thread alone would never get further.
    std::barrier meeting(2);
    std::latch done(2);
    for (int i = 0; i < 2; ++i) {
        dispatch_async(queue, [&] {
            meeting.arrive_and_wait();
            done.count_down();
        });
    }
    done.wait();
}

TEST(DispatchQueue, RunsNoMoreBlocksAtATimeThanTheMachineHasProcessors)
{
    const auto queue = concurrentQueue();
    const int limit = static_cast<int>(std::max(2U, std::thread::hardware_concurrency()));
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    constexpr int count = 500;
    std::latch done(count);
    for (int i = 0; i < count; ++i) {
        dispatch_async(queue, [&] {
            const int now = ++running;
            for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) { }
            std::this_thread::yield();
            --running;
            done.count_down();
        });
    }
    done.wait();
    EXPECT_LE(most, limit);
    EXPECT_GE(most, 1);
}

TEST(DispatchQueue, AsyncRunsOnAnotherThreadAndSyncOnTheCallers)
{
    const auto queue = concurrentQueue();
    std::thread::id async;
    std::thread::id sync;
    std::latch done(1);
    dispatch_async(queue, [&] {
        async = std::this_thread::get_id();
        done.count_down();
    });
    done.wait();
    dispatch_sync(queue, [&] { sync = std::this_thread::get_id(); });
    EXPECT_NE(async, std::this_thread::get_id());
    EXPECT_EQ(sync, std::this_thread::get_id());
}

TEST(DispatchQueue, BarrierRunsAlone)
{
    const auto queue = concurrentQueue();
    std::atomic<int> running = 0;
    std::atomic<int> before = 0;
    std::atomic<bool> wrong = false;
    int written = 0; // by the barrier only, read by what comes after
    for (int round = 1; round <= 50; ++round) {
        for (int i = 0; i < 4; ++i) {
            dispatch_async(queue, [&, round] {
                ++running;
                if (written != round - 1)
                    wrong = true;
                ++before;
                --running;
            });
        }
        dispatch_barrier_async(queue, [&, round] {
            if (running != 0 || before != round * 4)
                wrong = true;
            written = round;
        });
    }
    std::latch done(1);
    dispatch_barrier_async(queue, [&] { done.count_down(); });
    done.wait();
    EXPECT_FALSE(wrong);
    EXPECT_EQ(written, 50);
}

TEST(DispatchQueue, BlocksThatWaitForAnotherQueueDoNotUseUpTheThreads)
{
    // Every concurrent block waits for the serial queue, whose own blocks need a thread as well.
    const auto concurrent = concurrentQueue();
    const auto serial = serialQueue();
    constexpr int count = 100;
    std::latch done(count);
    int sum = 0; // guarded by the serial queue
    for (int i = 0; i < count; ++i) {
        dispatch_async(concurrent, [&] {
            dispatch_async(serial, [&] { ++sum; });
            dispatch_sync(serial, [&] { ++sum; });
            done.count_down();
        });
    }
    done.wait();
    dispatch_sync(serial, [&] { EXPECT_EQ(sum, 2 * count); });
}

TEST(DispatchQueue, LivesUntilItsLastBlockHasRun)
{
    std::latch done(100);
    std::atomic<int> sum = 0;
    auto queue = serialQueue();
    for (int i = 0; i < 100; ++i) {
        dispatch_async(queue, [&] {
            ++sum;
            done.count_down();
        });
    }
    queue = nullptr;
    done.wait();
    EXPECT_EQ(sum, 100);
}

TEST(DispatchQueue, BlockIsDestroyedOnceItHasRun)
{
    const auto queue = serialQueue();
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = token;
    dispatch_async(queue, [token = std::move(token)] {});
    for (int i = 0; i < 2 && !watch.expired(); ++i)
        dispatch_sync(queue, [] {});
    while (!watch.expired())
        std::this_thread::yield(); // what is left of the block goes just after the next one may start
}

TEST(DispatchQueue, BlocksFromManyThreadsAllRun)
{
    const auto serial = serialQueue();
    const auto concurrent = concurrentQueue();
    int serialSum = 0;
    std::atomic<int> concurrentSum = 0;
    std::latch done(4 * 250);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 250; ++i) {
                dispatch_async(serial, [&] { ++serialSum; });
                dispatch_sync(serial, [&] { ++serialSum; });
                dispatch_async(concurrent, [&] {
                    ++concurrentSum;
                    done.count_down();
                });
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    done.wait();
    dispatch_sync(serial, [&] { EXPECT_EQ(serialSum, 2000); });
    EXPECT_EQ(concurrentSum, 1000);
}

TEST(DispatchMainQueue, RunsBlocksInTheMainRunLoop)
{
    ManualClock clock;
    std::vector<int> order;
    dispatch_async(dispatch_get_main_queue(), [&] {
        order.push_back(1);
        dispatch_async(dispatch_get_main_queue(), [&] { order.push_back(3); });
    });
    dispatch_async(dispatch_get_main_queue(), [&] { order.push_back(2); });
    EXPECT_EQ(order, std::vector<int>());
    NSRunLoop::mainRunLoop()->runUntilDate(NSDate::dateWithTimeIntervalSinceReferenceDate(1).get());
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(DispatchMainQueue, WakesAWaitingRunLoopAndEndsItsTurn)
{
    bool ran = false;
    std::thread::id where;
    std::thread other([&] {
        dispatch_async(dispatch_get_main_queue(), [&] {
            ran = true;
            where = std::this_thread::get_id();
        });
    });
    const auto inAnHour = NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + 3600);
    EXPECT_TRUE(NSRunLoop::mainRunLoop()->runMode(NSDefaultRunLoopMode, inAnHour));
    other.join();
    EXPECT_TRUE(ran);
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(DispatchMainQueue, SyncFromAnotherThreadWaitsForTheMainThread)
{
    std::thread::id where;
    std::atomic<bool> returned = false;
    std::thread other([&] {
        dispatch_sync(dispatch_get_main_queue(), [&] { where = std::this_thread::get_id(); });
        returned = true;
    });
    const auto inAnHour = NSDate::dateWithTimeIntervalSinceReferenceDate(CFAbsoluteTimeGetCurrent() + 3600);
    NSRunLoop::mainRunLoop()->runMode(NSDefaultRunLoopMode, inAnHour);
    other.join();
    EXPECT_TRUE(returned);
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(DispatchMainQueue, WaitsWhileAModeOfItsOwnRuns)
{
    ManualClock clock;
    bool ran = false;
    const auto timer = NSTimer::timerWithTimeInterval(1, true, [](NSTimer*) {});
    NSRunLoop::mainRunLoop()->addTimer(timer, "mine");
    dispatch_async(dispatch_get_main_queue(), [&] { ran = true; });
    NSRunLoop::mainRunLoop()->runMode("mine", NSDate::dateWithTimeIntervalSinceReferenceDate(3).get());
    EXPECT_FALSE(ran);
    clock.advance(0);
    EXPECT_TRUE(ran);
    timer->invalidate();
}

TEST(DispatchQueueDeathTest, ExceptionOfABlockEndsTheProcess)
{
    EXPECT_DEATH(
        {
            const auto queue = serialQueue();
            dispatch_sync(queue, [] { throw std::runtime_error("out of a block"); });
        },
        "out of a block");
}

TEST(DispatchQueueDeathTest, WaitingForItselfEndsTheProcess)
{
    EXPECT_DEATH(
        {
            const auto queue = serialQueue();
            dispatch_sync(queue, [&] { dispatch_sync(queue, [] {}); });
        },
        "dispatch_sync: the queue \"serial\" would wait for itself");
    EXPECT_DEATH(dispatch_sync(dispatch_get_main_queue(), [] {}), "would wait for itself");
}
