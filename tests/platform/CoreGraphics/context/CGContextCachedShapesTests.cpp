// A shape that is drawn repeatedly is cached from the third time on, with the same result.

#include "support/AllocationCounter.h"
#include "support/Canvas.h"
#include "support/EachVectorUnit.h"

#include <CoreGraphics/CoreGraphics.h>

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

namespace {

/// Drawn the first two times, cached from then on.
constexpr int kTimes = 4;

using Drawing = std::function<void(CGContextRef)>;

bool areAlike(const Canvas& a, const Canvas& b)
{
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                return false;
        }
    }
    return true;
}

/// A polygon with slanting edges.
void addPolygon(CGContextRef context, CGFloat x, CGFloat y)
{
    CGContextMoveToPoint(context, x, y);
    CGContextAddLineToPoint(context, x + 4, y);
    CGContextAddLineToPoint(context, x + 4, y + 2);
    CGContextAddLineToPoint(context, x + 2, y + 2);
    CGContextAddLineToPoint(context, x + 2, y + 4);
    CGContextAddLineToPoint(context, x, y + 4);
    CGContextClosePath(context);
}

/// A square in a square, in the same direction.
void addSquares(CGContextRef context)
{
    const CGPoint outer[]{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}};
    const CGPoint inner[]{{1, 1}, {3, 1}, {3, 3}, {1, 3}, {1, 1}};
    CGContextAddLines(context, outer, 5);
    CGContextAddLines(context, inner, 5);
}

void addLine(CGContextRef context)
{
    CGContextMoveToPoint(context, 2, 3);
    CGContextAddLineToPoint(context, 6, 3);
}

} // namespace

TEST(CachedShapes, DrawTheSamePixelsEachTime)
{
    const CGFloat dashes[]{3.3, 1.9};
    const Drawing drawings[]{
        [](CGContextRef context) { CGContextFillEllipseInRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9)); },
        [](CGContextRef context) { CGContextStrokeEllipseInRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9)); },
        [&](CGContextRef context) {
            CGContextSetLineDash(context, 0.7, dashes, 2);
            CGContextStrokeEllipseInRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9));
        },
        [](CGContextRef context) {
            CGContextAddEllipseInRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9));
            CGContextClip(context);
            CGContextFillEllipseInRect(context, CGRectMake(9.1, 1.2, 21.2, 11.9));
        },
        [](CGContextRef context) {
            CGContextSetBlendMode(context, kCGBlendModeXOR);
            CGContextFillEllipseInRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9));
        },
        [](CGContextRef context) {
            CGContextSetShadow(context, CGSizeMake(3, -2), 3.5);
            CGContextFillEllipseInRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9));
        },
        [](CGContextRef context) {
            CGContextSetShadow(context, CGSizeMake(3, -2), 3.5);
            CGContextFillRect(context, CGRectMake(3.3, 2.6, 21.2, 11.9));
        },
    };
    for (const Drawing& draw : drawings) {
        for (const CGFloat scale : {1, 2}) {
            const auto drawn = [&] {
                Canvas canvas(60, 40);
                CGContextScaleCTM(canvas.context(), scale, scale);
                CGContextSetRGBFillColor(canvas.context(), 0.3, 0.6, 0.9, 0.7);
                draw(canvas.context());
                return canvas;
            };
            const Canvas first = drawn();
            for (int time = 1; time < kTimes; ++time)
                EXPECT_TRUE(areAlike(first, drawn())) << &draw - drawings << " " << scale << " " << time;
        }
    }
}

TEST(CachedShapes, MoveByWholePixels)
{
    for (int time = 0; time < kTimes; ++time) {
        Canvas canvas(7, 6);
        addPolygon(canvas.context(), 2.5, 1);
        CGContextFillPath(canvas.context());
        EXPECT_COVERAGE(canvas,
            "......."
            "..+#+.."
            "..+#+.."
            "..+###+"
            "..+###+"
            ".......");
        Canvas other(7, 6);
        addPolygon(other.context(), 0.5, 2);
        CGContextFillPath(other.context());
        EXPECT_COVERAGE(other,
            "+#+...."
            "+#+...."
            "+###+.."
            "+###+.."
            "......."
            ".......");
    }
}

