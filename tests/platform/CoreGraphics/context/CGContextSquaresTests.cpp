// Paths of many squares, like those of QR codes, have a fast path: it must produce the exact area under any
// transform, and must not be used for other shapes.

#include "CoreGraphics/raster/RectangleOrder.h"
#include "support/Canvas.h"
#include "support/EachVectorUnit.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <utility>
#include <vector>

namespace {

/// Areas are summed in floats and rounded to bytes of coverage. The modes that only scale the backdrop round
/// once more, the others twice (the mode's result, interpolation).
constexpr double toleranceOf(CGBlendMode mode)
{
    return mode == kCGBlendModeNormal || mode == kCGBlendModeCopy ? 1 : 2;
}

struct Placement {
    double scaleX;
    double scaleY;
    double x;
    double y;
};

/// Squares of side 1, in rows from (0, 0), some missing.
std::vector<CGPoint> scatteredSquares(int dim, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<CGPoint> squares;
    for (int y = 0; y < dim; ++y) {
        for (int x = 0; x < dim; ++x) {
            if (random() % 2)
                squares.push_back(CGPointMake(x, y));
        }
    }
    return squares;
}

/// The covered area of each pixel, row 0 on top.
std::vector<double> exactAreas(const std::vector<CGPoint>& squares, const Placement& placement, int size)
{
    std::vector<double> areas(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (const CGPoint& square : squares) {
        const CGRect rect = CGRectStandardize(CGRectMake(square.x * placement.scaleX + placement.x,
            square.y * placement.scaleY + placement.y, placement.scaleX, placement.scaleY));
        const auto first = [](double from) { return std::max(0, static_cast<int>(std::floor(from))); };
        const auto last = [size](double to) { return std::min(size, static_cast<int>(std::ceil(to))); };
        for (int y = first(CGRectGetMinY(rect)); y < last(CGRectGetMaxY(rect)); ++y) {
            for (int x = first(CGRectGetMinX(rect)); x < last(CGRectGetMaxX(rect)); ++x) {
                const CGRect shared = CGRectIntersection(rect, CGRectMake(x, y, 1, 1));
                const std::ptrdiff_t pixel = std::ptrdiff_t(size - 1 - y) * size + x;
                areas[static_cast<std::size_t>(pixel)] += shared.size.width * shared.size.height;
            }
        }
    }
    return areas;
}

RetainPtr<CGPath> pathOf(const std::vector<CGPoint>& squares)
{
    auto path = adopt(CGPathCreateMutable());
    for (const CGPoint& square : squares)
        CGPathAddRect(path, nullptr, CGRectMake(square.x, square.y, 1, 1));
    return path;
}

constexpr Placement kPlacements[]{
    {4, 4, 3, 3},             // pixel-aligned
    {3.2, 3.2, 10, 10},       // as in a view at a subpixel position
    {4.39, -4.39, 5.3, 99.7}, // flipped
    {-2.5, 2.5, 90.25, 0.5},
    {0.37, 0.61, 20.1, 30.2}, // many squares in a pixel
    {7.77, 7.77, -33.3, -40}, // partly outside
    {1e-3, 1e-3, 50, 50},
};

} // namespace

TEST(CGContextSquares, CoverPixelsByTheirExactArea)
{
    constexpr int kSize = 110;
    const auto squares = scatteredSquares(21, 1);
    const auto path = pathOf(squares);
    for (const auto format : {Canvas::Format::RGBA, Canvas::Format::AlphaOnly}) {
        for (const CGBlendMode mode : {kCGBlendModeNormal, kCGBlendModeCopy, kCGBlendModeSourceOut}) {
            for (const Placement& placement : kPlacements) {
                Canvas canvas(kSize, kSize, format);
                CGContextSetBlendMode(canvas.context(), mode);
                CGContextTranslateCTM(canvas.context(), placement.x, placement.y);
                CGContextScaleCTM(canvas.context(), placement.scaleX, placement.scaleY);
                CGContextAddPath(canvas.context(), path);
                CGContextFillPath(canvas.context());
                const auto areas = exactAreas(squares, placement, kSize);
                for (int i = 0; i < kSize * kSize; ++i) {
                    ASSERT_NEAR(canvas.alpha(i % kSize, i / kSize), areas[static_cast<std::size_t>(i)] * 255,
                        toleranceOf(mode))
                        << "pixel " << i % kSize << ", " << i / kSize << " scale " << placement.scaleX
                        << " mode " << mode;
                }
            }
        }
    }
}

TEST(CGContextSquares, NeighboursLeaveNoSeams)
{
    std::vector<CGPoint> all;
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 30; ++x)
            all.push_back(CGPointMake(x, y));
    }
    Canvas canvas(100, 100);
    CGContextScaleCTM(canvas.context(), 100 / 30.0, 100 / 30.0);
    CGContextAddPath(canvas.context(), pathOf(all).get());
    CGContextFillPath(canvas.context());
    for (int i = 0; i < 100 * 100; ++i)
        ASSERT_EQ(canvas.alpha(i % 100, i / 100), 255) << i;
}

