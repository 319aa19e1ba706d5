#include "CoreGraphics/raster/GlyphMasks.h"
#include "support/Threads.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// Draws each glyph as a row of pixels, the first of them at the origin: as many as the glyph's number, each
/// covered by 100 and by 1 for each quarter of its position.
class RowRasterizer final : public GlyphRasterizer {
public:
    MaskView draw(std::uint32_t glyph, double x, double y) override
    {
        ++drawn;
        _row.assign((glyph + 3) / 4 * 4, 0);
        std::fill_n(_row.begin(), glyph, static_cast<unsigned char>(100 + 4 * x + 16 * y));
        return {{0, 0, int(glyph), 1}, _row.data(), int(_row.size())};
    }

    int drawn = 0;

private:
    std::vector<unsigned char> _row;
};

/// The bytes of a line, a row per line of text; the area as "left,top".
std::string draw(const GlyphLine& line)
{
    const PixelRect& area = line.area();
    std::vector<unsigned char> bytes(std::size_t(area.pixelCount()));
    line.draw(bytes.data(), area.width());
    std::string text = std::to_string(area.left) + "," + std::to_string(area.top);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        text += (i % std::size_t(area.width()) ? " " : "\n") + std::to_string(bytes[i]);
    return text;
}

/// Draws a line of some glyphs alone.
void drawLine(GlyphMaskCache& cache, const GlyphScale& scale, std::span<const PixelGlyph> glyphs)
{
    RowRasterizer rasterizer;
    GlyphLine line(cache);
    line.add(scale, glyphs, rasterizer);
}

/// How many masks a line of these glyphs had to draw.
int drawnMasks(GlyphMaskCache& cache, const GlyphScale& scale, std::vector<PixelGlyph> glyphs)
{
    RowRasterizer rasterizer;
    GlyphLine line(cache);
    line.add(scale, glyphs, rasterizer);
    return rasterizer.drawn;
}

constexpr GlyphScale kScale{1, 12, 0, 0, 12};
constexpr std::size_t kPlenty = 1'000'000;

} // namespace

TEST(GlyphPosition, IsRoundedToTheNearestQuarter)
{
    const auto describe = [](double x, double y) {
        const GlyphPosition position(x, y);
        return std::to_string(position.pixel.x) + "," + std::to_string(position.pixel.y) + " "
            + std::to_string(position.quarter & 3) + "," + std::to_string(position.quarter >> 2);
    };
    EXPECT_EQ(describe(3, 5), "3,5 0,0");
    EXPECT_EQ(describe(3.124, 5.125), "3,5 0,1");
    EXPECT_EQ(describe(3.25, 5.5), "3,5 1,2");
    EXPECT_EQ(describe(3.874, 5.875), "3,6 3,0");
    EXPECT_EQ(describe(-0.125, -0.126), "0,-1 0,3");
    EXPECT_EQ(describe(-2, -2.25), "-2,-3 0,3");
}

TEST(GlyphLine, AddsMasksAtTheirPixels)
{
    GlyphMaskCache cache(kPlenty);
    RowRasterizer rasterizer;
    GlyphLine line(cache);
    const PixelGlyph glyphs[]{{2, 10, 20}, {3, 12.25, 21.5}};
    line.add(kScale, glyphs, rasterizer);
    EXPECT_EQ(draw(line),
        "10,20"
        "\n100 100 0 0 0 0 0 0 0 0"
        "\n0 0 109 109 109 0 0 0 0 0");
    line.clear();
    EXPECT_TRUE(line.area().isEmpty());
}

TEST(GlyphLine, SumsOfOverlappingMasksStopAt255)
{
    GlyphMaskCache cache(kPlenty);
    RowRasterizer rasterizer;
    GlyphLine line(cache);
    const PixelGlyph glyphs[]{{9, 0, 0}, {4, 0, 0}, {2, 0.25, 0}, {9, 8, 0}};
    line.add(kScale, glyphs, rasterizer);
    EXPECT_EQ(draw(line),
        "0,0"
        "\n255 255 200 200 100 100 100 100 200 100 100 100 100 100 100 100 100 0 0 0 0 0 0 0");
}

TEST(GlyphLine, OfBlanksIsEmpty)
{
    GlyphMaskCache cache(kPlenty);
    RowRasterizer rasterizer;
    GlyphLine line(cache);
    const PixelGlyph blank[]{{0, 5, 5}};
    line.add(kScale, blank, rasterizer);
    EXPECT_TRUE(line.area().isEmpty());
}

