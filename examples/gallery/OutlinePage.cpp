// Trails of marks that run around capsules and fade towards their ends.

#include "Page.h"
#include "RoundsView.h"

#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr RoundsView::Pace kPace{.secondsPerRound = 4, .stillProgress = 0.62};

constexpr int kMarks = 24;
constexpr CGFloat kMarkRadius = 7;
/// From one mark to the next, in rounds.
constexpr double kStep = 0.012;

/// A capsule on the card, and the direction of its marks.
struct Capsule {
    CGRect frame;
    bool isBackward;
    const char* markColor;
};
constexpr Capsule kCapsules[] = {
    {{{36, 254}, {304, 80}}, false, "zel-blue-highlight"},
    {{{36, 36}, {80, 178}}, false, "zel-orange-highlight"},
    {{{148, 36}, {80, 178}}, true, "zel-green-highlight"},
    {{{260, 80}, {80, 80}}, false, "zel-warning"},
};

/// Capsules with marks that run around them while the view is in a window.
class OutlineView : public RoundsView {
public:
    OutlineView(NSRect frame, bool isStill)
        : RoundsView(frame, kPace, isStill)
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        for (const Capsule& capsule : kCapsules)
            drawCapsule(context, capsule);
    }

protected:
    ~OutlineView() override = default;

private:
    void drawCapsule(CGContextRef context, const Capsule& capsule) const
    {
        CGContextSaveGState(context);
        CGContextTranslateCTM(context, capsule.frame.origin.x, capsule.frame.origin.y);
        const CGRect bounds{
            {0, 0}, capsule.frame.size}; // pointAlongCapsuleWithBounds expects the origin at (0, 0)
        const CGFloat radius = std::min(bounds.size.width, bounds.size.height) / 2;
        const auto outline = adopt(CGPathCreateWithRoundedRect(bounds, radius, radius, nullptr));
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline-solid"));
        CGContextSetLineWidth(context, 2);
        CGContextAddPath(context, outline);
        CGContextStrokePath(context);

        CGContextSetFillColorWithColor(context, galleryCGColor(capsule.markColor));
        for (int i = kMarks - 1; i >= 0; --i) { // the first one on top
            const double rounds = progress() - i * kStep + 1;
            const double t = std::fmod(capsule.isBackward ? 2 - rounds : rounds, 1);
            const CGPoint mark = ZRGraphics::sharedGraphics()->pointAlongCapsuleWithBounds(bounds, t);
            const double strength = 1 - double(i) / kMarks;
            const CGFloat markRadius = kMarkRadius * std::sqrt(strength);
            CGContextSetAlpha(context, strength);
            CGContextFillEllipseInRect(context,
                CGRectMake(mark.x - markRadius, mark.y - markRadius, 2 * markRadius, 2 * markRadius));
        }
        CGContextRestoreGState(context);
    }
};

RetainPtr<NSView> makeOutlinePage(const GalleryOptions& options)
{
    auto page = makeGalleryPage();
    page->addSubview(make<OutlineView>(
        NSMakeRect(kGalleryMargin, kGalleryMargin, kGalleryCardSide, kGalleryCardSide), options.isStill));
    return page;
}

const GalleryPage page{"outline", 90, "Outlines",
    "Points that run around capsules at an even speed, each with a tail.", makeOutlinePage};

} // namespace