TEST(CGContextSquares, CoverPixelsByTheirExactAreaInAnyOrder)
{
    constexpr int kSize = 110;
    auto squares = scatteredSquares(21, 2);
    std::ranges::shuffle(squares, std::mt19937(3));
    const auto path = pathOf(squares);
    for (const Placement& placement : kPlacements) {
        Canvas canvas(kSize, kSize, Canvas::Format::AlphaOnly);
        CGContextTranslateCTM(canvas.context(), placement.x, placement.y);
        CGContextScaleCTM(canvas.context(), placement.scaleX, placement.scaleY);
        CGContextAddPath(canvas.context(), path);
        CGContextFillPath(canvas.context());
        const auto areas = exactAreas(squares, placement, kSize);
        for (int i = 0; i < kSize * kSize; ++i)
            ASSERT_NEAR(canvas.alpha(i % kSize, i / kSize), areas[static_cast<std::size_t>(i)] * 255, 1)
                << "pixel " << i % kSize << ", " << i / kSize << " scale " << placement.scaleX;
    }
}

TEST(CGContextSquares, InAnyOrderAreFoundToFormBandsDespiteRounding)
{
    // 3.3 times a whole number, plus 3.3, is not always the next multiple.
    const auto isInBands = [](std::vector<CGRect> rects) {
        std::ranges::shuffle(rects, std::mt19937(4));
        const auto path = adopt(CGPathCreateMutable());
        CGPathAddRects(path, nullptr, rects.data(), rects.size());
        std::vector<AreaRect> memory;
        const auto bands = rectanglesInScanOrder(*path, PixelSpace{100, 100}, true, memory);
        EXPECT_TRUE(!bands || std::ranges::is_sorted(*bands, {}, [](const AreaRect& rect) {
            return std::pair(rect.top, rect.left);
        }));
        return bands.has_value();
    };
    std::vector<CGRect> grid;
    for (int y = 0; y < 20; ++y) {
        for (int x = y % 2; x < 20; x += 2)
            grid.push_back(CGRectMake(3.3 * x, 3.3 * y, 3.3, 3.3));
    }
    EXPECT_TRUE(isInBands(grid));
    auto overlapping = grid;
    overlapping.push_back(CGRectMake(6, 3.3, 3.3, 3.3));
    EXPECT_FALSE(isInBands(overlapping));
    auto staggered = grid;
    staggered[7].origin.y += 0.001;
    EXPECT_FALSE(isInBands(staggered));
}

TEST(CGContextSquares, AreClipped)
{
    Canvas canvas(6, 2);
    CGContextClipToRect(canvas.context(), CGRectMake(1, 0, 3.5, 2));
    CGContextAddPath(canvas.context(),
        pathOf(
            {CGPointMake(0, 0), CGPointMake(1, 0), CGPointMake(4, 0), CGPointMake(1, 1), CGPointMake(3, 1)})
            .get());
    CGContextFillPath(canvas.context());
    EXPECT_COVERAGE(canvas,
        ".#.#.."
        ".#..+.");
}