TEST(GlyphMaskCache, DrawsEachGlyphOncePerPositionFaceAndScale)
{
    GlyphMaskCache cache(kPlenty);
    EXPECT_EQ(drawnMasks(cache, kScale, {{2, 0, 0}, {2, 7, 1}, {2, 8.1, -3}}), 1);
    EXPECT_EQ(drawnMasks(cache, kScale, {{2, 0.25, 0}, {2, 0, 0.25}, {3, 0, 0}, {0, 0, 0}}), 4);
    EXPECT_EQ(drawnMasks(cache, kScale, {{2, 0.25, 0}, {2, 0, 0.25}, {3, 0, 0}, {0, 0, 0}}), 0);
    EXPECT_EQ(drawnMasks(cache, {2, 12, 0, 0, 12}, {{2, 0, 0}}), 1) << "another face";
    EXPECT_EQ(drawnMasks(cache, {1, -12, 0, 0, 12}, {{2, 0, 0}}), 1) << "mirrored";
    EXPECT_EQ(drawnMasks(cache, {1, 12, 0, 0, 13}, {{2, 0, 0}}), 1) << "higher";
    EXPECT_EQ(drawnMasks(cache, {1, 12, 0, 3, 12}, {{2, 0, 0}}), 1) << "sheared";
    EXPECT_EQ(drawnMasks(cache, {1, 12, 3, 0, 12}, {{2, 0, 0}}), 1) << "sheared the other way";
    EXPECT_EQ(drawnMasks(cache, kScale, {{2, 0, 0}}), 0);
}

TEST(GlyphMaskCache, EvictsTheTableUsedLeastRecently)
{
    GlyphMaskCache cache(kPlenty);
    drawLine(cache, kScale, std::vector<PixelGlyph>{{100, 0, 0}});
    const std::size_t tableSize = cache.byteCount();
    GlyphMaskCache small(2 * tableSize);
    const GlyphScale scales[]{{1, 12, 0, 0, 12}, {1, 13, 0, 0, 13}, {1, 14, 0, 0, 14}};
    EXPECT_EQ(drawnMasks(small, scales[0], {{100, 0, 0}}), 1);
    EXPECT_EQ(drawnMasks(small, scales[1], {{100, 0, 0}}), 1);
    EXPECT_EQ(small.byteCount(), 2 * tableSize);
    EXPECT_EQ(drawnMasks(small, scales[0], {{100, 0, 0}}), 0) << "used again";
    EXPECT_EQ(drawnMasks(small, scales[2], {{100, 0, 0}}), 1);
    EXPECT_EQ(small.byteCount(), 2 * tableSize);
    EXPECT_EQ(drawnMasks(small, scales[0], {{100, 0, 0}}), 0);
    EXPECT_EQ(drawnMasks(small, scales[1], {{100, 0, 0}}), 1) << "was evicted";
}

TEST(GlyphMaskCache, StaysWithinItsCapacityAndLinesOutliveTheirTables)
{
    GlyphMaskCache cache(1000);
    RowRasterizer rasterizer;
    GlyphLine line(cache);
    const PixelGlyph glyphs[]{{800, 0, 0}, {600, 0, 1}};
    line.add(kScale, glyphs, rasterizer);
    EXPECT_EQ(cache.byteCount(), 0u) << "a table that is too large is evicted at once";
    EXPECT_EQ(draw(line).substr(0, 11), "0,0\n100 100");
}

TEST(GlyphMaskCache, IsSharedByThreads)
{
    GlyphMaskCache cache(3000); // evicts all the time
    onThreads(4, [&](int thread) {
        for (int i = 0; i < 500; ++i) {
            RowRasterizer rasterizer;
            GlyphLine line(cache);
            const PixelGlyph glyphs[]{{std::uint32_t(1 + i % 3), 0, 0}};
            line.add({1, 10.0 + (i + thread) % 7, 0, 0, 10}, glyphs, rasterizer);
            EXPECT_EQ(draw(line),
                std::string("0,0\n100") + (i % 3 > 0 ? " 100" : " 0") + (i % 3 > 1 ? " 100" : " 0")
                    + " 0 0 0 0 0");
        }
    });
}
