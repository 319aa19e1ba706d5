#include <AppKit/NSCell.h>

#include "DrawnPixels.h"
#include "support/Describe.h"

#include <AppKit/NSControl.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <Foundation/NSNull.h>
#include <Foundation/NSNumber.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

/// A cell that fills the middle of its frame, in green while highlighted, else in red.
class PatchCell : public NSActionCell {
public:
    NSView* drawnIn = nullptr;
    NSSize size{30, 20};

    void drawInteriorWithFrame(NSRect frame, NSView* view) override
    {
        drawnIn = view;
        CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
        CGContextSetRGBFillColor(context, isHighlighted() ? 0 : 1, isHighlighted() ? 1 : 0, 0, 1);
        CGContextFillRect(context, NSInsetRect(frame, 1, 0));
    }
    NSSize cellSize() const override { return size; }
};

/// A superview that counts how often it lays out.
class Container : public NSView {
public:
    using NSView::NSView;
    int layouts = 0;
    void subviewIntrinsicContentSizeDidChange(NSView*) override { ++layouts; }
};

class CellController : public NSObject {
public:
    int presses = 0;
    void pressed() { ++presses; }
};

/// A control of 4 x 1 points with a cell, in a container.
class NSControlWithCell : public testing::Test {
protected:
    RetainPtr<Container> container = make<Container>(NSMakeRect(0, 0, 50, 50));
    RetainPtr<NSControl> control = make<NSControl>(NSMakeRect(0, 0, 4, 1));
    RetainPtr<PatchCell> cell = make<PatchCell>();

    NSControlWithCell()
    {
        container->addSubview(control);
        control->setCell(cell);
        container->layouts = 0;
    }
    bool redraws(const std::function<void()>& set) const
    {
        control->setNeedsDisplay(false);
        set();
        return control->needsDisplay();
    }
    std::string drawn() const
    {
        DrawnPixels pixels(4, 1);
        control->displayRectIgnoringOpacity(control->bounds(), pixels.graphicsContext());
        return pixels.text();
    }
};

} // namespace

// A cell by itself.

TEST(NSCell, IsEnabledOffAndWithoutAValueAtFirst)
{
    const auto cell = make<NSCell>();
    EXPECT_TRUE(cell->isEnabled());
    EXPECT_FALSE(cell->isHighlighted());
    EXPECT_EQ(cell->state(), NSControlStateValueOff);
    EXPECT_EQ(cell->controlView(), nullptr);
    EXPECT_EQ(cell->objectValue(), nullptr);
    EXPECT_EQ(cell->stringValue(), "");
    EXPECT_EQ(cell->intValue(), 0);
    EXPECT_EQ(cell->font(), nullptr);
    EXPECT_EQ(cell->alignment(), NSTextAlignmentNatural);
    EXPECT_EQ(cell->cellSize().width, NSViewNoIntrinsicMetric);
    EXPECT_EQ(cell->cellSize().height, NSViewNoIntrinsicMetric);
}

TEST(NSCell, HasNoTargetActionOrTag)
{
    const auto cell = make<NSCell>();
    const auto controller = make<CellController>();
    cell->setTarget(controller);
    cell->setAction(selector<&CellController::pressed>);
    cell->setTag(5);
    EXPECT_EQ(cell->target(), nullptr);
    EXPECT_EQ(cell->action(), nullptr);
    EXPECT_EQ(cell->tag(), 0);
}

TEST(NSActionCell, HasTargetActionAndTagAndHoldsTheTargetWeakly)
{
    const auto cell = make<NSActionCell>();
    EXPECT_EQ(cell->target(), nullptr);
    EXPECT_EQ(cell->action(), nullptr);
    EXPECT_EQ(cell->tag(), 0);
    auto controller = make<CellController>();
    cell->setTarget(controller);
    cell->setAction(selector<&CellController::pressed>);
    cell->setTag(-3);
    EXPECT_EQ(cell->target(), controller);
    EXPECT_EQ(cell->action(), selector<&CellController::pressed>);
    EXPECT_EQ(cell->tag(), -3);
    controller = nullptr;
    EXPECT_EQ(cell->target(), nullptr);
}

