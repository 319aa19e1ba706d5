#include <AppKit/NSGraphics.h>

#include "DrawnPixels.h"
#include "Foundation/testing/NSLogCapture.h"

#include <AppKit/NSColor.h>
#include <gtest/gtest.h>

namespace {

/// Two pixels that are drawn on as the current context: the left one red, the right one transparent.
class NSRectFills : public testing::Test {
protected:
    DrawnPixels pixels{2, 1};

    NSRectFills()
    {
        NSGraphicsContext::setCurrentContext(pixels.graphicsContext());
        NSColor::redColor()->set();
        NSRectFill(NSMakeRect(0, 0, 1, 1));
        NSColor::blueColor()->set();
    }
    ~NSRectFills() override { NSGraphicsContext::setCurrentContext(nullptr); }

    static constexpr NSRect kAll{{0, 0}, {2, 1}};
};

} // namespace

TEST_F(NSRectFills, FillWithTheCurrentColour)
{
    EXPECT_EQ(pixels.text(), "r.");
    NSRectFill(NSMakeRect(1, 0, 1, 1));
    EXPECT_EQ(pixels.text(), "rb");
}

TEST_F(NSRectFills, ReplaceWhatIsThereEvenByNothing)
{
    NSColor::clearColor()->set();
    NSRectFill(kAll);
    EXPECT_EQ(pixels.text(), "..");
}

TEST_F(NSRectFills, CompositeInEachOperation)
{
    struct Case {
        NSCompositingOperation operation;
        const char* name;
        const char* expected;
    };
    const Case cases[] = {
        {NSCompositingOperationClear, "clear", ".."},
        {NSCompositingOperationCopy, "copy", "bb"},
        {NSCompositingOperationSourceOver, "source over", "bb"},
        {NSCompositingOperationSourceIn, "source in", "b."},
        {NSCompositingOperationSourceOut, "source out", ".b"},
        {NSCompositingOperationSourceAtop, "source atop", "b."},
        {NSCompositingOperationDestinationOver, "destination over", "rb"},
        {NSCompositingOperationDestinationOut, "destination out", ".."},
        {NSCompositingOperationXOR, "xor", ".b"},
        {NSCompositingOperationPlusLighter, "plus lighter", "mb"},
        {NSCompositingOperationMultiply, "multiply", "kb"},
        {NSCompositingOperationScreen, "screen", "mb"},
        {NSCompositingOperationOverlay, "overlay", "rb"},
        {NSCompositingOperationDarken, "darken", "kb"},
        {NSCompositingOperationLighten, "lighten", "mb"},
        {NSCompositingOperationColorDodge, "colour dodge", "rb"},
        {NSCompositingOperationColorBurn, "colour burn", "rb"},
        {NSCompositingOperationHardLight, "hard light", "bb"},
        {NSCompositingOperationDifference, "difference", "mb"},
        {NSCompositingOperationExclusion, "exclusion", "mb"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        NSColor::clearColor()->set();
        NSRectFill(kAll);
        NSColor::redColor()->set();
        NSRectFill(NSMakeRect(0, 0, 1, 1));
        NSColor::blueColor()->set();
        NSRectFillUsingOperation(kAll, c.operation);
        EXPECT_EQ(pixels.text(), c.expected);
    }
}

TEST_F(NSRectFills, TheOperationLastsForOneFill)
{
    NSRectFillUsingOperation(kAll, NSCompositingOperationDestinationOver);
    EXPECT_EQ(pixels.text(), "rb");
    CGContextFillRect(pixels.context(), kAll);
    EXPECT_EQ(pixels.text(), "bb");
}

TEST_F(NSRectFills, AnUnknownOperationIsLoggedAndFillsNothing)
{
    const NSLogCapture log;
    NSRectFillUsingOperation(kAll, static_cast<NSCompositingOperation>(7));
    NSRectFillUsingOperation(kAll, static_cast<NSCompositingOperation>(29));
    EXPECT_EQ(pixels.text(), "r.");
    EXPECT_EQ(log.messages(),
        (std::vector<std::string>{
            "Compositing operation 7 is not supported.", "Compositing operation 29 is not supported."}));
}

TEST_F(NSRectFills, WithoutAContextNothingHappens)
{
    NSGraphicsContext::setCurrentContext(nullptr);
    const NSLogCapture log;
    NSRectFill(kAll);
    NSRectFillUsingOperation(kAll, static_cast<NSCompositingOperation>(7));
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(pixels.text(), "r.");
}

TEST(NSCompositingOperation, HasAppKitsNumbers)
{
    EXPECT_EQ(NSCompositingOperationSourceAtop, 5);
    EXPECT_EQ(NSCompositingOperationXOR, 10);
    EXPECT_EQ(NSCompositingOperationPlusLighter, 13);
    EXPECT_EQ(NSCompositingOperationMultiply, 14);
    EXPECT_EQ(NSCompositingOperationSoftLight, 21);
    EXPECT_EQ(NSCompositingOperationHue, 25);
    EXPECT_EQ(NSCompositingOperationLuminosity, 28);
}
