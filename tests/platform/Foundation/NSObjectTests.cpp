#include <Foundation/Foundation.h>

#include "Probe.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

TEST(NSObject, GoesWithItsLastReference)
{
    int destroyed = 0;
    auto first = make<Probe>(destroyed);
    RetainPtr<NSObject> second = first;
    first = nullptr;
    EXPECT_EQ(destroyed, 0);
    second = nullptr;
    EXPECT_EQ(destroyed, 1);
}

TEST(NSObject, EqualsOnlyItself)
{
    const auto one = make<NSObject>();
    const auto other = make<NSObject>();
    EXPECT_TRUE(one->isEqual(one));
    EXPECT_FALSE(one->isEqual(other));
    EXPECT_FALSE(one->isEqual(nullptr));
}

TEST(NSObject, MayBeLentAndRetainedInItsDestructor)
{
    class Lender : public NSObject {
    public:
        explicit Lender(int& destroyed, WeakPtr<NSObject>& weak)
            : _destroyed(destroyed)
            , _weak(weak)
        {
        }

    protected:
        ~Lender() override
        {
            ++_destroyed;
            const RetainPtr<NSObject> retained(this);
            _weak = WeakPtr<NSObject>(this);
            EXPECT_EQ(_weak.lock(), nullptr);
        }

    private:
        int& _destroyed;
        WeakPtr<NSObject>& _weak;
    };
    int destroyed = 0;
    WeakPtr<NSObject> weak;
    make<Lender>(destroyed, weak) = nullptr;
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(weak.lock(), nullptr);
}

TEST(NSObject, DescribesItselfByClassAndAddress)
{
    const auto object = make<NSObject>();
    EXPECT_EQ(object->description(), NSString::stringWithFormat("<NSObject: %p>", object));
    EXPECT_EQ(object->hash(), object->hash());
}

TEST(NSObject, ThreadsShareAnObjectThatGoesOnce)
{
    int destroyed = 0;
    {
        auto probe = make<Probe>(destroyed);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([shared = probe] {
                for (int k = 0; k < 10000; ++k) {
                    const RetainPtr<Probe> another = shared;
                    ASSERT_TRUE(another);
                }
            });
        }
        probe = nullptr;
        for (auto& thread : threads)
            thread.join();
    }
    EXPECT_EQ(destroyed, 1);
}