TEST(NSCell, EveryStateButOffCountsAsOn)
{
    const auto cell = make<NSCell>();
    for (const NSControlStateValue state : {1, 7, -1}) {
        SCOPED_TRACE(state);
        cell->setState(state);
        EXPECT_EQ(cell->state(), NSControlStateValueOn);
        EXPECT_EQ(cell->nextState(), NSControlStateValueOff);
        cell->setNextState();
        EXPECT_EQ(cell->state(), NSControlStateValueOff);
        EXPECT_EQ(cell->nextState(), NSControlStateValueOn);
    }
}

TEST(NSCell, AValueIsReadAsAnyType)
{
    const auto cell = make<NSCell>();
    cell->setDoubleValue(-2.75);
    EXPECT_EQ(cell->doubleValue(), -2.75);
    EXPECT_EQ(cell->intValue(), -2);
    EXPECT_EQ(cell->integerValue(), -2);
    EXPECT_EQ(cell->stringValue(), "-2.75");
    cell->setStringValue(" 12.5 points");
    EXPECT_EQ(cell->doubleValue(), 12.5);
    EXPECT_EQ(cell->integerValue(), 12);
    cell->setIntegerValue(3000000000);
    EXPECT_EQ(cell->intValue(), 2147483647);
    cell->setIntValue(4);
    EXPECT_EQ(cell->stringValue(), "4");
    cell->setObjectValue(NSNull::null());
    EXPECT_EQ(cell->stringValue(), NSNull::null()->description());
    cell->setStringValue(nullptr);
    EXPECT_EQ(cell->objectValue(), nullptr);
}

TEST(NSCell, AnAttributedStringIsReadAsItselfAndAsItsString)
{
    const auto cell = make<NSCell>();
    const auto string = make<NSMutableAttributedString>("7 lamps");
    string->addAttribute(NSKernAttributeName, NSNumber::numberWithInteger(2), {0, 1});
    cell->setAttributedStringValue(string);
    EXPECT_EQ(cell->stringValue(), "7 lamps");
    EXPECT_EQ(cell->integerValue(), 7);
    EXPECT_TRUE(cell->attributedStringValue()->isEqual(string));
    string->replaceCharactersInRange({0, 1}, "8");
    EXPECT_EQ(cell->stringValue(), "7 lamps"); // a copy
    cell->setAttributedStringValue(nullptr);
    EXPECT_EQ(cell->objectValue(), nullptr);
}

TEST(NSCell, OtherValuesGetTheFontAndAlignmentAsAttributes)
{
    const auto cell = make<NSCell>();
    cell->setIntValue(12);
    const auto alignmentOf = [](const NSAttributedString& string) {
        return dynamic_cast<NSParagraphStyle&>(*string.attributeAtIndex(NSParagraphStyleAttributeName, 0))
            .alignment();
    };
    auto string = cell->attributedStringValue();
    EXPECT_EQ(string->string(), "12");
    EXPECT_EQ(string->attributeAtIndex(NSFontAttributeName, 0), nullptr);
    EXPECT_EQ(alignmentOf(*string), NSTextAlignmentNatural);

    const auto font = NSFont::systemFontOfSize(9);
    cell->setFont(font);
    cell->setAlignment(NSTextAlignmentRight);
    string = cell->attributedStringValue();
    EXPECT_EQ(string->attributeAtIndex(NSFontAttributeName, 0), font);
    EXPECT_EQ(alignmentOf(*string), NSTextAlignmentRight);
    cell->setObjectValue(nullptr);
    EXPECT_EQ(cell->attributedStringValue()->length(), 0);
}

