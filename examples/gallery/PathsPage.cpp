// Marks that move along outlines and draw them, and a noisy line beside its simplifications, with the number
// of points of each.

#include "Label.h"
#include "Page.h"
#include "PathShapes.h"
#include "RoundsView.h"

#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRPath.h>

#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kGap = 16;
constexpr CGFloat kPadding = 16;
constexpr CGFloat kCardHeight = (kGalleryCardSide - kGap) / 2;
constexpr RoundsView::Pace kPace{.secondsPerRound = 6, .stillProgress = 0.62};

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
    MarksView(NSRect frame, const std::vector<RetainPtr<CGPath>>& outlines, bool isStill)
        : RoundsView(frame, kPace, isStill)
    {
        for (const auto& outline : outlines) {
            _paths.push_back(ZRPath::pathWithCGPath(outline));
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
    std::vector<RetainPtr<ZRPath>> _paths;
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

/// An outline and its simplifications, with the number of points of each.
class SimplificationsView : public NSView {
public:
    SimplificationsView(NSRect frame, CGPathRef outline, bool isYDown)
        : NSView(frame)
    {
        constexpr double kTolerances[] = {0, 1, 4}; // in points of the page
        for (int i = 0; i < 3; ++i) {
            NSRect rect = columnIn(bounds(), i, 3);
            rect.origin.y += kLabelSize + kPadding;
            rect.size.height -= kLabelSize + kPadding;
            _paths.push_back(simplified(fitted(outline, rect, isYDown).get(), kTolerances[i]));
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
            drawLabel(context, points, columnIn(bounds(), i, 3).origin, kLabelSize, "zel-menu-fg");
        }
    }

protected:
    ~SimplificationsView() override = default;

private:
    static constexpr CGFloat kLabelSize = 12;
    std::vector<RetainPtr<CGPath>> _paths;
};

RetainPtr<NSView> makePathsPage(const GalleryOptions& options)
{
    const NSRect upper =
        NSMakeRect(kGalleryMargin, kGalleryMargin + kCardHeight + kGap, kGalleryCardSide, kCardHeight);
    const NSRect lower = NSMakeRect(kGalleryMargin, kGalleryMargin, kGalleryCardSide, kCardHeight);
    const NSRect card = NSMakeRect(0, 0, kGalleryCardSide, kCardHeight);

    std::vector<RetainPtr<CGPath>> outlines;
    if (options.path) {
        outlines.push_back(fitted(options.path, columnIn(card, 0, 1), true));
    } else {
        const RetainPtr<CGPath> shapes[] = {makeSpiral(), makeStar(), makeHeart()};
        for (int i = 0; i < 3; ++i)
            outlines.push_back(fitted(shapes[i].get(), columnIn(card, i, 3), false));
    }
    const auto simplified = options.path ? options.path : makeNoisyLine();

    auto page = makeGalleryPage();
    page->addSubview(make<MarksView>(upper, outlines, options.isStill));
    page->addSubview(make<SimplificationsView>(lower, simplified, options.path != nullptr));
    return page;
}

const GalleryPage page{"paths", 30, "Paths",
    "Above, points that move along outlines at an even speed, and draw what they have passed. Below, a noisy "
    "line with fewer and fewer of its points. Show a path of your own with --svg FILE.",
    makePathsPage};

} // namespace
