#include <AppKit/NSButtonCell.h>

#include "DrawnPixels.h"
#include "support/Describe.h"

#include <AppKit/NSButton.h>
#include <AppKit/NSFont.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>

namespace {

/// Red, green, blue and alpha of a pixel, in a column from the left and a row from the top.
std::array<int, 4> pixelOf(const DrawnPixels& pixels, std::size_t width, std::size_t column, std::size_t row)
{
    const unsigned char* const bytes = &pixels.bytes()[4 * (row * width + column)];
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

/// A button of 40 x 20 points that is drawn in pixels.
class NSButtonDrawn : public testing::Test {
protected:
    RetainPtr<NSButton> button = make<NSButton>(NSMakeRect(0, 0, 40, 20));
    NSButtonCell& cell = dynamic_cast<NSButtonCell&>(*button->cell());

    DrawnPixels drawn(std::size_t scale = 1) const
    {
        DrawnPixels pixels(40 * scale, 20 * scale);
        CGContextScaleCTM(pixels.context(), static_cast<CGFloat>(scale), static_cast<CGFloat>(scale));
        button->displayRectIgnoringOpacity(button->bounds(), pixels.graphicsContext());
        return pixels;
    }
    /// In the middle of the bezel.
    std::array<int, 4> face() const { return pixelOf(drawn(), 40, 20, 10); }
    /// In the middle of the lower edge.
    std::array<int, 4> edge() const { return pixelOf(drawn(), 40, 20, 19); }
    bool redraws(const std::function<void()>& set) const
    {
        button->setNeedsDisplay(false);
        set();
        return button->needsDisplay();
    }
};

using Pixel = std::array<int, 4>;

} // namespace

TEST_F(NSButtonDrawn, TheBezelHasADarkEdgeOfAPointAndRoundCorners)
{
    for (const std::size_t scale : {1, 2}) {
        SCOPED_TRACE(scale);
        const DrawnPixels pixels = drawn(scale);
        const std::size_t width = 40 * scale;
        const auto at = [&](std::size_t column, std::size_t row) {
            return pixelOf(pixels, width, column, row);
        };
        const Pixel edge{0x16, 0x17, 0x18, 255};
        for (std::size_t i = 0; i < scale; ++i) {
            EXPECT_EQ(at(i, 10 * scale), edge);
            EXPECT_EQ(at(width - 1 - i, 10 * scale), edge);
            EXPECT_EQ(at(20 * scale, i), edge);
            EXPECT_EQ(at(20 * scale, 20 * scale - 1 - i), edge);
        }
        EXPECT_NE(at(scale, 10 * scale), edge);
        EXPECT_NE(at(20 * scale, 19 * scale - 1), edge);
        for (const std::size_t column : {std::size_t(0), width - 1}) {
            for (const std::size_t row : {std::size_t(0), 20 * scale - 1})
                EXPECT_EQ(at(column, row), Pixel{});
        }
    }
}

TEST_F(NSButtonDrawn, LightFallsFromAbove)
{
    const DrawnPixels pixels = drawn();
    const int rim = pixelOf(pixels, 40, 20, 1)[0];
    const int top = pixelOf(pixels, 40, 20, 4)[0];
    const int bottom = pixelOf(pixels, 40, 20, 17)[0];
    EXPECT_GT(rim, top + 10);
    EXPECT_GT(top, bottom + 5);
}

TEST_F(NSButtonDrawn, EachStateHasItsFace)
{
    const Pixel off = face();
    EXPECT_LE(std::abs(off[0] - off[2]), 8); // gray
    cell.setHighlighted(true);
    const Pixel pressed = face();
    EXPECT_LT(pressed[0], off[0] - 10);
    cell.setState(NSControlStateValueOn);
    const Pixel pressedOn = face();
    cell.setHighlighted(false);
    const Pixel on = face();
    EXPECT_LT(on[0], 10); // teal
    EXPECT_GT(on[1], 100);
    EXPECT_GT(on[2], 100);
    EXPECT_LT(pressedOn[1], on[1] - 10);
    cell.setEnabled(false);
    const Pixel disabled = face();
    EXPECT_NEAR(disabled[3], 102, 1); // 0.4 of 255
    cell.setHighlighted(true);        // shows nothing while disabled
    EXPECT_EQ(face(), disabled);
}

TEST_F(NSButtonDrawn, ReturnGivesATealEdge)
{
    EXPECT_EQ(edge(), (Pixel{0x16, 0x17, 0x18, 255}));
    button->setKeyEquivalent("\r");
    EXPECT_EQ(edge(), (Pixel{0, 0xAA, 0xAA, 255}));
    button->setKeyEquivalent("x");
    EXPECT_EQ(edge(), (Pixel{0x16, 0x17, 0x18, 255}));
}

TEST_F(NSButtonDrawn, ATitleIsCentredAndUpright)
{
    button->setBordered(false);
    button->setFont(NSFont::systemFontOfSize(14));
    button->setTitle("T");
    const DrawnPixels pixels = drawn(2);
    // The ink: a bar on top, and a stem in the middle below.
    std::size_t left = 80, right = 0, top = 40, bottom = 0;
    for (std::size_t row = 0; row < 40; ++row) {
        for (std::size_t column = 0; column < 80; ++column) {
            if (pixelOf(pixels, 80, column, row)[3] < 128)
                continue;
            left = std::min(left, column);
            right = std::max(right, column);
            top = std::min(top, row);
            bottom = std::max(bottom, row);
        }
    }
    ASSERT_LT(left, right);
    EXPECT_NEAR(double(left + right), 79, 2);
    EXPECT_NEAR(double(top + bottom), 39, 3);
    EXPECT_EQ(pixelOf(pixels, 80, left, bottom)[3], 0);
    EXPECT_EQ(pixelOf(pixels, 80, (left + right) / 2, bottom)[3], 255);
}

TEST_F(NSButtonDrawn, ALongTitleStartsAtTheLeftAndIsClipped)
{
    button->setBordered(false);
    button->setTitle("MMMMMMMMMMMMMMMMMMMM");
    DrawnPixels pixels(60, 20);
    button->displayRectIgnoringOpacity(button->bounds(), pixels.graphicsContext());
    EXPECT_GT(pixelOf(pixels, 60, 2, 10)[3], 0); // the first stem
    for (std::size_t column = 40; column < 60; ++column)
        EXPECT_EQ(pixelOf(pixels, 60, column, 10)[3], 0);
}

TEST_F(NSButtonDrawn, ALongTitleLeavesTheEndsOfTheBezelFree)
{
    const DrawnPixels empty = drawn();
    button->setTitle("MMMMMMMMMMMMMMMMMMMM");
    const DrawnPixels pixels = drawn();
    for (const std::size_t column : {2, 3, 36, 37})
        EXPECT_EQ(pixelOf(pixels, 40, column, 10), pixelOf(empty, 40, column, 10));
    EXPECT_NE(pixelOf(pixels, 40, 6, 10), pixelOf(empty, 40, 6, 10));
}

TEST_F(NSButtonDrawn, AFrameTooSmallShowsNothing)
{
    button->setFrameSize(NSMakeSize(40, 1));
    EXPECT_EQ(face(), Pixel{});
    const DrawnPixels pixels = drawn();
    for (const unsigned char byte : pixels.bytes())
        ASSERT_EQ(byte, 0);
}

TEST_F(NSButtonDrawn, EdgesBetweenPixelsMoveToTheNearest)
{
    // In a view the cell is drawn at the frame that it is given.
    class Canvas : public NSView {
    public:
        using NSView::NSView;
        RetainPtr<NSButtonCell> cell = make<NSButtonCell>();
        void drawRect(NSRect) override { cell->drawWithFrame(NSMakeRect(0.4, 0.6, 39, 18.8), this); }
    };
    const auto canvas = make<Canvas>(NSMakeRect(0, 0, 40, 20));
    DrawnPixels pixels(40, 20);
    canvas->displayRectIgnoringOpacity(canvas->bounds(), pixels.graphicsContext());
    const Pixel edge{0x16, 0x17, 0x18, 255};
    EXPECT_EQ(pixelOf(pixels, 40, 0, 10), edge);
    EXPECT_EQ(pixelOf(pixels, 40, 38, 10), edge);
    EXPECT_EQ(pixelOf(pixels, 40, 39, 10), Pixel{});
    EXPECT_EQ(pixelOf(pixels, 40, 20, 18), edge); // y from 1, the rows from the top
    EXPECT_EQ(pixelOf(pixels, 40, 20, 19), Pixel{});
    EXPECT_EQ(pixelOf(pixels, 40, 20, 1), edge); // 19.4 is rounded down
    EXPECT_EQ(pixelOf(pixels, 40, 20, 0), Pixel{});
}

TEST_F(NSButtonDrawn, WithoutAContextNothingIsDrawn)
{
    cell.setTitle("Apply");
    cell.drawWithFrame(NSMakeRect(0, 0, 40, 20), nullptr);
    EXPECT_FALSE(cell.isHighlighted());
}

TEST_F(NSButtonDrawn, AChangeRedrawsOnce)
{
    struct Case {
        const char* name;
        std::function<void()> set;
    };
    const Case cases[] = {
        {"title", [&] { cell.setTitle("a"); }},
        {"alternate title", [&] { cell.setAlternateTitle("b"); }},
        {"type", [&] { cell.setButtonType(NSButtonTypeToggle); }},
        {"bordered", [&] { cell.setBordered(false); }},
        {"key", [&] { cell.setKeyEquivalent("c"); }},
        {"state", [&] { cell.setState(NSControlStateValueOn); }},
        {"value", [&] { cell.setIntValue(0); }},
        {"no title", [&] { cell.setTitle(nullptr); }},
        {"no alternate title", [&] { cell.setAlternateTitle(nullptr); }},
        {"no key", [&] { cell.setKeyEquivalent(nullptr); }},
        {"unknown type", [&] { cell.setButtonType(static_cast<NSButtonType>(99)); }},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_TRUE(redraws(c.set));
        EXPECT_FALSE(redraws(c.set));
    }
    EXPECT_EQ(cell.title(), "");
    EXPECT_EQ(cell.buttonType(), NSButtonTypeMomentaryPushIn);
}

TEST(NSButtonCell, ItsValueIsItsState)
{
    const auto cell = make<NSButtonCell>("a");
    EXPECT_EQ(cell->title(), "a");
    EXPECT_EQ(cell->integerValue(), 0);
    cell->setState(5);
    EXPECT_EQ(cell->integerValue(), 1);
    EXPECT_EQ(cell->stringValue(), "1");
    cell->setObjectValue(nullptr);
    EXPECT_EQ(cell->state(), NSControlStateValueOff);
    cell->setStringValue("2");
    EXPECT_EQ(cell->state(), NSControlStateValueOn);
    EXPECT_EQ(cell->integerValue(), 1);
}

TEST(NSButtonCell, AToggleShowsItsAlternateTitleWhileOn)
{
    const auto cell = make<NSButtonCell>("Mute");
    cell->setAlternateTitle("Unmute");
    cell->setState(NSControlStateValueOn);
    EXPECT_EQ(cell->shownTitle(), "Mute"); // no toggle
    cell->setButtonType(NSButtonTypeToggle);
    EXPECT_EQ(cell->shownTitle(), "Unmute");
    cell->setState(NSControlStateValueOff);
    EXPECT_EQ(cell->shownTitle(), "Mute");
    cell->setState(NSControlStateValueOn);
    cell->setAlternateTitle("");
    EXPECT_EQ(cell->shownTitle(), "Mute");
}

TEST(NSButtonCell, ItsSizeHoldsTheWiderTitle)
{
    const auto cell = make<NSButtonCell>("Apply");
    const NSSize size = cell->cellSize();
    EXPECT_EQ(size.height, std::ceil(CTFontGetAscent(cell->font()) + CTFontGetDescent(cell->font())) + 9);
    cell->setBordered(false);
    EXPECT_EQ(describe(cell->cellSize()), describe(NSMakeSize(size.width - 24, size.height - 5)));
    cell->setBordered(true);
    cell->setAlternateTitle("Apply Apply");
    EXPECT_EQ(cell->cellSize().width, size.width); // never shown
    cell->setButtonType(NSButtonTypeToggle);
    EXPECT_GT(cell->cellSize().width, size.width + 20);
    EXPECT_EQ(cell->cellSize().height, size.height);
    cell->setTitle("");
    cell->setAlternateTitle("");
    EXPECT_EQ(cell->cellSize().width, 28);
}
