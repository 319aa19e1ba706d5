#include <Foundation/Foundation.h>

#include "Probe.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

TEST(WeakPtr, BecomesNullWhenTheObjectGoes)
{
    int destroyed = 0;
    auto probe = make<Probe>(destroyed);
    const WeakPtr<Probe> weak(probe);
    EXPECT_EQ(weak.lock(), probe);
    probe = nullptr;
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(weak.lock(), nullptr);
}

TEST(WeakPtr, NeverRevivesAnObjectThatAnotherThreadReleases)
{
    for (int round = 0; round < 2000; ++round) {
        int destroyed = 0;
        auto probe = make<Probe>(destroyed);
        const WeakPtr<Probe> weak(probe);
        std::thread reader([&weak] {
            while (weak.lock()) { }
        });
        probe = nullptr;
        reader.join();
        ASSERT_EQ(destroyed, 1);
    }
}

TEST(WeakPtr, NullStaysNull)
{
    EXPECT_EQ(WeakPtr<Probe>().lock(), nullptr);
    EXPECT_EQ(WeakPtr<Probe>(static_cast<Probe*>(nullptr)).lock(), nullptr);
    EXPECT_EQ(WeakPtr<Probe>(RetainPtr<Probe>()).lock(), nullptr);
}

TEST(WeakPtr, CopiesSeeTheSameObjectGo)
{
    int destroyed = 0;
    auto probe = make<Probe>(destroyed);
    const WeakPtr<Probe> weak(probe);
    const WeakPtr<Probe> copy(weak); // NOLINT(performance-unnecessary-copy-initialization): that is the test
    EXPECT_EQ(copy.lock(), probe);
    EXPECT_EQ(WeakPtr<Probe>(probe).lock(), probe);
    probe = nullptr;
    EXPECT_EQ(weak.lock(), nullptr);
    EXPECT_EQ(copy.lock(), nullptr);
}

TEST(WeakPtr, LockedReferenceRetainsTheObject)
{
    int destroyed = 0;
    auto probe = make<Probe>(destroyed);
    const WeakPtr<Probe> weak(probe);
    auto locked = weak.lock();
    probe = nullptr;
    EXPECT_EQ(destroyed, 0);
    locked = nullptr;
    EXPECT_EQ(destroyed, 1);
}

TEST(WeakPtr, ThreadsMakeAndLockTheFirstReferencesAtOnce)
{
    for (int round = 0; round < 200; ++round) {
        int destroyed = 0;
        auto probe = make<Probe>(destroyed);
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&ready, strong = probe]() mutable {
                ++ready;
                while (ready < 4)
                    std::this_thread::yield();
                const WeakPtr<Probe> weak(strong);
                EXPECT_EQ(weak.lock(), strong);
                strong = nullptr;
                static_cast<void>(weak.lock());
            });
        }
        probe = nullptr;
        for (auto& thread : threads)
            thread.join();
        ASSERT_EQ(destroyed, 1);
    }
}
