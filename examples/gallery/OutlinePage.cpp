// Marks that run around capsules, with tails that fade towards their ends.

#include "Page.h"
#include "RoundsView.h"

#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr RoundsView::Pace kTailPace{.secondsPerRound = 4, .stillProgress = 0.62};

/// The tail's length in rounds, and the number of its parts.
constexpr double kTail = 0.28;
constexpr int kParts = 96;
/// Of the outline, and of the tail's thin end, which grows out of it.
constexpr CGFloat kLineWidth = 2;
constexpr CGFloat kMarkRadius = 7;

/// A capsule, in its place on a card of the usual size, and the direction of its mark.
struct Capsule {
    CGRect frame;
    bool isBackward;
    const char* color;
};
constexpr Capsule kCapsules[] = {
    {{{36, 232}, {304, 100}}, false, "zel-blue-highlight"},
    {{{36, 36}, {80, 160}}, false, "zel-orange-highlight"},
    {{{148, 36}, {80, 160}}, true, "zel-green-highlight"},
    {{{260, 76}, {80, 80}}, false, "zel-warning"},
};

/// The frame on a card of that size, on whole points. A circle stays one.
CGRect scaled(const CGRect& frame, NSSize card)
{
    const CGFloat x = card.width / kGalleryCardSide, y = card.height / kGalleryCardSide;
    CGSize size{std::round(frame.size.width * x), std::round(frame.size.height * y)};
    if (frame.size.width == frame.size.height)
        size.width = size.height = std::min(size.width, size.height);
    return {{std::round(CGRectGetMidX(frame) * x - size.width / 2),
                std::round(CGRectGetMidY(frame) * y - size.height / 2)},
        size};
}

struct RGB {
    CGFloat red, green, blue;
};

RGB componentsOf(const char* color)
{
    const CGFloat* const components = CGColorGetComponents(galleryCGColor(color));
    return {components[0], components[1], components[2]};
}

/// A mark's way around the capsule `bounds`, whose origin is (0, 0).
class Track {
public:
    Track(CGRect bounds, bool isBackward)
        : _bounds(bounds)
        , _isBackward(isBackward)
    {
    }

    /// The point after so many rounds, of which only the fraction counts.
    CGPoint pointAt(double rounds) const
    {
        const double t = std::fmod((_isBackward ? -rounds : rounds) + 2, 1);
        return ZRGraphics::sharedGraphics()->pointAlongCapsuleWithBounds(_bounds, t);
    }

    /// The point that lies so far to the left of the way's direction.
    CGPoint pointAside(double rounds, CGFloat aside) const
    {
        constexpr double kDifference = 1e-4;
        const CGPoint behind = pointAt(rounds - kDifference), ahead = pointAt(rounds + kDifference);
        const CGFloat x = ahead.x - behind.x, y = ahead.y - behind.y;
        const CGFloat scale = aside / std::max(std::hypot(x, y), 1e-9);
        const CGPoint point = pointAt(rounds);
        return {point.x - y * scale, point.y + x * scale};
    }

private:
    const CGRect _bounds;
    const bool _isBackward;
};

/// A tail behind a mark, which widens and brightens from the outline to the mark.
class Tail {
public:
    Tail(const Track& track, double head, CGFloat radius)
        : _track(track)
        , _head(head)
        , _radius(radius)
    {
    }

    void draw(CGContextRef context, const RGB& thin, const RGB& full) const
    {
        CGContextSaveGState(context);
        clipToOutline(context);
        // From the thin end, each part over the end of the last one: only the clip has antialiased edges.
        for (int part = 0; part < kParts; ++part) {
            const CGFloat strength = std::sqrt(CGFloat(part) / (kParts - 1));
            CGContextSetRGBFillColor(context, std::lerp(thin.red, full.red, strength),
                std::lerp(thin.green, full.green, strength), std::lerp(thin.blue, full.blue, strength), 1);
            moveToPoint(context, part, _radius + 1);
            addLine(context, part, -_radius - 1);
            addLine(context, std::min(part + 2, kParts), -_radius - 1);
            addLine(context, std::min(part + 2, kParts), _radius + 1);
            CGContextFillPath(context);
        }
        CGContextRestoreGState(context);
    }

private:
    /// The point so far aside from where a part starts.
    CGPoint pointAt(int part, CGFloat aside) const
    {
        const double rounds = _head - kTail * (1 - double(part) / kParts);
        return _track.pointAside(rounds, aside);
    }

    /// Half of the tail's width where a part starts.
    CGFloat halfWidth(int part) const { return std::lerp(kLineWidth / 2, _radius, double(part) / kParts); }

    void moveToPoint(CGContextRef context, int part, CGFloat aside) const
    {
        const CGPoint point = pointAt(part, aside);
        CGContextMoveToPoint(context, point.x, point.y);
    }

    void addLine(CGContextRef context, int part, CGFloat aside) const
    {
        const CGPoint point = pointAt(part, aside);
        CGContextAddLineToPoint(context, point.x, point.y);
    }

    void clipToOutline(CGContextRef context) const
    {
        moveToPoint(context, 0, halfWidth(0));
        for (int part = 1; part <= kParts; ++part)
            addLine(context, part, halfWidth(part));
        for (int part = kParts; part >= 0; --part)
            addLine(context, part, -halfWidth(part));
        CGContextClip(context);
    }

    const Track& _track;
    const double _head; ///< in rounds
    const CGFloat _radius;
};

/// Capsules with marks that run around them while the view is in a window.
class OutlineView : public RoundsView {
public:
    explicit OutlineView(bool isStill)
        : RoundsView(NSZeroRect, kTailPace, isStill)
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
        const CGRect frame = scaled(capsule.frame, this->bounds().size);
        // pointAlongCapsuleWithBounds expects the origin at (0, 0).
        const CGRect bounds{{0, 0}, frame.size};
        CGContextSaveGState(context);
        CGContextTranslateCTM(context, frame.origin.x, frame.origin.y);
        const CGFloat round = std::min(bounds.size.width, bounds.size.height) / 2;
        const auto outline = adopt(CGPathCreateWithRoundedRect(bounds, round, round, nullptr));
        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-hairline-solid"));
        CGContextSetLineWidth(context, kLineWidth);
        CGContextAddPath(context, outline);
        CGContextStrokePath(context);

        const Track track(bounds, capsule.isBackward);
        Tail(track, progress(), kMarkRadius)
            .draw(context, componentsOf("zel-hairline-solid"), componentsOf(capsule.color));
        const CGPoint mark = track.pointAt(progress());
        CGContextSetFillColorWithColor(context, galleryCGColor(capsule.color));
        CGContextFillEllipseInRect(context, CGRectInset({mark, CGSizeZero}, -kMarkRadius, -kMarkRadius));
        CGContextRestoreGState(context);
    }
};

RetainPtr<NSView> makeOutlinePage(const GalleryOptions& options)
{
    return makeGalleryPage({make<OutlineView>(options.isStill)}, galleryGrid(1, 1));
}

const GalleryPage outlinePage{"outline", 90, "Outlines",
    "Points that run around capsules at an even speed, each with a tail.", makeOutlinePage};

} // namespace
