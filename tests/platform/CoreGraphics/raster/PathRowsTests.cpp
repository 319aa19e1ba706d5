// Coverage of filled paths, compared with the exact one.

#include "ExactCoverage.h"

#include <CoreGraphics/CoreGraphics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

namespace {

constexpr int width = 40;
constexpr int height = 30;

/// Of a pixel, from the left in rows of the context.
std::size_t indexOf(int x, int row)
{
    return std::size_t(row) * width + std::size_t(x);
}

RetainPtr<CGContext> makeContext()
{
    return adopt(CGBitmapContextCreate(nullptr, width, height, 8, width, nullptr, kCGImageAlphaOnly));
}

void addPolygons(CGContextRef context, const std::vector<Polygon>& polygons)
{
    for (const Polygon& polygon : polygons) {
        CGContextAddLines(context, polygon.data(), polygon.size());
        CGContextClosePath(context);
    }
}

void fill(CGContextRef context, bool isEvenOdd)
{
    if (isEvenOdd)
        CGContextEOFillPath(context);
    else
        CGContextFillPath(context);
}

const unsigned char* bytesOf(CGContextRef context)
{
    return static_cast<const unsigned char*>(CGBitmapContextGetData(context));
}

/// The greatest distance of a context's pixels from the coverage by polygons, in steps of 255.
double worstError(CGContextRef context, const std::vector<Polygon>& polygons, bool isEvenOdd)
{
    const ExactCoverage coverage(polygons, isEvenOdd);
    double worst = 0;
    for (int y = 0; y < height; ++y) {
        const unsigned char* row = bytesOf(context) + indexOf(0, height - 1 - y);
        for (const double expected : coverage.row(y, width))
            worst = std::max(worst, std::abs(*row++ - expected));
    }
    return worst;
}

double worstErrorOfFill(const std::vector<Polygon>& polygons, bool isEvenOdd)
{
    const auto context = makeContext();
    addPolygons(context, polygons);
    fill(context, isEvenOdd);
    return worstError(context, polygons, isEvenOdd);
}

/// Points within the context and around it.
double anywhere(std::mt19937& random, int side)
{
    return double(random() % unsigned(100 * (side + 20))) / 100 - 10;
}

/// Up to three polygons, of which `shape(points, point)` changes each new point.
template <class Shape> double worstErrorOfRandomPolygons(Shape shape)
{
    std::mt19937 random(1);
    double worst = 0;
    for (int run = 0; run < 100; ++run) {
        std::vector<Polygon> polygons(1 + random() % 3);
        for (Polygon& polygon : polygons) {
            for (auto count = 3 + random() % 9; count > 0; --count) {
                const CGPoint point{anywhere(random, width), anywhere(random, height)};
                polygon.push_back(shape(polygon, point));
            }
        }
        worst = std::max(worst, worstErrorOfFill(polygons, random() % 2 == 0));
    }
    return worst;
}

/// Half a step of rounding, and a little for crossings that are too close to each other to be told apart.
constexpr double exact = 0.6;

TEST(PathRowsTest, PolygonsThatCrossThemselvesAreExact)
{
    EXPECT_LE(worstErrorOfRandomPolygons([](const Polygon&, CGPoint point) { return point; }), exact);
}

TEST(PathRowsTest, PolygonsWithCornersOnPixelsAreExact)
{
    EXPECT_LE(worstErrorOfRandomPolygons([](const Polygon&, CGPoint point) {
        return CGPoint{std::round(point.x), std::round(point.y)};
    }),
        exact);
}

TEST(PathRowsTest, PolygonsWithLevelEdgesAreExact)
{
    EXPECT_LE(worstErrorOfRandomPolygons([](const Polygon& polygon, CGPoint point) {
        return polygon.size() % 2 == 1 ? CGPoint{point.x, polygon.back().y} : point;
    }),
        exact);
}

TEST(PathRowsTest, PolygonsWithUprightEdgesAreExact)
{
    EXPECT_LE(worstErrorOfRandomPolygons([](const Polygon& polygon, CGPoint point) {
        return polygon.size() % 2 == 1 ? CGPoint{polygon.back().x, point.y} : point;
    }),
        exact);
}

TEST(PathRowsTest, PolygonsWithNearlyLevelEdgesAreExact)
{
    // Within two rows and as wide as the context: their crossings are closer to each other than in others.
    EXPECT_LE(worstErrorOfRandomPolygons([](const Polygon&, CGPoint point) {
        return CGPoint{point.x, 10 + point.y / 20};
    }),
        exact);
}

TEST(PathRowsTest, ConvexPolygonsAreExact)
{
    std::mt19937 random(9);
    for (int run = 0; run < 60; ++run) {
        // Corners on an ellipse, beyond the sides or in the middle of the context, in either direction.
        std::vector<double> angles(3 + random() % 7);
        for (double& angle : angles)
            angle = 2 * std::numbers::pi * double(random() % 1000) / 1000;
        std::ranges::sort(angles);
        const CGPoint center{run % 4 == 1 ? 1.7
                : run % 4 == 2            ? 38.9
                                          : 20.3,
            run % 3 == 0       ? 14.6
                : run % 3 == 1 ? -3.2
                               : 31.7};
        Polygon polygon;
        for (const double angle : angles) {
            const double turn = run % 2 == 0 ? angle : -angle;
            CGPoint corner{center.x + 19 * std::cos(turn), center.y + 13 * std::sin(turn)};
            if (run % 5 == 0) // level and upright edges, and corners at the same place
                corner = {4 * std::round(corner.x / 4) + 0.5, 4 * std::round(corner.y / 4)};
            polygon.push_back(corner);
        }
        EXPECT_LE(worstErrorOfFill({polygon}, false), exact) << run;
    }
}

TEST(PathRowsTest, LinesThatTurnToOneSideTwiceAroundAreExact)
{
    for (const bool isEvenOdd : {false, true}) {
        Polygon star;
        for (int i = 0; i < 5; ++i) {
            const double angle = 4 * std::numbers::pi * i / 5;
            star.push_back({20.3 + 13 * std::cos(angle), 14.6 + 13 * std::sin(angle)});
        }
        EXPECT_LE(worstErrorOfFill({star}, isEvenOdd), exact);
        const Polygon thereAndBack{{4, 5}, {30.5, 22.2}, {4, 5}, {30.5, 22.2}, {7.1, 26}};
        EXPECT_LE(worstErrorOfFill({thereAndBack}, isEvenOdd), exact);
    }
}

TEST(PathRowsTest, ManySmallPolygonsAreExact)
{
    std::mt19937 random(12);
    for (int run = 0; run < 24; ++run) {
        std::vector<Polygon> polygons;
        // Around or within the others, with level edges in the middle of rows.
        if (run % 3 == 1)
            polygons.push_back({{2.3, 3.4}, {37.6, 3.4}, {37.6, 20.7}, {2.3, 20.7}});
        if (run % 3 == 2)
            polygons.push_back({{12.3, 25.6}, {60, 25.6}, {60, 9.3}, {8.2, 9.3}});
        while (polygons.size() < 40) {
            const CGPoint corner{anywhere(random, width), anywhere(random, height)};
            Polygon polygon;
            for (int i = 0; i < 3; ++i)
                polygon.push_back(
                    {corner.x + double(random() % 400) / 100, corner.y + double(random() % 300) / 100});
            polygons.push_back(polygon);
        }
        EXPECT_LE(worstErrorOfFill(polygons, run % 2 == 0), exact) << run;
    }
}

TEST(PathRowsTest, LongRowsOfACrossingHaveTheCoverageOfTheirParts)
{
    // Two triangles that meet at a point within a row, as one path whose lines cross there and as two.
    constexpr std::size_t kWidth = 240;
    constexpr std::size_t kHeight = 21;
    const auto makeLong = [] {
        return adopt(CGBitmapContextCreate(nullptr, kWidth, kHeight, 8, kWidth, nullptr, kCGImageAlphaOnly));
    };
    const auto crossing = makeLong();
    addPolygons(crossing, {{{10.3, 0.5}, {210.3, 20.5}, {210.3, 0.5}, {10.3, 20.5}}});
    CGContextFillPath(crossing);
    const auto parts = makeLong();
    addPolygons(parts, {{{10.3, 0.5}, {110.3, 10.5}, {10.3, 20.5}}});
    CGContextFillPath(parts);
    addPolygons(parts, {{{210.3, 0.5}, {110.3, 10.5}, {210.3, 20.5}}});
    CGContextFillPath(parts);
    for (std::size_t i = 0; i < kWidth * kHeight; ++i)
        ASSERT_NEAR(bytesOf(crossing)[i], bytesOf(parts)[i], 1) << i % kWidth << " " << i / kWidth;
    const auto* middle = bytesOf(crossing) + 10 * kWidth;
    EXPECT_EQ(middle[9], 0);
    EXPECT_EQ(middle[12], 255);
    // In the middle of these pixels the triangles are 0.56 and 0.64 pixels high.
    EXPECT_EQ(middle[107], 143);
    EXPECT_EQ(middle[113], 163);
    EXPECT_EQ(middle[211], 0);
}

TEST(PathRowsTest, ContoursThatShareAPixelCountOnce)
{
    // Two squares that overlap within one pixel, of which each covers a half.
    const auto context = makeContext();
    CGContextAddRect(context, CGRectMake(4, 4, 0.75, 1));
    CGContextAddRect(context, CGRectMake(4.25, 4, 0.75, 1));
    CGContextAddRect(context, CGRectMake(8, 4, 0.5, 1));
    CGContextAddRect(context, CGRectMake(8, 4, 0.5, 1));
    CGContextFillPath(context);
    const auto* row = bytesOf(context) + indexOf(0, height - 5);
    EXPECT_EQ(row[4], 255);
    EXPECT_EQ(row[8], 128);

    const auto evenOdd = makeContext();
    CGContextAddRect(evenOdd, CGRectMake(4, 4, 0.75, 1));
    CGContextAddRect(evenOdd, CGRectMake(4.25, 4, 0.75, 1));
    CGContextEOFillPath(evenOdd);
    EXPECT_EQ(bytesOf(evenOdd)[indexOf(4, height - 5)], 128);
}

Polygon circle(CGPoint center, double radius, int corners)
{
    Polygon result;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        result.push_back({center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)});
    }
    return result;
}

