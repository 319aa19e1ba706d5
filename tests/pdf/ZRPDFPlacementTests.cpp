// Where pages are painted, against the arithmetic written out on its own: for crop boxes, rectangles, fill
// modes, scale factors and flips in all combinations.

#include "PDFDrawing.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace {

/// A page, with a painted rectangle that is nowhere symmetric.
struct Page {
    const char* name;
    const char* entries;
    const char* inherited;
    CGRect integralCropBox;
};
const Page kPages[]{
    {"plain", "/MediaBox [0 0 40 60]", "", {{0, 0}, {40, 60}}},
    {"shifted", "/MediaBox [0 0 90 90] /CropBox [10 4 50 24]", "", {{10, 4}, {40, 20}}},
    {"fractional", "/MediaBox [0 0 90 90] /CropBox [0.4 0.6 24.3 40.2]", "", {{0, 0}, {25, 41}}},
    {"negative and fractional", "/MediaBox [-20 -20 90 90] /CropBox [30.5 25.25 -6.5 -3.75]", "",
        {{-7, -4}, {38, 30}}},
    {"inherited", "", "/MediaBox [0 0 200 200] /CropBox [5 3 21 35]", {{5, 3}, {16, 32}}},
    {"turned", "/MediaBox [0 0 30 20] /Rotate 90", "", {{0, 0}, {30, 20}}}, // drawn as if it were not
};

/// From a quarter to three quarters of the crop box's width, from a tenth to six tenths of its height.
CGRect paintedRect(const Page& page)
{
    const CGRect box = page.integralCropBox;
    return CGRectMake(box.origin.x + box.size.width * 0.25, box.origin.y + box.size.height * 0.1,
        box.size.width * 0.5, box.size.height * 0.5);
}

RetainPtr<ZRPDF> load(const Page& page)
{
    return loadPDF(
        pdfFile({{"1 0 0 rg " + describe(paintedRect(page)) + " re f", page.entries}}, page.inherited));
}

const CGRect kRects[]{
    {{0, 0}, {40, 30}}, {{10, 6}, {24, 48}}, {{4.3, 9.7}, {33.3, 21.6}}, {{-6, -5}, {50, 40}}};
constexpr int kSide = 64;

/// The interval from `start` to `end`, mapped by start' = offset + start * factor.
struct Span {
    double start;
    double end;
    Span mapped(double factor, double offset) const
    {
        return {offset + start * factor, offset + end * factor};
    }
    Span turned(double height) const { return {height - end, height - start}; }
    Span within(double from, double to) const { return {std::max(start, from), std::min(end, to)}; }
};

struct Area {
    Span x;
    Span y;
    /// In pixels; empty for spans that end before they start.
    CGRect rect(double scale) const
    {
        const double width = std::max(0.0, x.end - x.start), height = std::max(0.0, y.end - y.start);
        return CGRectMake(x.start * scale, y.start * scale, width * scale, height * scale);
    }
};

double scaleOf(const Page& page, CGSize room, int mode)
{
    const double x = room.width / page.integralCropBox.size.width;
    const double y = room.height / page.integralCropBox.size.height;
    return mode == 0 ? (x < y ? x : y) : mode == 1 ? (x < y ? y : x) : 1.0;
}

/// The painted area from the corner of a rectangle of that size.
Area placed(const Page& page, CGSize room, int mode)
{
    const double s = scaleOf(page, room, mode);
    const CGRect painted = paintedRect(page);
    const Span x{painted.origin.x, painted.origin.x + painted.size.width};
    const Span y{painted.origin.y, painted.origin.y + painted.size.height};
    return {x.mapped(s, (room.width - s * page.integralCropBox.size.width) / 2),
        y.mapped(s, (room.height - s * page.integralCropBox.size.height) / 2)};
}

Area plainArea(const Page& page, CGRect rect, int mode, bool flipped)
{
    Area area = placed(page, rect.size, mode);
    if (flipped)
        area.y = area.y.turned(rect.size.height);
    return {area.x.mapped(1, rect.origin.x), area.y.mapped(1, rect.origin.y)};
}

