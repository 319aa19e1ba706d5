#include "CoreGraphics/raster/RectangleRaster.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace {

/// The bytes of coverage within limits.
class CoverageBytes final : public CoverageRows {
public:
    explicit CoverageBytes(const PixelRect& limits)
        : all(std::size_t(limits.pixelCount()))
        , _limits(limits)
    {
    }
    void rows(
        int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) override
    {
        for (int y = top; y < bottom; ++y)
            for (const CoverageSpan& span : spans)
                for (int x = span.begin; x < span.end; ++x)
                    all.at(std::size_t(y - _limits.top) * std::size_t(_limits.width()) + std::size_t(x)) =
                        span.isFull ? 255 : coverage[x];
    }

    std::vector<int> all;

private:
    PixelRect _limits;
};

std::vector<int> bytesOf(const std::vector<AreaRect>& rects, const PixelRect& limits)
{
    CoverageBytes bytes(limits);
    RectangleRaster().run(rects, limits, bytes);
    return bytes.all;
}

/// The coverage of each pixel by one rectangle, in tenths; "#" for all of it, "." for pixels that are not
/// reported.
std::string coverageBy(const AreaRect& rect, const PixelRect& limits)
{
    class Picture final : public CoverageRows {
    public:
        explicit Picture(const PixelRect& limits)
            : text(std::size_t(limits.pixelCount()), '.')
            , _limits(limits)
        {
        }
        void rows(
            int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) override
        {
            for (int y = top; y < bottom; ++y)
                for (const CoverageSpan& span : spans)
                    for (int x = span.begin; x < span.end; ++x) {
                        const int tenths = span.isFull ? 10 : (coverage[x] * 10 + 127) / 255;
                        text.at(std::size_t(y - _limits.top) * std::size_t(_limits.width())
                            + std::size_t(x)) = tenths == 10 ? '#' : char('0' + tenths);
                    }
        }

        std::string text;

    private:
        const PixelRect& _limits;
    };
    Picture picture(limits);
    RectangleRaster().run({&rect, 1}, limits, picture);
    return picture.text;
}

} // namespace

TEST(RectangleRaster, CoversPixelsByTheirArea)
{
    EXPECT_EQ(coverageBy({-1.5, 2.25, 0.25, 3.5}, {-3, 2, 1, 4}), ".472.351");
}

TEST(RectangleRaster, ReportsNothingOfEdgesThatAreEqualAfterTheSubtractionOfTheLeftLimit)
{
    EXPECT_EQ(coverageBy({-1e-20, 0, 0, 1}, {-1, 0, 0, 1}), ".");
    EXPECT_EQ(coverageBy({-5 - 1e-20, 0, -1e-20, 1}, {-4, 0, 2, 1}), "####..");
}

TEST(RectangleRaster, RoundsTheCoveredAreaToTheNearestByte)
{
    EXPECT_EQ(bytesOf({{0.5, 0, 1, 1}, {1.25, 0, 2, 1}, {2, 0, 2 + 7.0 / 255, 1}}, {0, 0, 3, 1}),
        (std::vector{128, 191, 7}));
    EXPECT_EQ(bytesOf({{0, 0.5, 0.5, 1}, {0.75, 0.5, 1, 1}}, {0, 0, 1, 1}), std::vector{96}); // 0.375 x 255
    EXPECT_EQ(bytesOf({{0, 1.0 / 3, 2.0 / 3, 1}}, {0, 0, 1, 1}), std::vector{113});           // 4/9 x 255
}

TEST(RectangleRaster, AddsUpPiecesOfPixelsWithoutGaps)
{
    // Strips of 3.5 x 2.75 pixels, cut anywhere.
    std::mt19937 random(1);
    const auto cuts = [&random](double begin, double end) {
        std::vector<double> all{begin, end};
        for (int i = 0; i < 3000; ++i)
            all.push_back(begin + (end - begin) * double(random()) / 4294967296.0);
        std::ranges::sort(all);
        return all;
    };
    std::vector<AreaRect> columns;
    const auto x = cuts(0.5, 4);
    for (std::size_t i = 1; i < x.size(); ++i)
        columns.push_back({x[i - 1], 0.25, x[i], 3});
    std::vector<AreaRect> rows;
    const auto y = cuts(0.25, 3);
    for (std::size_t i = 1; i < y.size(); ++i)
        rows.push_back({0.5, y[i - 1], 4, y[i]});
    const std::vector<int> whole{96, 191, 191, 191, 128, 255, 255, 255, 128, 255, 255, 255};
    EXPECT_EQ(bytesOf({{0.5, 0.25, 4, 3}}, {0, 0, 4, 3}), whole);
    EXPECT_EQ(bytesOf(columns, {0, 0, 4, 3}), whole);
    EXPECT_EQ(bytesOf(rows, {0, 0, 4, 3}), whole);
}
