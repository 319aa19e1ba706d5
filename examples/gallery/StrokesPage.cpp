// Lines: the shapes of their ends and corners, dashes that run along, and shadows that a drag moves.

#include "Page.h"
#include "RoundsView.h"
#include "Text.h"

#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>
#include <vector>

namespace {

constexpr RoundsView::Pace kDashPace{.secondsPerRound = 2, .stillProgress = 0};

/// The part of a card above its caption that is drawn in.
NSRect lineRoom(NSRect card)
{
    return NSInsetRect(aboveCaption(card), 16, 12);
}

void strokeLines(CGContextRef context, std::span<const CGPoint> points, const char* color, CGFloat width)
{
    CGContextSetStrokeColorWithColor(context, galleryCGColor(color));
    CGContextSetLineWidth(context, width);
    CGContextAddLines(context, points.data(), points.size());
    CGContextStrokePath(context);
}

/// The three ends of lines, with the lines themselves in their middle.
class CapsCard : public NSView {
public:
    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Ends: butt, round, square");
        const NSRect room = lineRoom(bounds());
        const CGFloat width = std::round(room.size.height / 12) * 2;
        constexpr CGLineCap kCaps[]{kCGLineCapButt, kCGLineCapRound, kCGLineCapSquare};
        for (std::size_t i = 0; i < std::size(kCaps); ++i) {
            const CGFloat y = std::round(NSMaxY(room) - room.size.height * (CGFloat(i) + 0.5) / 3);
            const CGPoint line[]{{NSMinX(room) + width, y}, {NSMaxX(room) - width, y}};
            CGContextSetLineCap(context, kCaps[i]);
            strokeLines(context, line, "zel-blue-highlight", width);
            CGContextSetLineCap(context, kCGLineCapButt);
            strokeLines(context, line, "zel-button-bg", 2);
        }
    }

protected:
    ~CapsCard() override = default;
};

/// The three corners of lines.
class JoinsCard : public NSView {
public:
    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Corners: miter, round, bevel");
        const NSRect room = lineRoom(bounds());
        const CGFloat column = room.size.width / 3;
        const CGFloat width = std::round(std::min(column / 4, room.size.height / 7) / 2) * 2;
        constexpr CGLineJoin kJoins[]{kCGLineJoinMiter, kCGLineJoinRound, kCGLineJoinBevel};
        for (std::size_t i = 0; i < std::size(kJoins); ++i) {
            const CGFloat x = std::round(NSMinX(room) + column * (CGFloat(i) + 0.5));
            const CGFloat half = std::floor((column - 1.6 * width) / 2);
            const CGFloat bottom = std::round(NSMidY(room) - half);
            const CGPoint corner[]{{x - half, bottom}, {x, bottom + 1.7 * half}, {x + half, bottom}};
            CGContextSetLineJoin(context, kJoins[i]);
            strokeLines(context, corner, "zel-green-highlight", width);
            strokeLines(context, corner, "zel-button-bg", 2);
        }
    }

protected:
    ~JoinsCard() override = default;
};

/// Dashes that run along lines while the view is in a window.
class DashesCard : public RoundsView {
public:
    explicit DashesCard(bool isStill)
        : RoundsView(NSZeroRect, kDashPace, isStill)
    {
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Dashes");
        const NSRect room = lineRoom(bounds());
        struct Pattern {
            std::vector<CGFloat> lengths;
            CGLineCap cap;
            CGFloat width;
        };
        static const std::vector<Pattern> patterns{{{8, 4}, kCGLineCapButt, 2},
            {{16, 8, 2, 8}, kCGLineCapButt, 4}, {{0, 10}, kCGLineCapRound, 6},
            {{14, 12}, kCGLineCapRound, 8}};
        for (std::size_t i = 0; i < patterns.size(); ++i) {
            const auto& [lengths, cap, width] = patterns[i];
            CGFloat period = 0;
            for (const CGFloat length : lengths)
                period += length;
            const CGFloat part = (CGFloat(i) + 0.5) / CGFloat(patterns.size());
            const CGFloat y = std::round(NSMaxY(room) - room.size.height * part);
            const CGPoint line[]{{NSMinX(room), y}, {NSMaxX(room), y}};
            CGContextSetLineCap(context, cap);
            CGContextSetLineDash(context, -progress() * 3 * period, lengths.data(), lengths.size());
            strokeLines(context, line, "zel-orange-highlight", width);
        }
    }

protected:
    ~DashesCard() override = default;
};

/// Shapes with a shadow. A press or a drag moves the light.
class ShadowsCard : public NSView {
public:
    void mouseDown(NSEvent* event) override
    {
        const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
        const NSRect room = lineRoom(bounds());
        const auto part = [](CGFloat value, CGFloat size) { return std::clamp(2 * value / size, -1.0, 1.0); };
        _offset = {kFarthest * part(point.x - NSMidX(room), room.size.width),
            kFarthest * part(point.y - NSMidY(room), room.size.height)};
        setNeedsDisplay(true);
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds(), "zel-switch-bg-gray");
        drawLabel(
            context, "Shadows: drag", {12, 11}, {12, false, "zel-white-evenstronger", "zel-switch-bg-gray"});
        // Shadows have sizes in pixels.
        const CGFloat pixels = std::abs(CGContextConvertSizeToDeviceSpace(context, {1, 1}).width);
        CGContextSetShadowWithColor(context, {_offset.width * pixels, _offset.height * pixels}, 10 * pixels,
            ZRGraphics::sharedGraphics()->CGColorFromHex("000000B0"));
        const NSRect room = lineRoom(bounds());
        const CGFloat side = std::round(std::min(room.size.height * 0.62, room.size.width * 0.36));
        const CGFloat y = std::round(NSMidY(room) - side / 2);
        const CGFloat left = std::round(NSMinX(room) + room.size.width / 4 - side / 2);
        const CGFloat right = std::round(NSMaxX(room) - room.size.width / 4 - side / 2);
        fillGalleryCard(context, NSMakeRect(left, y, side, side), "zel-blue-highlight");
        CGContextSetFillColorWithColor(context, galleryCGColor("zel-orange-highlight"));
        CGContextFillEllipseInRect(context, NSMakeRect(right, y, side, side));
    }

protected:
    ~ShadowsCard() override = default;

private:
    static constexpr CGFloat kFarthest = 16; ///< of the shadow from its shape, in points
    NSSize _offset{4, -6};
};

RetainPtr<NSView> makeStrokesPage(const GalleryOptions& options)
{
    std::vector<RetainPtr<NSView>> cards{
        make<CapsCard>(), make<JoinsCard>(), make<DashesCard>(options.isStill), make<ShadowsCard>()};
    return makeGalleryPage(std::move(cards), galleryGrid(2, 4));
}

const GalleryPage strokesPage{"strokes", 71, "Lines and shadows",
    "The ends and corners of lines, dashes that run along, and shadows. Drag in the last card to move the "
    "shadows.",
    makeStrokesPage};

} // namespace
