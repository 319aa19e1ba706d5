#include <Foundation/Foundation.h>

#include <gtest/gtest.h>

namespace {

class Model : public NSObject {
public:
    NSString name;

    void setName(const NSString& value)
    {
        willChangeValueForKey("name");
        name = value;
        didChangeValueForKey("name");
    }
    RetainPtr<NSObject> valueForKey(const NSString& key) override
    {
        return key == "name" ? RetainPtr<NSObject>(box(name)) : NSObject::valueForKey(key);
    }
};

/// Writes down each change: the key, then what the change holds.
class Watcher : public NSObject {
public:
    std::vector<std::string> seen;
    void* context = nullptr;
    std::function<void()> onChange;

    void observeValueForKeyPath(NSString keyPath, NSObject*, NSDictionary* change, void* given) override
    {
        std::string line = keyPath.UTF8String();
        if (change->objectForKey(NSKeyValueChangeNotificationIsPriorKey))
            line += " prior";
        for (const char* key : {NSKeyValueChangeOldKey, NSKeyValueChangeNewKey}) {
            if (const NSObject* value = change->objectForKey(key))
                line += std::string(" ") + key + "=" + value->description().UTF8String();
        }
        seen.push_back(line);
        context = given;
        if (const auto action = onChange) // a copy: the action may replace itself
            action();
    }
};

using Lines = std::vector<std::string>;

} // namespace

TEST(NSKeyValueObserving, NotifiesOfChangesOfTheObservedKeyOnly)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    int context = 0;
    model->addObserver(watcher, "name", 0, &context);
    model->setName("a");
    model->willChangeValueForKey("other");
    model->didChangeValueForKey("other");
    EXPECT_EQ(watcher->seen, Lines{"name"});
    EXPECT_EQ(watcher->context, &context);
}

TEST(NSKeyValueObserving, PassesOldAndNewValues)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name", NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew);
    model->setName("a");
    model->setName("b");
    EXPECT_EQ(watcher->seen, (Lines{"name old=<null> new=a", "name old=a new=b"}));
}

TEST(NSKeyValueObserving, NotifiesAtOnceAndBeforehandWithThoseOptions)
{
    const auto model = make<Model>();
    model->setName("a");
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name",
        NSKeyValueObservingOptionInitial | NSKeyValueObservingOptionPrior | NSKeyValueObservingOptionNew
            | NSKeyValueObservingOptionOld);
    model->setName("b");
    EXPECT_EQ(watcher->seen, (Lines{"name new=a", "name prior old=a", "name old=a new=b"}));
}

TEST(NSKeyValueObserving, NotifiesObserversInTheOrderOfAdding)
{
    const auto model = make<Model>();
    const auto first = make<Watcher>();
    const auto second = make<Watcher>();
    Lines order;
    first->onChange = [&order] { order.push_back("first"); };
    second->onChange = [&order] { order.push_back("second"); };
    model->addObserver(first, "name");
    model->addObserver(second, "name");
    model->setName("a");
    EXPECT_EQ(order, (Lines{"first", "second"}));
}

TEST(NSKeyValueObserving, HoldsObserversWeakly)
{
    const auto model = make<Model>();
    auto watcher = make<Watcher>();
    const WeakPtr<Watcher> weak(watcher);
    model->addObserver(watcher, "name");
    watcher = nullptr;
    EXPECT_EQ(weak.lock(), nullptr);
    model->setName("a");
    EXPECT_EQ(model->name, NSString("a"));
}

TEST(NSKeyValueObserving, ObserverMayRemoveItselfAndOthersWhileNotified)
{
    const auto model = make<Model>();
    const auto first = make<Watcher>();
    const auto second = make<Watcher>();
    model->addObserver(first, "name");
    model->addObserver(second, "name");
    first->onChange = [&] {
        model->removeObserver(first, "name");
        model->removeObserver(second, "name");
    };
    model->setName("a");
    model->setName("b");
    EXPECT_EQ(first->seen.size(), 1U);
    EXPECT_TRUE(second->seen.empty());
}

