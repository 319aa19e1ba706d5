#include <Foundation/Selector.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Sender : public NSObject { };

/// A protocol, as a receiver may conform to one.
class Stoppable {
public:
    virtual void stop() = 0;

protected:
    ~Stoppable() = default;
};

class Receiver : public NSObject, public Stoppable {
public:
    std::vector<std::string> calls;
    NSObject* argument = nullptr;

    void pressed(NSObject* sender)
    {
        calls.emplace_back("pressed");
        argument = sender;
    }
    void pressedBySender(Sender* sender)
    {
        calls.emplace_back("pressedBySender");
        argument = sender;
    }
    void reset() { calls.emplace_back("reset"); }
    void stop() override { calls.emplace_back("stop"); }
    virtual void redraw() { calls.emplace_back("redraw"); }
};

class DerivedReceiver : public Receiver {
public:
    void redraw() override { calls.emplace_back("redraw of the derived class"); }
};

using Calls = std::vector<std::string>;

} // namespace

TEST(Selector, CallsTheMethodWithTheArgument)
{
    const auto receiver = make<Receiver>();
    const auto sender = make<Sender>();
    const SEL action = selector<&Receiver::pressed>;
    EXPECT_TRUE(action(receiver, sender));
    EXPECT_EQ(receiver->calls, Calls{"pressed"});
    EXPECT_EQ(receiver->argument, sender);
}

TEST(Selector, AMethodWithoutParametersIsCalledWithoutTheArgument)
{
    const auto receiver = make<Receiver>();
    EXPECT_TRUE(selector<&Receiver::reset>(receiver, make<Sender>().get()));
    EXPECT_EQ(receiver->calls, Calls{"reset"});
}

TEST(Selector, AReceiverOfAnotherClassTakesNothing)
{
    EXPECT_FALSE(selector<&Receiver::reset>(make<Sender>().get(), nullptr));
    EXPECT_FALSE(selector<&Receiver::reset>(nullptr, nullptr));
}

TEST(Selector, AnArgumentOfAnotherClassIsNotPassed)
{
    const auto receiver = make<Receiver>();
    EXPECT_FALSE(selector<&Receiver::pressedBySender>(receiver, receiver));
    EXPECT_EQ(receiver->calls, Calls{});
    EXPECT_TRUE(selector<&Receiver::pressedBySender>(receiver, make<Sender>().get()));
    EXPECT_TRUE(selector<&Receiver::pressedBySender>(receiver, nullptr));
    EXPECT_EQ(receiver->calls, (Calls{"pressedBySender", "pressedBySender"}));
    EXPECT_EQ(receiver->argument, nullptr);
}

TEST(Selector, AVirtualMethodsOverrideIsCalled)
{
    const auto receiver = make<DerivedReceiver>();
    EXPECT_TRUE(selector<&Receiver::redraw>(receiver, nullptr));
    EXPECT_EQ(receiver->calls, Calls{"redraw of the derived class"});
}

TEST(Selector, AProtocolsMethodIsCalledOnWhatConformsToIt)
{
    const auto receiver = make<Receiver>();
    EXPECT_TRUE(selector<&Stoppable::stop>(receiver, nullptr));
    EXPECT_FALSE(selector<&Stoppable::stop>(make<Sender>().get(), nullptr));
    EXPECT_EQ(receiver->calls, Calls{"stop"});
}

TEST(Selector, SelectorsOfOneMethodAreEqual)
{
    const SEL action = selector<&Receiver::reset>;
    EXPECT_EQ(action, selector<&Receiver::reset>);
    EXPECT_NE(action, selector<&Receiver::pressed>);
    EXPECT_NE(action, nullptr);
}

// SelectorNamesakeTests.cpp has a class of the same name.
TEST(Selector, ChoosesTheClassOfItsOwnFile)
{
    const auto receiver = make<Receiver>();
    const SEL action = selector<&Receiver::reset>;
    EXPECT_TRUE(action(receiver, nullptr));
    EXPECT_EQ(receiver->calls, Calls{"reset"});
}
