// Marks that move along outlines and draw them, and a noisy line beside its simplifications, with the number
// of points of each.

#include "Page.h"
#include "PathShapes.h"
#include "RoundsView.h"
#include "Text.h"

#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kPadding = 16;
constexpr RoundsView::Pace kPathPace{.secondsPerRound = 6, .stillProgress = 0.62};

void strokePath(CGContextRef context, CGPathRef path, const char* color, CGFloat width)
{
    CGContextSetLineCap(context, kCGLineCapRound);
    CGContextSetLineJoin(context, kCGLineJoinRound);
    CGContextSetStrokeColorWithColor(context, galleryCGColor(color));
    CGContextSetLineWidth(context, width);
    strokeInPieces(context, path);
}

/// One of the equal columns of a card, counted from 0 on the left.
NSRect columnIn(NSRect bounds, int number, int count)
{
    const CGFloat width = (bounds.size.width - kPadding) / count - kPadding;
    return NSMakeRect(
        kPadding + number * (width + kPadding), kPadding, width, bounds.size.height - 2 * kPadding);
}

/// Outlines with a mark that moves along each while the view is in a window.
class MarksView : public RoundsView {
public:
    /// The outlines stand side by side.
    MarksView(std::vector<RetainPtr<CGPath>> outlines, bool isYDown, bool isStill)
        : RoundsView(NSZeroRect, kPathPace, isStill)
        , _outlines(std::move(outlines))
        , _isYDown(isYDown)
    {
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        _paths.clear();
        const int count = static_cast<int>(_outlines.size());
        for (int i = 0; i < count; ++i) {
            const auto& outline = _outlines[static_cast<std::size_t>(i)];
            const auto path = fitted(outline.get(), columnIn(bounds(), i, count), _isYDown);
            _paths.push_back(ZRPath::pathWithCGPath(path));
            _paths.back()->setResolution(1);
            _paths.back()->build();
        }
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        for (const auto& path : _paths) {
            const double distance = path->distance() * progress();
            strokePath(context, path->CGPath(), "zel-hairline-solid", 2);
            const auto behind = adopt(path->createPathToDistance(distance));
            strokePath(context, behind, "zel-blue-highlight", 2);
            const CGPoint mark = path->pointAlongPathAtDistance(distance);
            CGContextSetFillColorWithColor(context, galleryCGColor("zel-orange-highlight"));
            CGContextFillEllipseInRect(context, CGRectMake(mark.x - 4, mark.y - 4, 8, 8));
        }
    }

protected:
    ~MarksView() override = default;

private:
    const std::vector<RetainPtr<CGPath>> _outlines;
    const bool _isYDown;
    std::vector<RetainPtr<ZRPath>> _paths; ///< the outlines in their places
};

std::size_t elementCount(CGPathRef path, bool (*isCounted)(CGPathElementType))
{
    std::pair counter(isCounted, std::size_t(0));
    CGPathApply(path, &counter, [](void* info, const CGPathElement* element) {
        auto& [counts, count] = *static_cast<decltype(counter)*>(info);
        count += counts(element->type);
    });
    return counter.second;
}

bool isPoint(CGPathElementType type)
{
    return type != kCGPathElementCloseSubpath;
}

bool isClose(CGPathElementType type)
{
    return type == kCGPathElementCloseSubpath;
}

/// The simplified path. A closed outline, whose ends are one point, would collapse: it is simplified without
/// its closing line, and closed again.
RetainPtr<CGPath> simplified(CGPathRef path, double tolerance)
{
    auto open = adopt(CGPathCreateMutable());
    CGPathApply(path, open, [](void* info, const CGPathElement* element) {
        auto* result = static_cast<CGMutablePathRef>(info);
        const CGPoint* p = element->points;
        switch (element->type) {
        case kCGPathElementMoveToPoint:
            return CGPathMoveToPoint(result, nullptr, p[0].x, p[0].y);
        case kCGPathElementAddLineToPoint:
            return CGPathAddLineToPoint(result, nullptr, p[0].x, p[0].y);
        case kCGPathElementAddQuadCurveToPoint:
            return CGPathAddQuadCurveToPoint(result, nullptr, p[0].x, p[0].y, p[1].x, p[1].y);
        case kCGPathElementAddCurveToPoint:
            return CGPathAddCurveToPoint(result, nullptr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
        case kCGPathElementCloseSubpath:
            return;
        }
    });
    const auto measured = ZRPath::pathWithCGPath(open);
    measured->setResolution(1);
    auto result =
        adopt(CGPathCreateMutableCopy(measured->pathBySimplifyingWithTolerance(tolerance)->CGPath()));
    if (elementCount(path, isClose) > 0 && !CGPathIsEmpty(result))
        CGPathCloseSubpath(result);
    return result;
}

/// An outline and its simplifications, with the tolerance and the number of points of each.
class SimplificationsView : public NSView {
public:
    SimplificationsView(RetainPtr<CGPath> outline, bool isYDown)
        : _outline(std::move(outline))
        , _isYDown(isYDown)
    {
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        _paths.clear();
        for (int i = 0; i < 3; ++i) {
            NSRect rect = columnIn(bounds(), i, 3);
            rect.origin.y += kLabels;
            rect.size.height -= kLabels;
            _paths.push_back(simplified(fitted(_outline, rect, _isYDown).get(), kTolerances[i]));
        }
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        for (int i = 0; i < 3; ++i) {
            const CGPathRef path = _paths[static_cast<std::size_t>(i)].get();
            strokePath(context, path, i == 0 ? "zel-menu-fg-dim" : "zel-green-highlight", 1.5);
            const auto points = NSString::stringWithFormat("%zu points", elementCount(path, isPoint));
            const auto tolerance =
                i == 0 ? NSString("as drawn") : NSString::stringWithFormat("tolerance %g", kTolerances[i]);
            const NSPoint origin = columnIn(bounds(), i, 3).origin;
            drawLabels(
                context, {tolerance, points}, {origin.x, origin.y + lineHeight(kCaptionText)}, kCaptionText);
        }
    }

protected:
    ~SimplificationsView() override = default;

private:
    static constexpr double kTolerances[] = {0, 1, 4}; ///< in points of the page
    static constexpr CGFloat kLabels = 44;             ///< height of the labels and of the gap above

    const RetainPtr<CGPath> _outline;
    const bool _isYDown;
    std::vector<RetainPtr<CGPath>> _paths;
};

RetainPtr<NSView> makePathsPage(const GalleryOptions& options)
{
    const bool isOwn = options.path != nullptr;
    std::vector<RetainPtr<CGPath>> outlines{makeSpiral(), makeStar(), makeHeart()};
    if (isOwn)
        outlines = {options.path};
    return makeGalleryPage({make<MarksView>(std::move(outlines), isOwn, options.isStill),
                               make<SimplificationsView>(isOwn ? options.path : makeNoisyLine(), isOwn)},
        galleryGrid(1, 2));
}

const GalleryPage pathsPage{"paths", 30, "Paths",
    "Above, points that move along outlines at an even speed, and draw what they have passed. Below, a noisy "
    "line with fewer and fewer of its points. Show a path of your own with --svg FILE.",
    makePathsPage};

} // namespace