TEST(CachedShapes, DependOnTheirSubpixelPosition)
{
    for (int time = 0; time < kTimes; ++time) {
        Canvas canvas(5, 5);
        addPolygon(canvas.context(), 0, 1);
        CGContextFillPath(canvas.context());
        EXPECT_COVERAGE(canvas, "##...##...####.####......");
        Canvas right(5, 5);
        addPolygon(right.context(), 0.5, 1);
        CGContextFillPath(right.context());
        EXPECT_COVERAGE(right, "+#+..+#+..+###++###+.....");
        Canvas up(5, 5);
        addPolygon(up.context(), 0, 0.5);
        CGContextFillPath(up.context());
        EXPECT_COVERAGE(up, "++...##...##++.####.++++.");
    }
}

TEST(CachedShapes, AreClipped)
{
    for (int time = 0; time < kTimes; ++time) {
        Canvas canvas(3, 3);
        addPolygon(canvas.context(), -1, -1);
        CGContextFillPath(canvas.context());
        EXPECT_COVERAGE(canvas, "#..#..###");
        Canvas clipped(5, 5);
        CGContextClipToRect(clipped.context(), CGRectMake(1, 0, 1.5, 3));
        addPolygon(clipped.context(), 0, 0);
        CGContextFillPath(clipped.context());
        EXPECT_COVERAGE(clipped,
            "....."
            "....."
            ".#..."
            ".#+.."
            ".#+..");
        Canvas away(3, 3);
        addPolygon(away.context(), 30, 30);
        CGContextFillPath(away.context());
        EXPECT_COVERAGE(away, ".........");
    }
}

TEST(CachedShapes, BlendIdenticallyUnderEveryClip)
{
    // A comb with teeth eight pixels wide, over varying pixels. Depending on the clip's left edge, a tooth
    // fills a group of eight pixels or straddles two.
    constexpr int kWidth = 250;
    constexpr int kHeight = 20;
    const auto drawn = [](int firstColumn) {
        Canvas canvas(kWidth, kHeight);
        for (int row = 0; row < kHeight; ++row) {
            for (int column = 0; column < kWidth; ++column)
                canvas.setPixel(column, row, rgba(column, 12 * row, (column + 12 * row) % 256, 255));
        }
        const CGContextRef context = canvas.context();
        CGContextClipToRect(context, CGRectMake(firstColumn, 0, kWidth, kHeight));
        CGContextSetRGBFillColor(context, 0.9, 0.3, 0.6, 0.7);
        for (int tooth = 0; tooth + 9 < kWidth; tooth += 9) {
            const CGPoint corners[]{
                {tooth + 0.0, 0}, {tooth + 8.0, 0}, {tooth + 8.0, kHeight}, {tooth + 0.0, kHeight}};
            CGContextAddLines(context, corners, 4);
        }
        CGContextFillPath(context);
        return canvas;
    };
    const Canvas whole = drawn(0);
    for (int firstColumn = 1; firstColumn < 9; ++firstColumn) {
        const Canvas part = drawn(firstColumn);
        for (int row = 0; row < kHeight; ++row) {
            for (int column = firstColumn; column < kWidth; ++column)
                ASSERT_EQ(part.pixel(column, row), whole.pixel(column, row)) << column << " " << row;
        }
    }
}

TEST(CachedShapes, BlendIdenticallyOnEveryVectorUnit)
{
    const auto drawn = [](Canvas::Format format, int width, CGFloat alpha) {
        Canvas canvas(width, 21, format);
        for (int row = 0; row < canvas.height(); ++row) {
            for (int column = 0; column < width; ++column)
                canvas.setPixel(column, row, rgba(3 * column, 5 * row, 40, 170 + column));
        }
        CGContextSetRGBFillColor(canvas.context(), 0.9, 0.3, 0.6, alpha);
        CGContextFillEllipseInRect(canvas.context(), CGRectMake(0.3, 0.6, width - 1, 19));
        return canvas;
    };
    for (const auto format : {Canvas::Format::RGBA, Canvas::Format::AlphaOnly}) {
        for (const int width : {5, 31, 64, 75}) { // multiples of eight and others
            for (const CGFloat alpha : {1.0, 0.7}) {
                const Canvas first = drawn(format, width, alpha);
                // In the middle the ellipse covers whole pixels: alpha over alpha.
                const int middle = width / 2;
                const double below = (170 + middle) / 255.0;
                EXPECT_EQ(first.alpha(middle, 10), std::lround(255 * (alpha + below - alpha * below)));
                onEachVectorUnit([&] { EXPECT_TRUE(areAlike(first, drawn(format, width, alpha))) << width; });
            }
        }
    }
}

TEST(CachedShapes, DependOnTheFillRule)
{
    for (int time = 0; time < kTimes; ++time) {
        Canvas winding(4, 4);
        addSquares(winding.context());
        CGContextFillPath(winding.context());
        EXPECT_COVERAGE(winding, "################");
        Canvas evenOdd(4, 4);
        addSquares(evenOdd.context());
        CGContextEOFillPath(evenOdd.context());
        EXPECT_COVERAGE(evenOdd, "#####..##..#####");
    }
}

