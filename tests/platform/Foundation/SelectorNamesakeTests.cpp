#include <Foundation/Selector.h>

#include <gtest/gtest.h>

namespace {

/// Named like a class in SelectorTests.cpp, with a method of the same name, too.
class Namesake : public NSObject {
public:
    int resets = 0;
    void reset() { ++resets; }
};

} // namespace

TEST(SelectorNamesake, ChoosesTheClassOfItsOwnFile)
{
    const auto receiver = make<Namesake>();
    const SEL action = selector<&Namesake::reset>;
    EXPECT_TRUE(action(receiver, nullptr));
    EXPECT_EQ(receiver->resets, 1);
}
