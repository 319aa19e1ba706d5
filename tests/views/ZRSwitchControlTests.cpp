#include "Foundation/testing/ManualClock.h"
#include "SwitchProbe.h"
#include "support/Rendering.h"

#include <Foundation/NSData.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/WeakPtr.h>

#include <vector>

namespace {

constexpr double kFrameTime = 1.0 / 60;
/// The clock counts nanoseconds, of which the knob makes five billionths of its way.
constexpr double kRounding = 1e-7;

/// The position on a knob's way that is `steps` twelfths long, since it takes 0.2 seconds or 12 frames.
double eased(double steps)
{
    const double t = steps / 12;
    return t * t * (3 - 2 * t);
}

/// A switch with a clock that stands in the middle between two frames.
struct SwitchStage {
    ManualClock clock;
    RetainPtr<SwitchProbe> control = makeSwitch();

    /// Lets animations begin, and goes to the middle between two of their steps.
    void setOn(bool on)
    {
        control->setOn(on);
        clock.advance(kFrameTime / 2);
    }
    /// Lets one step happen and returns the position.
    double step()
    {
        clock.advance(kFrameTime);
        return control->switchPosition();
    }
    void expectSteps(const std::vector<double>& positions)
    {
        for (std::size_t i = 0; i < positions.size(); ++i) {
            EXPECT_TRUE(control->isAnimating()) << "before step " << i;
            EXPECT_NEAR(step(), positions[i], kRounding) << "step " << i;
        }
    }
    /// Expects the end of the animation with the next step. Where the sum of the steps falls short of the end
    /// by a rounding error, one more step is due.
    void expectEnd(double position)
    {
        EXPECT_TRUE(control->isAnimating());
        EXPECT_NEAR(step(), position, kRounding);
        if (control->isAnimating())
            step();
        expectRest(position);
    }
    void expectRest(double position)
    {
        EXPECT_EQ(control->switchPosition(), position);
        EXPECT_FALSE(control->isAnimating());
        control->setNeedsDisplay(false);
        clock.advance(1);
        EXPECT_EQ(control->switchPosition(), position);
        EXPECT_FALSE(takeDisplayMark(control));
    }
};

} // namespace

TEST(Switch, IsNewOffAndAtRest)
{
    const auto control = makeSwitch();
    EXPECT_FALSE(control->isOn());
    EXPECT_FALSE(control->isBlue());
    EXPECT_FALSE(control->isAnimating());
    EXPECT_EQ(control->switchPosition(), 0);
    EXPECT_FALSE(control->smoothStepSwitchPosition());
    EXPECT_EQ(control->viewHeightFontSizeCoefficient(), 0);
    EXPECT_EQ(control->viewHeightFontSizeMinimum(), 0);
    EXPECT_TRUE(control->isEnabled());
    EXPECT_FALSE(control->isFlipped());
    EXPECT_EQ(make<ZRSwitchControl>()->horizontalTravel(), 0);
}

TEST(Switch, DecodesAsAControlThatIsOff)
{
    const auto control = make<ZRSwitchControl>(NSMakeRect(1, 2, 60, 24));
    control->setOn(true, false);
    control->setTag(7);
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(control, true, nullptr);
    const auto decoded = NSKeyedUnarchiver::unarchivedObjectOfClass<ZRSwitchControl>(data, nullptr);
    ASSERT_TRUE(decoded);
    EXPECT_TRUE(NSEqualRects(decoded->frame(), NSMakeRect(1, 2, 60, 24)));
    EXPECT_EQ(decoded->tag(), 7);
    EXPECT_FALSE(decoded->isOn());
}

TEST(Switch, IsBlueWhenOnAndEnabled)
{
    const auto control = makeSwitch();
    control->setOn(true, false);
    EXPECT_TRUE(control->isBlue());
    control->setEnabled(false);
    EXPECT_FALSE(control->isBlue());
    control->setOn(false, false);
    control->setEnabled(true);
    EXPECT_FALSE(control->isBlue());
}

TEST(Switch, TheKnobTravelsOver2FifthsOfTheBounds)
{
    const auto control = makeSwitch();
    EXPECT_EQ(control->horizontalTravel(), 40);
    control->setBoundsSize(NSMakeSize(50, 40));
    EXPECT_EQ(control->horizontalTravel(), 20);
}

TEST(Switch, ANewPositionRedrawsAndAnEqualOneDoesNot)
{
    const auto control = makeSwitch();
    control->setSwitchPosition(0);
    EXPECT_FALSE(takeDisplayMark(control));
    control->setSwitchPosition(1.7); // not clamped
    EXPECT_TRUE(takeDisplayMark(control));
    EXPECT_EQ(control->switchPosition(), 1.7);
    control->setSwitchPosition(1.7);
    EXPECT_FALSE(takeDisplayMark(control));
    control->setSwitchPosition(-3);
    EXPECT_EQ(control->switchPosition(), -3);
}

TEST(Switch, StoresWhatConcernsTheNextDrawing)
{
    const auto control = makeSwitch();
    control->setViewHeightFontSizeCoefficient(0.5);
    control->setViewHeightFontSizeMinimum(12);
    control->setSmoothStepSwitchPosition(true);
    EXPECT_EQ(control->viewHeightFontSizeCoefficient(), 0.5);
    EXPECT_EQ(control->viewHeightFontSizeMinimum(), 12);
    EXPECT_TRUE(control->smoothStepSwitchPosition());
    EXPECT_FALSE(takeDisplayMark(control));
}