TEST(NSCell, AnUnknownAlignmentCountsAsNatural)
{
    const auto cell = make<NSCell>();
    cell->setAlignment(NSTextAlignmentCenter);
    EXPECT_EQ(cell->alignment(), NSTextAlignmentCenter);
    cell->setAlignment(static_cast<NSTextAlignment>(17));
    EXPECT_EQ(cell->alignment(), NSTextAlignmentNatural);
}

TEST(NSCell, HoldsItsViewWeakly)
{
    const auto cell = make<NSCell>();
    auto view = make<NSView>();
    cell->setControlView(view);
    EXPECT_EQ(cell->controlView(), view);
    view = nullptr;
    EXPECT_EQ(cell->controlView(), nullptr);
    cell->setEnabled(false); // with nobody to redraw
    cell->setStringValue("x");
    EXPECT_FALSE(cell->isEnabled());
}

TEST(NSCell, RedrawsAViewThatIsNoControl)
{
    const auto cell = make<NSCell>();
    const auto view = make<NSView>(NSMakeRect(0, 0, 10, 10));
    cell->setControlView(view);
    EXPECT_FALSE(view->needsDisplay());
    cell->setEnabled(false);
    EXPECT_TRUE(view->needsDisplay());
}

// A control with a cell.

TEST_F(NSControlWithCell, DrawsTheCellInItsBounds)
{
    EXPECT_EQ(drawn(), ".rr.");
    EXPECT_EQ(cell->drawnIn, control);
    control->setHighlighted(true);
    EXPECT_EQ(drawn(), ".gg.");
    control->setCell(nullptr);
    EXPECT_EQ(drawn(), "....");
}

TEST_F(NSControlWithCell, HasTheCellsValues)
{
    const auto controller = make<CellController>();
    control->setTarget(controller);
    control->setAction(selector<&CellController::pressed>);
    control->setTag(6);
    control->setEnabled(false);
    control->setHighlighted(true);
    control->setStringValue("5 a");
    control->setFont(NSFont::boldSystemFontOfSize(20));
    control->setAlignment(NSTextAlignmentCenter);
    EXPECT_EQ(cell->target(), controller);
    EXPECT_EQ(cell->action(), selector<&CellController::pressed>);
    EXPECT_EQ(cell->tag(), 6);
    EXPECT_FALSE(cell->isEnabled());
    EXPECT_TRUE(cell->isHighlighted());
    EXPECT_EQ(cell->stringValue(), "5 a");
    EXPECT_EQ(cell->font(), control->font());
    EXPECT_EQ(CTFontGetSize(cell->font()), 20);
    EXPECT_EQ(cell->alignment(), NSTextAlignmentCenter);

    cell->setEnabled(true);
    cell->setHighlighted(false);
    cell->setStringValue("9");
    EXPECT_TRUE(control->isEnabled());
    EXPECT_TRUE(control->isAccessibilityEnabled());
    EXPECT_FALSE(control->isHighlighted());
    EXPECT_EQ(control->target(), controller);
    EXPECT_EQ(control->action(), selector<&CellController::pressed>);
    EXPECT_EQ(control->tag(), 6);
    EXPECT_EQ(control->objectValue(), cell->objectValue());
    EXPECT_EQ(control->integerValue(), 9);
    EXPECT_EQ(control->attributedStringValue()->attributeAtIndex(NSFontAttributeName, 0), cell->font());
    EXPECT_EQ(control->alignment(), NSTextAlignmentCenter);
}

TEST_F(NSControlWithCell, SendsTheCellsActionUnlessDisabled)
{
    const auto controller = make<CellController>();
    cell->setTarget(controller);
    cell->setAction(selector<&CellController::pressed>);
    control->performClick();
    EXPECT_EQ(controller->presses, 1);
    cell->setEnabled(false);
    control->performClick();
    EXPECT_FALSE(control->accessibilityPerformPress());
    EXPECT_EQ(controller->presses, 1);
}

