// Coverage of convex shapes and of rings, compared with the exact one: in bitmaps whose rows are reported
// together, as spans of blocks of 8 pixels and of larger ones, and in several bands.

#include "ExactCoverage.h"
#include "support/Canvas.h"

#include <CoreGraphics/CoreGraphics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

/// Half a step of rounding, and a little for sums of rounded areas.
constexpr double kExact = 0.6;

struct BitmapSize {
    int width;
    int height;
};

/// Narrow, of 8-pixel blocks, of 32-pixel blocks, and each of them in several bands.
constexpr BitmapSize kSizes[]{
    {7, 5}, {60, 40}, {96, 31}, {97, 31}, {60, 420}, {403, 37}, {310, 150}, {1203, 19}, {1203, 61}};

class AlphaBitmap {
public:
    explicit AlphaBitmap(BitmapSize size)
        : _size(size)
        , _context(adopt(CGBitmapContextCreate(nullptr, std::size_t(size.width), std::size_t(size.height), 8,
              std::size_t(size.width), nullptr, kCGImageAlphaOnly)))
    {
    }

    CGContextRef context() const { return _context.get(); }
    void add(const Polygon& polygon) const
    {
        CGContextAddLines(context(), polygon.data(), polygon.size());
        CGContextClosePath(context());
    }
    const unsigned char* row(int y) const
    {
        return static_cast<const unsigned char*>(CGBitmapContextGetData(context()))
            + std::ptrdiff_t(_size.height - 1 - y) * _size.width;
    }
    double worstError(const std::vector<Polygon>& polygons) const
    {
        const ExactCoverage coverage(polygons, true);
        double worst = 0;
        for (int y = 0; y < _size.height; ++y) {
            const unsigned char* bytes = row(y);
            for (const double expected : coverage.row(y, _size.width))
                worst = std::max(worst, std::abs(*bytes++ - expected));
        }
        return worst;
    }

private:
    BitmapSize _size;
    RetainPtr<CGContext> _context;
};

/// A regular polygon within an ellipse that has a size, relative to that of a bitmap.
Polygon regularPolygon(BitmapSize size, int count, double scale, CGPoint offset = {0, 0})
{
    Polygon polygon;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi * (i + 0.3) / count;
        polygon.push_back({size.width * (0.5 + offset.x + scale * 0.5 * std::cos(angle)),
            size.height * (0.5 + offset.y + scale * 0.5 * std::sin(angle))});
    }
    return polygon;
}

double worstErrorOfFill(BitmapSize size, const Polygon& polygon)
{
    const AlphaBitmap bitmap(size);
    bitmap.add(polygon);
    CGContextFillPath(bitmap.context());
    return bitmap.worstError({polygon});
}

} // namespace

TEST(SimpleRowsTest, PolygonsWithinTheBitmapAreExact)
{
    for (const BitmapSize size : kSizes) {
        for (const int count : {3, 5, 40})
            EXPECT_LE(worstErrorOfFill(size, regularPolygon(size, count, 0.93)), kExact)
                << size.width << " x " << size.height << ", " << count;
    }
}

TEST(SimpleRowsTest, PolygonsBeyondEachSideAreExact)
{
    for (const BitmapSize size : kSizes) {
        for (const CGPoint offset :
            {CGPoint{0.4, 0}, CGPoint{-0.4, 0.1}, CGPoint{0.1, 0.45}, CGPoint{-0.3, -0.35}, CGPoint{0, 0}})
            EXPECT_LE(worstErrorOfFill(size, regularPolygon(size, 7, 1.3, offset)), kExact)
                << size.width << " x " << size.height << ", " << offset.x << " " << offset.y;
    }
}