TEST(NSKeyValueObserving, ObserverAddedDuringNotificationIsNotifiedOfTheNextChange)
{
    const auto model = make<Model>();
    const auto first = make<Watcher>();
    const auto late = make<Watcher>();
    model->addObserver(first, "name");
    first->onChange = [&] {
        first->onChange = nullptr;
        model->addObserver(late, "name");
    };
    model->setName("a");
    EXPECT_TRUE(late->seen.empty());
    model->setName("b");
    EXPECT_EQ(late->seen.size(), 1U);
}

TEST(NSKeyValueObserving, ChangeMadeDuringNotificationNotifiesToo)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name", NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew);
    watcher->onChange = [&] {
        watcher->onChange = nullptr;
        model->setName("b");
    };
    model->setName("a");
    EXPECT_EQ(watcher->seen, (Lines{"name old=<null> new=a", "name old=a new=b"}));
}

TEST(NSKeyValueObserving, NestedChangesKeepTheirOwnOldValues)
{
    const auto model = make<Model>();
    model->name = "a";
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name", NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew);
    model->willChangeValueForKey("name");
    model->setName("b");
    model->name = "c";
    model->didChangeValueForKey("name");
    EXPECT_EQ(watcher->seen, (Lines{"name old=a new=b", "name old=a new=c"}));
}

TEST(NSKeyValueObserving, AddedTwiceIsNotifiedTwiceAndRemovedOnceAtATime)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    int first = 0;
    int second = 0;
    model->addObserver(watcher, "name", 0, &first);
    model->addObserver(watcher, "name", 0, &second);
    model->setName("a");
    EXPECT_EQ(watcher->seen.size(), 2U);
    model->removeObserver(watcher, "name"); // the latest
    model->setName("b");
    EXPECT_EQ(watcher->seen.size(), 3U);
    EXPECT_EQ(watcher->context, &first);
}

TEST(NSKeyValueObserving, MistakesRaise)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    const auto nameOf = [](const std::function<void()>& mistake) {
        try {
            mistake();
        } catch (const NSException& exception) {
            return exception.name();
        }
        return NSString();
    };
    EXPECT_EQ(nameOf([&] { model->removeObserver(watcher, "name"); }), NSString(NSRangeException));
    EXPECT_EQ(nameOf([&] { model->addObserver(watcher, "a.b"); }), NSString(NSInvalidArgumentException));
    EXPECT_EQ(nameOf([&] { model->valueForKey("size"); }), NSString(NSUndefinedKeyException));

    const auto plain = make<NSObject>();
    model->addObserver(plain, "name");
    EXPECT_EQ(nameOf([&] { model->setName("a"); }), NSString(NSInternalInconsistencyException));
}

TEST(NSKeyValueObserving, IgnoresNullsAndEndsWithoutBeginnings)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    model->addObserver(nullptr, "name");
    model->addObserver(watcher, nullptr);
    model->addObserver(watcher, "name");
    model->didChangeValueForKey("name");
    EXPECT_TRUE(watcher->seen.empty());
}

TEST(NSKeyValueObserving, ObserverAddedBetweenBeginningAndEndIsNotifiedOfTheNextChange)
{
    const auto model = make<Model>();
    const auto first = make<Watcher>();
    const auto late = make<Watcher>();
    model->addObserver(first, "name");
    model->willChangeValueForKey("name");
    model->addObserver(late, "name", NSKeyValueObservingOptionOld);
    model->didChangeValueForKey("name");
    EXPECT_EQ(first->seen.size(), 1U);
    EXPECT_TRUE(late->seen.empty());
    model->setName("a");
    EXPECT_EQ(late->seen, Lines{"name old=<null>"});
}

TEST(NSKeyValueObserving, ObserverThatRemovesItselfBeforehandIsNotNotifiedAfterwards)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name", NSKeyValueObservingOptionPrior);
    watcher->onChange = [&] { model->removeObserver(watcher, "name"); };
    model->setName("a");
    EXPECT_EQ(watcher->seen, Lines{"name prior"});
}

TEST(NSKeyValueObserving, ObserverMayBeDestroyedWhileNotified)
{
    const auto model = make<Model>();
    auto watcher = make<Watcher>();
    const WeakPtr<Watcher> weak(watcher);
    model->addObserver(watcher, "name");
    watcher->onChange = [&watcher] { watcher = nullptr; };
    model->setName("a");
    EXPECT_EQ(weak.lock(), nullptr);
    model->setName("b");
    EXPECT_EQ(model->name, NSString("b"));
}