TEST(PathRowsTest, CurvesDifferByLittleFromManyLines)
{
    constexpr double mostOfCurves = 6;
    for (const double radius : {1.0, 3.3, 7.7, 14.2}) {
        for (const double offset : {0.0, 0.31}) {
            const CGPoint center{20 + offset, 15 - offset};
            const auto context = makeContext();
            CGContextFillEllipseInRect(
                context, CGRectMake(center.x - radius, center.y - radius, 2 * radius, 2 * radius));
            EXPECT_LE(worstError(context, {circle(center, radius, 400)}, false), mostOfCurves) << radius;
        }
    }
}

TEST(PathRowsTest, CurvesKeepTheirArea)
{
    // Lines between points of these circles would lose 0.12 to 0.5 % of it.
    constexpr double kRest = 0.001; // at the ends of each quarter, which are on the circle
    for (const double radius : {3.3, 7.7, 14.2}) {
        const auto context = makeContext();
        CGContextFillEllipseInRect(context, CGRectMake(20 - radius, 15 - radius, 2 * radius, 2 * radius));
        const double area =
            std::accumulate(bytesOf(context), bytesOf(context) + indexOf(0, height), 0.0) / 255;
        EXPECT_NEAR(area / (std::numbers::pi * radius * radius), 1, kRest) << radius;
    }
}

