// Layout by constraints: a panel pinned to all four sides of its card, and panels whose places depend on each
// other. They follow when the window is resized.

#include "Page.h"
#include "Text.h"

#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGradientView.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include <AppKit/NSLayoutConstraint.h>

#include <initializer_list>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kPanelGap = 16;

RetainPtr<ZRGradientView> makePanel(const char* color)
{
    auto panel = make<ZRGradientView>(NSMakeRect(0, 0, 40, 40));
    panel->setRoundedCorners(kZRCornerAll);
    panel->setCornerRadius(6);
    panel->setColor(galleryColor(color));
    return panel;
}

/// A card with an area of its own for panels above its caption.
class PinnedCard : public NSView {
public:
    explicit PinnedCard(NSString caption)
        : _caption(std::move(caption))
    {
        addSubview(_area);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        _area->setFrame(NSInsetRect(aboveCaption(bounds()), kPanelGap, kPanelGap));
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), _caption);
    }

protected:
    ~PinnedCard() override = default;

    NSView* area() const { return _area.get(); }

    /// Adds a panel that gets its place from constraints alone.
    NSView* add(const char* color)
    {
        const auto panel = makePanel(color);
        panel->setTranslatesAutoresizingMaskIntoConstraints(false);
        _area->addSubview(panel);
        return panel.get();
    }

    /// "first.attribute == multiplier * second.secondAttribute + constant", or an inequality.
    void relate(NSView* first, NSLayoutAttribute attribute, NSView* second, NSLayoutAttribute secondAttribute,
        CGFloat multiplier = 1, CGFloat constant = 0, NSLayoutRelation relation = NSLayoutRelationEqual,
        NSLayoutPriority priority = NSLayoutPriorityRequired)
    {
        const auto constraint = NSLayoutConstraint::constraintWithItem(
            first, attribute, relation, second, secondAttribute, multiplier, constant);
        constraint->setPriority(priority);
        _area->addConstraint(constraint);
    }

    /// Gives a panel the same sides as another view.
    void alignSides(NSView* panel, NSView* with, std::initializer_list<NSLayoutAttribute> sides)
    {
        for (const NSLayoutAttribute side : sides)
            relate(panel, side, with, side);
    }

private:
    const NSString _caption;
    const RetainPtr<NSView> _area = make<NSView>();
};

class FourSidesCard : public PinnedCard {
public:
    FourSidesCard()
        : PinnedCard("Pinned to four sides")
    {
        const auto panel = makePanel("zel-blue-highlight");
        area()->addSubview(panel);
        ZRAppKitAdditions::addConstraintsPin4SidesWithPriority(panel, NSLayoutPriorityRequired);
    }

protected:
    ~FourSidesCard() override = default;
};

/// A sidebar of a third of the width, but of 60 to 140 points, beside the rest.
class SidebarCard : public PinnedCard {
public:
    SidebarCard()
        : PinnedCard("A third, within limits")
    {
        NSView* const sidebar = add("zel-switch-bg-gray");
        NSView* const rest = add("zel-blue-highlight");
        alignSides(sidebar, area(), {NSLayoutAttributeLeft, NSLayoutAttributeTop, NSLayoutAttributeBottom});
        alignSides(rest, area(), {NSLayoutAttributeRight, NSLayoutAttributeTop, NSLayoutAttributeBottom});
        relate(rest, NSLayoutAttributeLeft, sidebar, NSLayoutAttributeRight, 1, 8);
        relate(sidebar, NSLayoutAttributeWidth, area(), NSLayoutAttributeWidth, 1 / 3.0, 0,
            NSLayoutRelationEqual, NSLayoutPriorityDefaultLow);
        relate(sidebar, NSLayoutAttributeWidth, nullptr, NSLayoutAttributeNotAnAttribute, 1, 60,
            NSLayoutRelationGreaterThanOrEqual);
        relate(sidebar, NSLayoutAttributeWidth, nullptr, NSLayoutAttributeNotAnAttribute, 1, 140,
            NSLayoutRelationLessThanOrEqual);
    }

protected:
    ~SidebarCard() override = default;
};

/// Three columns of equal width.
class ColumnsCard : public PinnedCard {
public:
    ColumnsCard()
        : PinnedCard("Equal columns")
    {
        NSView* previous = nullptr;
        for (const char* color : {"zel-switch-bg-gray", "zel-blue-highlight", "zel-switch-bg-gray"}) {
            NSView* const column = add(color);
            alignSides(column, area(), {NSLayoutAttributeTop, NSLayoutAttributeBottom});
            if (previous) {
                relate(column, NSLayoutAttributeLeft, previous, NSLayoutAttributeRight, 1, 8);
                relate(column, NSLayoutAttributeWidth, previous, NSLayoutAttributeWidth);
            } else {
                alignSides(column, area(), {NSLayoutAttributeLeft});
            }
            previous = column;
        }
        alignSides(previous, area(), {NSLayoutAttributeRight});
    }

protected:
    ~ColumnsCard() override = default;
};

/// A panel in the middle, half as wide, whose height is three quarters of its width.
class CentredCard : public PinnedCard {
public:
    CentredCard()
        : PinnedCard("In the middle, 4 to 3")
    {
        NSView* const panel = add("zel-blue-highlight");
        alignSides(panel, area(), {NSLayoutAttributeCenterX, NSLayoutAttributeCenterY});
        relate(panel, NSLayoutAttributeHeight, panel, NSLayoutAttributeWidth, 0.75);
        relate(panel, NSLayoutAttributeHeight, area(), NSLayoutAttributeHeight, 1, 0,
            NSLayoutRelationLessThanOrEqual);
        relate(panel, NSLayoutAttributeWidth, area(), NSLayoutAttributeWidth, 0.5, 0, NSLayoutRelationEqual,
            NSLayoutPriorityDefaultHigh);
    }

protected:
    ~CentredCard() override = default;
};

RetainPtr<NSView> makePinnedPage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> cards{
        make<FourSidesCard>(), make<SidebarCard>(), make<ColumnsCard>(), make<CentredCard>()};
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage pinnedPage{"pinned", 92, "Pinned views",
    "Panels whose places are constraints: pinned to all sides, in proportion to each other, within limits. "
    "Resize the window: they follow.",
    makePinnedPage};

} // namespace