TEST(Switch, WithoutAnimationTheKnobIsThereAtOnce)
{
    const SwitchStage stage;
    stage.control->setOn(true, false);
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.control->switchPosition(), 1);
    EXPECT_FALSE(stage.control->isAnimating());
    EXPECT_TRUE(takeDisplayMark(stage.control));
    stage.control->setOn(true, false);
    EXPECT_TRUE(takeDisplayMark(stage.control)) << "the same state redraws too";
    stage.control->setOn(false, false);
    EXPECT_FALSE(stage.control->isOn());
    EXPECT_EQ(stage.control->switchPosition(), 0);
}

TEST(SwitchAnimation, EasesToOnWithin12FramesAfterTheFirst)
{
    SwitchStage stage;
    stage.setOn(true);
    EXPECT_TRUE(stage.control->isOn());
    EXPECT_EQ(stage.control->switchPosition(), 0);
    EXPECT_TRUE(takeDisplayMark(stage.control));
    EXPECT_EQ(stage.control->timer()->timeInterval(), 0.016666666666666666);
    EXPECT_EQ(stage.control->timer()->userInfo(), nullptr);
    // The first step only records the time.
    stage.expectSteps({0, eased(1), eased(2), eased(3), eased(4), eased(5), eased(6), eased(7), eased(8),
        eased(9), eased(10), eased(11)});
    EXPECT_TRUE(takeDisplayMark(stage.control));
    stage.expectEnd(1);
}

TEST(SwitchAnimation, EasesToOffWithin12FramesAfterTheFirst)
{
    SwitchStage stage;
    stage.control->setOn(true, false);
    stage.setOn(false);
    EXPECT_EQ(stage.control->switchPosition(), 1);
    stage.expectSteps({1, eased(11), eased(10), eased(9), eased(8), eased(7), eased(6), eased(5), eased(4),
        eased(3), eased(2), eased(1)});
    stage.expectEnd(0);
}

TEST(SwitchAnimation, TurnsAroundInMidFlightFromWhereTheKnobIs)
{
    SwitchStage stage;
    stage.setOn(true);
    stage.expectSteps({0, eased(1), eased(2), eased(3)});
    const RetainPtr<NSTimer> timer = stage.control->timer();
    stage.control->setOn(false);
    EXPECT_EQ(stage.control->timer(), timer) << "the same timer goes on";
    // The eased 0.15625, 1.875 steps, is where the way back begins. There is no step without motion.
    stage.expectSteps({eased(0.875)});
    stage.expectEnd(0);
}

TEST(SwitchAnimation, OfAReachedStateEndsWithTheFirstStep)
{
    SwitchStage stage;
    stage.setOn(false);
    EXPECT_TRUE(stage.control->isAnimating());
    stage.step();
    stage.expectRest(0);
    stage.control->setOn(true, false);
    stage.setOn(true);
    stage.step();
    stage.expectRest(1);
}

TEST(SwitchAnimation, MovesBy10FramesAtMostAfterAStall)
{
    SwitchStage stage;
    stage.setOn(true);
    stage.expectSteps({0, eased(1)});
    stage.clock.setBy(3600);
    stage.expectSteps({eased(11)});
    stage.expectEnd(1);

    stage.setOn(false);
    stage.expectSteps({1});
    stage.clock.setBy(9 * kFrameTime); // 10 with the frame itself
    stage.expectSteps({eased(2), eased(1)});
    stage.clock.setBy(-kFrameTime); // time that does not pass moves nothing
    stage.expectSteps({eased(1)});
}

TEST(SwitchAnimation, AStallBeforeTheFirstStepIsNotMadeUpFor)
{
    SwitchStage stage;
    stage.setOn(true);
    stage.clock.setBy(3600);
    stage.expectSteps({0, eased(1)});
}

TEST(SwitchAnimation, ASecondOneStartsWithAStepWithoutMotionAgain)
{
    SwitchStage stage;
    stage.setOn(true);
    stage.clock.advance(1);
    stage.expectRest(1);
    stage.clock.advance(10);
    stage.setOn(false);
    stage.expectSteps({1, eased(11)});
}

TEST(SwitchAnimation, IsNotStoppedByAStateWithoutAnimation)
{
    SwitchStage stage;
    stage.setOn(true);
    stage.expectSteps({0, eased(1), eased(2), eased(3)});
    stage.control->setOn(false, false);
    EXPECT_EQ(stage.control->switchPosition(), 0);
    EXPECT_TRUE(stage.control->isAnimating());
    // The next steps go on from the progress that the animation had made, towards the new state.
    stage.expectSteps({eased(2), eased(1)});
    stage.expectEnd(0);
}

TEST(SwitchAnimation, StartsFromAnyPosition)
{
    SwitchStage stage;
    stage.control->setSwitchPosition(0.25); // 3 steps
    stage.setOn(true);
    EXPECT_EQ(stage.control->switchPosition(), 0.25);
    stage.expectSteps({eased(3), eased(4)});
}

TEST(SwitchAnimation, RetainsTheSwitchUntilItEnds)
{
    SwitchStage stage;
    stage.setOn(true);
    const WeakPtr<SwitchProbe> weak(stage.control);
    stage.control = nullptr;
    EXPECT_TRUE(weak.lock());
    stage.clock.advance(0.15);
    EXPECT_TRUE(weak.lock());
    stage.clock.advance(0.15);
    EXPECT_FALSE(weak.lock());
}