TEST(NSKeyValueObserving, ObservedObjectMayBeReleasedDuringNotification)
{
    auto model = make<Model>();
    const WeakPtr<Model> weak(model);
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name");
    Model* const borrowed = model.get();
    watcher->onChange = [&model] { model = nullptr; };
    borrowed->willChangeValueForKey("name");
    borrowed->didChangeValueForKey("name");
    EXPECT_EQ(watcher->seen.size(), 1U);
    EXPECT_EQ(weak.lock(), nullptr);
}

TEST(NSKeyValueObserving, ChangesOfTwoKeysMayOverlap)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name");
    model->addObserver(watcher, "size");
    model->willChangeValueForKey("name");
    model->willChangeValueForKey("size");
    model->didChangeValueForKey("name");
    model->didChangeValueForKey("size");
    EXPECT_EQ(watcher->seen, (Lines{"name", "size"}));
}

TEST(NSKeyValueObserving, ObserverOfTwoObjectsLearnsWhichOneChanged)
{
    class Naming : public NSObject {
    public:
        std::vector<NSObject*> changed;
        void observeValueForKeyPath(NSString, NSObject* object, NSDictionary* change, void*) override
        {
            changed.push_back(object);
            EXPECT_TRUE(change->objectForKey(NSKeyValueChangeKindKey)
                            ->isEqual(NSNumber::numberWithInteger(NSKeyValueChangeSetting).get()));
        }
    };
    const auto one = make<Model>();
    const auto other = make<Model>();
    const auto naming = make<Naming>();
    one->addObserver(naming, "name");
    other->addObserver(naming, "name");
    other->setName("a");
    one->setName("a");
    EXPECT_EQ(naming->changed, (std::vector<NSObject*>{other.get(), one.get()}));
}

TEST(NSKeyValueObserving, ObserverRemovesItselfInItsDestructor)
{
    class Leaving : public NSObject {
    public:
        explicit Leaving(NSObject* model)
            : _model(model)
        {
            _model->addObserver(this, "name");
        }
        void observeValueForKeyPath(NSString, NSObject*, NSDictionary*, void*) override { }

    protected:
        ~Leaving() override { _model->removeObserver(this, "name"); }

    private:
        RetainPtr<NSObject> _model;
    };
    const auto model = make<Model>();
    auto leaving = make<Leaving>(model);
    NSObject* const gone = leaving.get();
    leaving = nullptr;
    EXPECT_THROW(model->removeObserver(gone, "name"), NSException);
}

TEST(NSKeyValueObserving, ObjectMayChangeInItsDestructor)
{
    class Parting : public NSObject {
    protected:
        ~Parting() override
        {
            willChangeValueForKey("name");
            didChangeValueForKey("name");
        }
    };
    const auto watcher = make<Watcher>();
    auto parting = make<Parting>();
    parting->addObserver(watcher, "name", NSKeyValueObservingOptionPrior);
    parting = nullptr;
    EXPECT_EQ(watcher->seen, (Lines{"name prior", "name"}));
}

TEST(NSKeyValueObserving, ExceptionOfAnObserverStopsTheChangeAndLeavesNothingBegun)
{
    const auto model = make<Model>();
    const auto watcher = make<Watcher>();
    model->addObserver(watcher, "name", NSKeyValueObservingOptionPrior);
    watcher->onChange = [] { NSException::raise("org.example", "no"); };
    EXPECT_THROW(model->setName("a"), NSException);
    EXPECT_TRUE(model->name.isNull());
    watcher->onChange = nullptr;
    watcher->seen.clear();
    model->didChangeValueForKey("name");
    EXPECT_TRUE(watcher->seen.empty());
}

TEST(NSKeyValueObserving, DestroyedObserverRequestsNoValues)
{
    const auto plain = make<NSObject>(); // valueForKey raises
    auto watcher = make<Watcher>();
    plain->addObserver(watcher, "name", NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew);
    EXPECT_THROW(plain->willChangeValueForKey("name"), NSException);
    watcher = nullptr;
    plain->willChangeValueForKey("name");
    plain->didChangeValueForKey("name");
}