TEST_F(NSControlWithCell, ItsOwnValuesReturnWithoutTheCell)
{
    control->setTag(1);
    control->setEnabled(false);
    control->setStringValue("cell");
    control->setCell(nullptr);
    EXPECT_EQ(control->tag(), 0);
    EXPECT_TRUE(control->isEnabled());
    EXPECT_EQ(control->stringValue(), "");
    EXPECT_EQ(control->font(), nullptr);
    control->setFont(NSFont::systemFontOfSize(9));
    control->setAlignment(NSTextAlignmentRight);
    EXPECT_EQ(control->font(), nullptr);
    EXPECT_EQ(control->alignment(), NSTextAlignmentNatural);
}

TEST_F(NSControlWithCell, AChangeRedrawsOnce)
{
    const auto font = NSFont::systemFontOfSize(9);
    struct Case {
        const char* name;
        std::function<void()> set;
        bool changesTheSize;
    };
    const Case cases[] = {
        {"enabled", [&] { cell->setEnabled(false); }, false},
        {"highlighted", [&] { cell->setHighlighted(true); }, false},
        {"state", [&] { cell->setState(NSControlStateValueOn); }, false},
        {"value", [&] { cell->setStringValue("x"); }, true},
        {"font", [&] { cell->setFont(font); }, true},
        {"alignment", [&] { cell->setAlignment(NSTextAlignmentRight); }, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        container->layouts = 0;
        EXPECT_TRUE(redraws(c.set));
        EXPECT_EQ(container->layouts, c.changesTheSize ? 1 : 0);
        EXPECT_FALSE(redraws(c.set));
        EXPECT_EQ(container->layouts, c.changesTheSize ? 1 : 0);
    }
    EXPECT_FALSE(redraws([&] { cell->setTag(8); }));
}

TEST_F(NSControlWithCell, AnotherCellRedrawsAndLaysOut)
{
    EXPECT_FALSE(redraws([&] { control->setCell(cell); }));
    EXPECT_EQ(container->layouts, 0);
    const auto other = make<PatchCell>();
    EXPECT_TRUE(redraws([&] { control->setCell(other); }));
    EXPECT_EQ(container->layouts, 1);
    EXPECT_EQ(cell->controlView(), nullptr);
    EXPECT_EQ(other->controlView(), control);
    EXPECT_FALSE(redraws([&] { cell->setStringValue("unused"); }));
}

TEST_F(NSControlWithCell, ACellBelongsToTheLastControl)
{
    const auto second = make<NSControl>();
    second->setCell(cell);
    EXPECT_EQ(cell->controlView(), second);
    control->setCell(nullptr);
    EXPECT_EQ(cell->controlView(), second);
}

TEST_F(NSControlWithCell, TheCellMayReplaceItselfWhileItDraws)
{
    class Fickle : public NSCell {
    public:
        void drawWithFrame(NSRect, NSView* view) override
        {
            dynamic_cast<NSControl&>(*view).setCell(make<PatchCell>());
            setHighlighted(true); // still an object
        }
    };
    control->setCell(make<Fickle>());
    EXPECT_EQ(drawn(), "....");
    EXPECT_EQ(drawn(), ".rr.");
}

TEST_F(NSControlWithCell, HasTheSizeOfItsCell)
{
    EXPECT_EQ(describe(control->intrinsicContentSize()), "30 20");
    control->sizeToFit();
    EXPECT_EQ(describe(control->frame()), "0 0 30 20");
    cell->size = {NSViewNoIntrinsicMetric, 7};
    control->sizeToFit();
    EXPECT_EQ(describe(control->frame()), "0 0 30 7");
    control->setCell(nullptr);
    EXPECT_EQ(describe(control->intrinsicContentSize()), "-1 -1");
    control->sizeToFit();
    EXPECT_EQ(describe(control->frame()), "0 0 30 7");
}