TEST(SimpleRowsTest, UprightSidesAreExact)
{
    // Their rows are equal but for the first and the last ones, which are covered in part, or are not.
    for (const BitmapSize size : kSizes) {
        for (const double top : {1.0, 1.25}) {
            for (const double bottom : {1.0, 1.5}) {
                const double width = size.width - 0.75;
                const double middle = size.height - bottom;
                // Five corners, as a rectangle would be drawn in another way.
                const Polygon house{{0.5, top}, {width, top}, {width, middle - 0.5}, {width / 2, middle},
                    {0.5, middle - 0.5}};
                EXPECT_LE(worstErrorOfFill(size, house), kExact)
                    << size.width << " x " << size.height << ", " << top << " " << bottom;
            }
        }
    }
}

TEST(SimpleRowsTest, LevelAndUprightSidesBeyondTheBitmapAreExact)
{
    for (const BitmapSize size : kSizes) {
        const double right = size.width + 20;
        const double bottom = size.height + 10;
        const Polygon cornerCut{{-5, -3}, {right, -3}, {right, bottom}, {3.3, bottom}, {-5, 2.7}};
        EXPECT_LE(worstErrorOfFill(size, cornerCut), kExact) << size.width << " x " << size.height;
    }
}

TEST(SimpleRowsTest, RingsAreExact)
{
    // A hexagon's outline lies between two others: its corners are at the width / sqrt(3) from them.
    constexpr double kWidth = 3;
    for (const int side : {30, 90, 130, 700}) {
        const BitmapSize size{side, side};
        for (const double offset : {0.0, 0.3}) {
            const auto hexagon = [&](double further) {
                return regularPolygon(size, 6, 0.8 + 2 * further / side, {offset, 0});
            };
            const AlphaBitmap bitmap(size);
            bitmap.add(hexagon(0));
            CGContextSetLineWidth(bitmap.context(), kWidth);
            CGContextStrokePath(bitmap.context());
            const double further = kWidth / std::numbers::sqrt3;
            EXPECT_LE(bitmap.worstError({hexagon(further), hexagon(-further)}), kExact)
                << side << ", " << offset;
        }
    }
}

TEST(SimpleRowsTest, RingsAtTheRightLimitAreCoveredUpToIt)
{
    // The last block of 8 pixels is whole, and the clip covers half of its last pixel.
    Canvas canvas(104, 40);
    CGContextClipToRect(canvas.context(), CGRectMake(0, 0, 103.5, 40));
    CGContextSetLineWidth(canvas.context(), 4);
    const auto path = adopt(CGPathCreateWithRoundedRect(CGRectMake(2, 2, 100, 36), 6, 6, nullptr));
    CGContextAddPath(canvas.context(), path);
    CGContextStrokePath(canvas.context());
    EXPECT_EQ(canvas.alpha(99, 20), 0);
    EXPECT_EQ(canvas.alpha(100, 20), 255);
    EXPECT_EQ(canvas.alpha(102, 20), 255);
    EXPECT_EQ(canvas.alpha(103, 20), 128);
}

TEST(SimpleRowsTest, BlendsAllWidthsOfNarrowShapesWithinTheirPixels)
{
    // Of a solid background the pixels beside the shape stay as they are.
    for (int width = 1; width <= 20; ++width) {
        Canvas canvas(24, 4);
        CGContextSetRGBFillColor(canvas.context(), 0, 0, 1, 1);
        CGContextFillRect(canvas.context(), CGRectMake(0, 0, 24, 4));
        CGContextSetRGBFillColor(canvas.context(), 1, 0, 0, 1);
        const CGPoint house[]{{2, 1}, {2.0 + width, 1}, {2.0 + width, 2.5}, {2 + width / 2.0, 3}, {2, 2.5}};
        CGContextAddLines(canvas.context(), house, std::size(house));
        CGContextFillPath(canvas.context());
        for (int x = 0; x < 24; ++x) {
            const bool isInside = x >= 2 && x < 2 + width;
            EXPECT_EQ(canvas.pixel(x, 2), isInside ? kRed : kBlue) << width << ", " << x;
        }
    }
}