TEST(CGContextSquares, ThatOverlapOrAreUnsortedAreStillFilledOnce)
{
    const std::vector<std::vector<CGPoint>> shapes{
        {CGPointMake(1, 0), CGPointMake(1.5, 0)},                   // overlapping in a row
        {CGPointMake(1, 0), CGPointMake(1, 0.5)},                   // overlapping rows
        {CGPointMake(2, 1), CGPointMake(1, 0), CGPointMake(2, 1)},  // duplicates
        {CGPointMake(3, 1), CGPointMake(0, 1), CGPointMake(3, 0)},  // from the right
        {CGPointMake(0, 1), CGPointMake(0, 0), CGPointMake(0, 1.2)} // back and forth
    };
    for (const auto& shape : shapes) {
        Canvas canvas(40, 30);
        CGContextSetGrayFillColor(canvas.context(), 0, 0.5);
        CGContextScaleCTM(canvas.context(), 10, 10);
        CGContextAddPath(canvas.context(), pathOf(shape).get());
        CGContextFillPath(canvas.context());
        for (int row = 0; row < 30; ++row) {
            for (int column = 0; column < 40; ++column) {
                const double x = (column + 0.5) / 10;
                const double y = (29.5 - row) / 10;
                const bool inside = std::any_of(shape.begin(), shape.end(),
                    [&](CGPoint at) { return x > at.x && x < at.x + 1 && y > at.y && y < at.y + 1; });
                ASSERT_EQ(canvas.alpha(column, row), inside ? 128 : 0) << column << ", " << row;
            }
        }
    }
}

TEST(CGContextSquares, EvenOddFillLeavesOverlapsUnpainted)
{
    Canvas canvas(4, 1);
    CGContextAddPath(
        canvas.context(), pathOf({CGPointMake(0, 0), CGPointMake(0, 0), CGPointMake(2, 0)}).get());
    CGContextEOFillPath(canvas.context());
    EXPECT_COVERAGE(canvas, "..#.");
}

TEST(CGContextSquares, RotatedSquaresAreFilled)
{
    Canvas canvas(20, 20);
    CGContextTranslateCTM(canvas.context(), 10, 2);
    CGContextRotateCTM(canvas.context(), 0.7853981633974483);
    CGContextScaleCTM(canvas.context(), 5, 5);
    CGContextAddPath(canvas.context(),
        pathOf({CGPointMake(0, 0), CGPointMake(1, 0), CGPointMake(0, 1), CGPointMake(1, 1)}).get());
    CGContextFillPath(canvas.context());
    EXPECT_EQ(canvas.alpha(10, 10), 255);
    EXPECT_EQ(canvas.alpha(1, 1), 0);
}

TEST(CGContextSquares, BlendRowsOfAnyBackgroundAsIfEachWereAlone)
{
    // Bands of more rows than are blended together, of widths that vectors do not divide, on pixels that are
    // equal in some rows, and different in others.
    constexpr int kWidth = 117;
    constexpr int kHeight = 24;
    std::vector<CGRect> rects;
    for (int i = 0; i < 24; ++i)
        rects.push_back(CGRectMake(1.3 + 4.8 * i, 2, 3.1, 20.5));
    for (const auto format : {Canvas::Format::RGBA, Canvas::Format::AlphaOnly}) {
        const auto draw = [&](bool eachRowAlone) {
            auto canvas = std::make_unique<Canvas>(kWidth, kHeight, format);
            std::mt19937 random(7);
            for (int row = 0; row < kHeight; ++row) {
                for (int column = 0; column < kWidth; ++column) {
                    const int alpha = row % 5 < 3 || random() % 40 > 0 ? 90 + column : 200;
                    canvas->setPixel(column, row, rgba(row % 7 < 4 ? 20 : 60, 10, 50, alpha));
                }
            }
            const CGContextRef context = canvas->context();
            CGContextSetRGBFillColor(context, 1, 0.5, 0.25, 0.7);
            for (int row = 0; row < (eachRowAlone ? kHeight : 1); ++row) {
                CGContextSaveGState(context);
                if (eachRowAlone)
                    CGContextClipToRect(context, CGRectMake(0, row, kWidth, 1));
                CGContextFillRects(context, rects.data(), rects.size());
                CGContextRestoreGState(context);
            }
            return canvas;
        };
        const auto alone = draw(true);
        onEachVectorUnit([&] {
            const auto together = draw(false);
            for (int row = 0; row < kHeight; ++row) {
                for (int column = 0; column < kWidth; ++column)
                    ASSERT_EQ(together->pixel(column, row), alone->pixel(column, row))
                        << column << " " << row;
            }
        });
    }
}