/// Of the method with a scale factor k: a mask of whole pixels, stretched over the rectangle and filled where
/// the rectangle times k lies over it.
Area scaledTintArea(const Page& page, CGRect rect, int mode, bool flipped, double k)
{
    const double columns = std::floor(rect.size.width * k), rows = std::floor(rect.size.height * k);
    const Area area = placed(page, rect.size, mode);
    const Span x = area.x.mapped(k, 0);
    const Span y = flipped ? area.y.mapped(k, 0).turned(rect.size.height * k) : area.y.mapped(k, 0);
    const CGRect filled =
        CGRectMake(rect.origin.x * k, rect.origin.y * k, rect.size.width * k, rect.size.height * k);
    return {x.within(0, columns)
                .mapped(rect.size.width / columns, rect.origin.x)
                .within(CGRectGetMinX(filled), CGRectGetMaxX(filled)),
        y.within(0, rows)
            .mapped(rect.size.height / rows, rect.origin.y)
            .within(CGRectGetMinY(filled), CGRectGetMaxY(filled))};
}

/// Of the method without one, in a context of that scale: always fitted into a mask of rounded size.
Area fittedTintArea(const Page& page, CGRect rect, double scale)
{
    const double columns = std::round(rect.size.width * scale), rows = std::round(rect.size.height * scale);
    const Area area = placed(page, CGSizeMake(columns, rows), 0);
    return {area.x.within(0, columns).mapped(rect.size.width / columns, rect.origin.x),
        area.y.within(0, rows).mapped(rect.size.height / rows, rect.origin.y)};
}

/// A mask's soft edge pixel is resampled: it reaches half a pixel further than its own.
constexpr double kTintTolerance = 2;

/// Whether the edges of what is more than half covered lie within a pixel of the area's.
testing::AssertionResult isWithinAPixel(const Canvas& canvas, CGRect area)
{
    const CGRect visible = CGRectIntersection(area, CGRectMake(0, 0, canvas.width(), canvas.height()));
    if (CGRectIsNull(visible) || visible.size.width < 2 || visible.size.height < 2)
        return testing::AssertionSuccess(); // too small to be half covered anywhere
    double edges[4]{double(canvas.width()), double(canvas.height()), 0, 0};
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            if (alphaAt(canvas, x, y) < 128)
                continue;
            edges[0] = std::min(edges[0], double(x));
            edges[1] = std::min(edges[1], double(y));
            edges[2] = std::max(edges[2], double(x + 1));
            edges[3] = std::max(edges[3], double(y + 1));
        }
    }
    const double expected[4]{
        CGRectGetMinX(visible), CGRectGetMinY(visible), CGRectGetMaxX(visible), CGRectGetMaxY(visible)};
    for (int i = 0; i < 4; ++i) {
        if (std::abs(edges[i] - expected[i]) > 1)
            return testing::AssertionFailure()
                << "edge " << i << " is at " << edges[i] << ", not at " << expected[i];
    }
    return testing::AssertionSuccess();
}

/// Calls `test` for every combination, with a canvas of kSide points at `scale`, and its name.
template <class Test> void forEachCase(Test test)
{
    for (const Page& page : kPages) {
        const auto pdf = load(page);
        ASSERT_TRUE(pdf) << page.name;
        for (const CGRect& rect : kRects) {
            for (const int scale : {1, 2, 3}) {
                SCOPED_TRACE(std::string(page.name) + " page in " + describe(rect) + " at scale "
                    + std::to_string(scale));
                test(page, *pdf, rect, scale);
                if (testing::Test::HasFailure())
                    return;
            }
        }
    }
}

} // namespace

TEST(ZRPDFPlacement, PlainPagesWithoutAScaleFactor)
{
    forEachCase([](const Page& page, const ZRPDF& pdf, CGRect rect, int scale) {
        for (const int mode : {0, 1, 2}) {
            SCOPED_TRACE("fill mode " + std::to_string(mode));
            const Rendering r = transparentRendering(kSide, kSide, scale);
            pdf.drawPageNumber(1, rect, nullptr, nullptr, r.context(), mode);
            EXPECT_TRUE(covers(r.canvas(), plainArea(page, rect, mode, false).rect(scale), 1));
        }
    });
}

TEST(ZRPDFPlacement, TintedPagesWithoutAScaleFactor)
{
    const auto color = makeColor(0, 0, 1, 1);
    forEachCase([&](const Page& page, const ZRPDF& pdf, CGRect rect, int scale) {
        const Rendering r = transparentRendering(kSide, kSide, scale);
        pdf.drawPageNumber(1, rect, color, nullptr, r.context(), ZRPDFFillModeFill);
        const CGRect area = fittedTintArea(page, rect, scale).rect(scale);
        EXPECT_TRUE(covers(r.canvas(), area, kTintTolerance));
        EXPECT_TRUE(isWithinAPixel(r.canvas(), area));
    });
}

