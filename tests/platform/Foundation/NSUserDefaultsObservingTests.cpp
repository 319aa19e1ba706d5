// Key-value observation of the values of user defaults.

#include "NSUserDefaultsTest.h"

#include "Foundation/testing/NSLogCapture.h"

#include <thread>

namespace {

/// Records each notification: the key, "prior" where it comes before the change, and the values.
class Recorder : public NSObject {
public:
    std::vector<std::string> lines;
    std::vector<NSObject*> objects;

    void observeValueForKeyPath(NSString keyPath, NSObject* object, NSDictionary* change, void*) override
    {
        std::string line = keyPath.UTF8String();
        if (change->objectForKey(NSKeyValueChangeNotificationIsPriorKey))
            line += " prior";
        for (const char* key : {NSKeyValueChangeOldKey, NSKeyValueChangeNewKey}) {
            if (const NSObject* value = change->objectForKey(key))
                line += std::string(" ") + key + "=" + value->description().UTF8String();
        }
        lines.push_back(line);
        objects.push_back(object);
    }
};

/// Observes keys of the standard defaults while it is in scope.
class Observation {
public:
    Observation(std::vector<const char*> keys, NSUInteger options)
        : _keys(std::move(keys))
    {
        for (const char* key : _keys)
            defaults().addObserver(_recorder.get(), key, options);
    }
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;
    ~Observation()
    {
        for (const char* key : _keys)
            defaults().removeObserver(_recorder.get(), key);
    }
    const std::vector<std::string>& lines() const { return _recorder->lines; }
    const std::vector<NSObject*>& objects() const { return _recorder->objects; }

private:
    std::vector<const char*> _keys;
    const RetainPtr<Recorder> _recorder = make<Recorder>();
};

using Lines = std::vector<std::string>;
constexpr NSUInteger kOldAndNew = NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew;

} // namespace

TEST_F(NSUserDefaultsTest, EverySetterNotifiesObserversOfItsKey)
{
    const Observation observation({"key"}, kOldAndNew);
    defaults().setDouble(0.5, "key");
    defaults().setInteger(3, "key");
    defaults().setBool(true, "key");
    defaults().setObject("text", "key");
    defaults().setObject(NSNumber::numberWithInteger(7).get(), "key");
    defaults().setObject("other", "another key");
    defaults().removeObjectForKey("key");
    EXPECT_EQ(observation.lines(),
        (Lines{"key old=<null> new=0.5", "key old=0.5 new=3", "key old=3 new=1", "key old=1 new=text",
            "key old=text new=7", "key old=7 new=<null>"}));
    EXPECT_EQ(observation.objects(), std::vector<NSObject*>(6, &defaults()));
}

TEST_F(NSUserDefaultsTest, NotifiesBeforeAChangeWithTheOptionPrior)
{
    defaults().setInteger(1, "key");
    const Observation observation({"key"}, kOldAndNew | NSKeyValueObservingOptionPrior);
    defaults().setInteger(2, "key");
    EXPECT_EQ(observation.lines(), (Lines{"key prior old=1", "key old=1 new=2"}));
}

TEST_F(NSUserDefaultsTest, RegisteringAValueNotifiesAndRemovingShowsIt)
{
    const Observation observation({"key"}, kOldAndNew);
    defaults().registerDefaults(
        make<NSDictionary>(NSDictionary::Map{{"key", box("registered")}, {"unobserved", box("x")}}).get());
    defaults().setObject("stored", "key");
    defaults().removeObjectForKey("key");
    EXPECT_EQ(observation.lines(),
        (Lines{"key old=<null> new=registered", "key old=registered new=stored",
            "key old=stored new=registered"}));
}

TEST_F(NSUserDefaultsTest, SettingAnEqualValueNotifiesToo)
{
    defaults().setInteger(1, "key");
    const Observation observation({"key"}, kOldAndNew);
    defaults().setInteger(1, "key");
    EXPECT_EQ(observation.lines(), Lines{"key old=1 new=1"});
}

TEST_F(NSUserDefaultsTest, WhatIsNotStoredNotifiesNobody)
{
    const Observation observation({"key"}, NSKeyValueObservingOptionPrior);
    const NSLogCapture log;
    defaults().setObject(NSNull::null(), "key");
    defaults().registerDefaults(make<NSDictionary>(NSDictionary::Map{{"key", NSNull::null()}}).get());
    defaults().setInteger(1, nullptr);
    EXPECT_EQ(observation.lines(), Lines());
}

TEST_F(NSUserDefaultsTest, ObserverMaySetTheValueThatItObserves)
{
    class Limiter : public NSObject {
    public:
        void observeValueForKeyPath(NSString key, NSObject*, NSDictionary*, void*) override
        {
            if (defaults().integerForKey(key) > 10)
                defaults().setInteger(10, key);
        }
    };
    const auto limiter = make<Limiter>();
    defaults().addObserver(limiter.get(), "key");
    defaults().setInteger(11, "key");
    EXPECT_EQ(defaults().integerForKey("key"), 10);
    defaults().removeObserver(limiter.get(), "key");
}

TEST_F(NSUserDefaultsTest, ThreadsThatSetValuesNotifyEachObserverOnce)
{
    /// Counts its notifications; those of one observer come on several threads here.
    class Counter : public NSObject {
    public:
        std::atomic<int> count = 0;
        void observeValueForKeyPath(NSString, NSObject*, NSDictionary*, void*) override { ++count; }
    };
    constexpr int kThreads = 4;
    constexpr int kChanges = 20;
    const auto counter = make<Counter>();
    defaults().addObserver(counter.get(), "key", kOldAndNew);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([] {
            const auto other = make<Counter>();
            for (int i = 0; i < kChanges; ++i) {
                defaults().addObserver(other.get(), "other key");
                defaults().setInteger(i, "key");
                defaults().removeObserver(other.get(), "other key");
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(counter->count, kThreads * kChanges);
    defaults().removeObserver(counter.get(), "key");
}
