#include "CoreGraphics/raster/RectangleRaster.h"

#include <gtest/gtest.h>
#include <string>

namespace {

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