TEST(CachedShapes, DependOnAntialiasing)
{
    for (int time = 0; time < kTimes; ++time) {
        for (const bool isAntialiased : {true, false}) {
            Canvas canvas(6, 4);
            CGContextSetShouldAntialias(canvas.context(), isAntialiased);
            addPolygon(canvas.context(), 0.25, 0);
            CGContextFillPath(canvas.context());
            EXPECT_COVERAGE(canvas, isAntialiased ? "*#-...*#-...*###-.*###-." : "##....##....####..####..");
        }
    }
}

TEST(CachedShapes, DependOnThePen)
{
    const CGFloat dashes[]{1, 2};
    const Drawing pens[]{
        [](CGContextRef) {},
        [](CGContextRef context) { CGContextSetLineWidth(context, 4); },
        [](CGContextRef context) { CGContextSetLineCap(context, kCGLineCapSquare); },
        [&](CGContextRef context) { CGContextSetLineDash(context, 0, dashes, 2); },
        [&](CGContextRef context) { CGContextSetLineDash(context, 1, dashes, 2); },
    };
    constexpr const char* kPictures[]{
        ".........................####....####...................",
        ".................####....####....####....####...........",
        "........................######..######..................",
        ".........................#..#....#..#...................",
        "...........................#.......#....................",
    };
    for (int time = 0; time < kTimes; ++time) {
        for (const Drawing& pen : pens) {
            Canvas canvas(8, 7);
            CGContextTranslateCTM(canvas.context(), -1, 0);
            CGContextSetLineWidth(canvas.context(), 2);
            pen(canvas.context());
            addLine(canvas.context());
            CGContextStrokePath(canvas.context());
            EXPECT_COVERAGE(canvas, kPictures[&pen - pens]) << time;
        }
    }
}

TEST(CachedShapes, DependOnTheTransformOfThePen)
{
    for (int time = 0; time < kTimes; ++time) {
        Canvas canvas(8, 6);
        addLine(canvas.context());
        CGContextScaleCTM(canvas.context(), 1, 4); // after the path was added
        CGContextStrokePath(canvas.context());
        EXPECT_COVERAGE(canvas, "..........####....####....####....####..........");
        Canvas wide(8, 6);
        addLine(wide.context());
        CGContextScaleCTM(wide.context(), 1, 2);
        CGContextStrokePath(wide.context());
        EXPECT_COVERAGE(wide, "..................####....####..................");
    }
}

TEST(CachedShapes, OfAClipApplyToOtherPaint)
{
    for (int time = 0; time < kTimes; ++time) {
        Canvas canvas(7, 6);
        addPolygon(canvas.context(), 2.5, 1);
        CGContextClip(canvas.context());
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 7, 4));
        EXPECT_COVERAGE(canvas,
            "......."
            "......."
            "..+#+.."
            "..+###+"
            "..+###+"
            ".......");
    }
}

TEST(CachedShapes, OfAShadowDependOnItsBlurAndNotOnItsOffset)
{
    for (int time = 0; time < kTimes; ++time) {
        const auto alphas = [](CGFloat blur, CGFloat offset) {
            Canvas canvas(30, 9);
            CGContextSetShadow(canvas.context(), CGSizeMake(offset, 0), blur);
            addPolygon(canvas.context(), 4, 2);
            CGContextFillPath(canvas.context());
            return std::array{canvas.alpha(int(6 + offset), 7), canvas.alpha(int(7 + offset), 8)};
        };
        EXPECT_EQ(alphas(2, 12), alphas(2, 14));
        EXPECT_NE(alphas(2, 12), alphas(3, 12));
        EXPECT_EQ(alphas(3, 12), alphas(3, 14));
    }
}

TEST(CachedShapes, AreDrawnWithoutAllocating)
{
    Canvas canvas(60, 40);
    const CGContextRef context = canvas.context();
    const auto path = adopt(CGPathCreateWithRoundedRect(CGRectMake(10.2, 9.6, 30, 13), 5, 5, nullptr));
    CGContextSetShadow(context, CGSizeMake(3, -2), 3.5);
    const auto draw = [&] {
        CGContextAddPath(context, path);
        CGContextDrawPath(context, kCGPathFillStroke);
    };
    for (int time = 0; time < 3; ++time)
        draw();
    const AllocationCounter allocations;
    draw();
    EXPECT_EQ(allocations.count(), 0U);
}
