#include <Foundation/Selector.h>

#include <gtest/gtest.h>

namespace {

/// Named like a class in SelectorTests.cpp, with a method of the same name, too.
class Receiver : public NSObject {
public:
    int resets = 0;
    void reset() { ++resets; }
};

} // namespace

TEST(SelectorNamesake, ChoosesTheClassOfItsOwnFile)
{
    const auto receiver = make<Receiver>();
    const SEL action = selector<&Receiver::reset>;
    EXPECT_TRUE(action(receiver, nullptr));
    EXPECT_EQ(receiver->resets, 1);
}