TEST(ZRPDFPlacement, PlainPagesWithAScaleFactor)
{
    forEachCase([](const Page& page, const ZRPDF& pdf, CGRect rect, int scale) {
        for (const int mode : {0, 1, 2}) {
            for (const bool flipped : {false, true}) {
                SCOPED_TRACE((flipped ? "flipped, fill mode " : "fill mode ") + std::to_string(mode));
                const Rendering r = transparentRendering(kSide, kSide, scale);
                pdf.drawPageNumber(1, rect, nullptr, r.context(), scale, mode, flipped);
                EXPECT_TRUE(covers(r.canvas(), plainArea(page, rect, mode, flipped).rect(scale), 1));
            }
        }
    });
}

TEST(ZRPDFPlacement, TintedPagesWithAScaleFactor)
{
    const auto color = makeColor(0, 0, 1, 1);
    forEachCase([&](const Page& page, const ZRPDF& pdf, CGRect rect, int scale) {
        for (const int mode : {0, 1, 2}) {
            for (const bool flipped : {false, true}) {
                SCOPED_TRACE((flipped ? "flipped, fill mode " : "fill mode ") + std::to_string(mode));
                const Rendering r = transparentRendering(kSide, kSide, scale);
                pdf.drawPageNumber(1, rect, color, r.context(), scale, mode, flipped);
                const CGRect area = scaledTintArea(page, rect, mode, flipped, scale).rect(scale);
                EXPECT_TRUE(covers(r.canvas(), area, kTintTolerance));
                EXPECT_TRUE(isWithinAPixel(r.canvas(), area));
            }
        }
    });
}

TEST(ZRPDFPlacement, TheTintsAlphaIsThePlainPagesToTheByte)
{
    // Curves, strokes and overlapping transparency: every alpha from 0 to 255.
    const auto pdf =
        loadPDF(pdfFile({{"/half gs 1 0 0 rg 3 3 m 3 30 40 -5 29 29 c f 0 0 1 RG 1.7 w 2 28 m 30 2 l S "
                          "0 g 12 20 9.3 7.7 re f* 0.5 0 0.2 rg 20 1 m 31 4 l 25 13 l f",
            "/MediaBox [0 0 32 32] /Resources << /ExtGState << /half << /ca 0.6 /CA 0.3 >> >> >>"}}));
    const auto color = makeColor(0.2, 0.4, 0.6, 1);
    for (const int scale : {1, 2, 3}) {
        for (const double side : {16.0, 21.0, 48.0}) {
            SCOPED_TRACE(describe(side) + " points at scale " + std::to_string(scale));
            const CGRect rect = CGRectMake(0, 0, side, side);
            const auto drawn = [&](auto draw) {
                Rendering r = transparentRendering(48, 48, scale);
                draw(r.context());
                return r;
            };
            const auto alphas = [](const Rendering& r) {
                std::vector<int> result;
                for (int y = 0; y < r.canvas().height(); ++y) {
                    for (int x = 0; x < r.canvas().width(); ++x)
                        result.push_back(r.canvas().alpha(x, y));
                }
                return result;
            };
            const auto plain =
                alphas(drawn([&](auto* c) { pdf->drawPageNumber(1, rect, nullptr, nullptr, c, 0); }));
            EXPECT_GT(std::set<int>(plain.begin(), plain.end()).size(), 20U);
            EXPECT_EQ(
                alphas(drawn([&](auto* c) { pdf->drawPageNumber(1, rect, color, nullptr, c, 0); })), plain);
            EXPECT_EQ(
                alphas(drawn([&](auto* c) { pdf->drawPageNumber(1, rect, color, c, scale, 0, false); })),
                plain);
            const auto flipped =
                alphas(drawn([&](auto* c) { pdf->drawPageNumber(1, rect, nullptr, c, scale, 0, true); }));
            EXPECT_EQ(alphas(drawn([&](auto* c) { pdf->drawPageNumber(1, rect, color, c, scale, 0, true); })),
                flipped);
        }
    }
}