/// Passes a glyph's outline to a context, and collects it as polygons with many corners.
class GlyphOutline {
public:
    GlyphOutline(FT_Outline& outline, CGContextRef context)
        : _context(context)
    {
        const FT_Outline_Funcs functions{&move, &line, &quadratic, &cubic, 0, 0};
        FT_Outline_Decompose(&outline, &functions, this);
    }
    const std::vector<Polygon>& polygons() const { return _polygons; }

private:
    /// From units of 1/64 pixel, and into the context.
    static CGPoint placed(const FT_Vector* point)
    {
        return {double(point->x) / 64 + 6.25, double(point->y) / 64 + 8.5};
    }
    static int move(const FT_Vector* to, void* outline)
    {
        auto* self = static_cast<GlyphOutline*>(outline);
        self->_polygons.push_back({placed(to)});
        CGContextMoveToPoint(self->_context, placed(to).x, placed(to).y);
        return 0;
    }
    static int line(const FT_Vector* to, void* outline)
    {
        auto* self = static_cast<GlyphOutline*>(outline);
        self->_polygons.back().push_back(placed(to));
        CGContextAddLineToPoint(self->_context, placed(to).x, placed(to).y);
        return 0;
    }
    static int quadratic(const FT_Vector* control, const FT_Vector* to, void* outline)
    {
        auto* self = static_cast<GlyphOutline*>(outline);
        const CGPoint c = placed(control);
        const CGPoint end = placed(to);
        const CGPoint start = self->_polygons.back().back();
        constexpr int kParts = 12;
        for (int i = 1; i <= kParts; ++i) {
            const double t = double(i) / kParts;
            const double s = 1 - t;
            self->_polygons.back().push_back({s * s * start.x + 2 * s * t * c.x + t * t * end.x,
                s * s * start.y + 2 * s * t * c.y + t * t * end.y});
        }
        CGContextAddQuadCurveToPoint(self->_context, c.x, c.y, end.x, end.y);
        return 0;
    }
    static int cubic(const FT_Vector* /*control1*/, const FT_Vector* /*control2*/, const FT_Vector* /*to*/,
        void* /*outline*/)
    {
        ADD_FAILURE() << "TrueType fonts have no cubic curves";
        return 1;
    }

    CGContextRef _context;
    std::vector<Polygon> _polygons;
};

TEST(PathRowsTest, GlyphsOfTheTestsFontsAreNearlyExact)
{
    constexpr double kMostOfCurves = 6;
    constexpr int kGlyphs = 8; // of each font
    FT_Library library = nullptr;
    ASSERT_EQ(FT_Init_FreeType(&library), 0);
    std::size_t fontCount = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator("/usr/share/fonts")) {
        const std::string name = file.path().filename();
        if (name != "LiberationSans-Regular.ttf" && name != "DejaVuSans.ttf"
            && name != "DroidSansFallbackFull.ttf")
            continue;
        ++fontCount;
        FT_Face face = nullptr;
        ASSERT_EQ(FT_New_Face(library, file.path().c_str(), 0, &face), 0);
        FT_Set_Pixel_Sizes(face, 0, 20);
        for (int i = 1; i <= kGlyphs; ++i) {
            const auto glyph = FT_UInt(face->num_glyphs * i / (kGlyphs + 1));
            ASSERT_EQ(FT_Load_Glyph(face, glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP), 0);
            for (const bool isEvenOdd : {false, true}) {
                const auto context = makeContext();
                const GlyphOutline outline(face->glyph->outline, context.get());
                fill(context, isEvenOdd);
                EXPECT_LE(worstError(context, outline.polygons(), isEvenOdd), kMostOfCurves)
                    << name << ", glyph " << glyph << (isEvenOdd ? ", even-odd" : "");
            }
        }
        FT_Done_Face(face);
    }
    EXPECT_EQ(fontCount, 3U) << "./korvid test installs them";
    FT_Done_FreeType(library);
}

/// A shape of curves and lines that cross, larger than the context.
void addTangle(CGContextRef context)
{
    std::mt19937 random(4);
    const auto point = [&] { return CGPoint{anywhere(random, width), anywhere(random, height)}; };
    const CGPoint start = point();
    CGContextMoveToPoint(context, start.x, start.y);
    for (int i = 0; i < 6; ++i) {
        const CGPoint a = point();
        const CGPoint b = point();
        const CGPoint c = point();
        CGContextAddCurveToPoint(context, a.x + 0.003, a.y, b.x, b.y + 0.007, c.x, c.y);
        CGContextAddQuadCurveToPoint(context, b.x, c.y, a.x, a.y);
    }
}

TEST(PathRowsTest, PartsThatAreClippedOutDoNotChangeTheRest)
{
    const auto whole = makeContext();
    addTangle(whole);
    CGContextFillPath(whole);

    const auto parts = makeContext();
    for (int x = 0; x < width; x += 8) {
        for (int y = 0; y < height; y += 6) {
            CGContextSaveGState(parts);
            CGContextClipToRect(parts, CGRectMake(x, y, 8, 6));
            addTangle(parts);
            CGContextFillPath(parts);
            CGContextRestoreGState(parts);
        }
    }
    EXPECT_TRUE(std::equal(bytesOf(whole), bytesOf(whole) + indexOf(0, height), bytesOf(parts)));
}

TEST(PathRowsTest, DistantPointsKeepTheCourseOfTheirLines)
{
    // The line from the lower left to the upper right corner, far beyond both.
    const auto context = makeContext();
    CGContextMoveToPoint(context, -4e9, -3e9);
    CGContextAddLineToPoint(context, 4e9, 3e9);
    CGContextAddLineToPoint(context, 4e9, -3e9);
    CGContextFillPath(context);
    EXPECT_LE(worstError(context, {{{0, 0}, {width, height}, {width, 0}}}, false), exact);
}

TEST(PathRowsTest, ManyCrossingLinesAreFilledNearlyExactly)
{
    // From above the context to below it: more lines in each row than are cut at their crossings.
    std::mt19937 random(6);
    Polygon polygon;
    for (int i = 0; i < 140; ++i)
        polygon.push_back({anywhere(random, width), i % 2 == 0 ? -5.0 : height + 5.0});
    constexpr double nearly = 2;
    EXPECT_LE(worstErrorOfFill({polygon}, true), nearly);
}

} // namespace
