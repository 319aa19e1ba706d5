#include "CoreGraphics/raster/SolidBlending.h"

#include "CoreGraphics/raster/PixelFill.h"

#include <bit>
#include <cstring>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/SolidBlending.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// The bytes in the lower halves, scaled to 0 to 65535.
template <class V> V widened(V values)
{
    return hn::Or(values, hn::ShiftLeft<8>(values));
}
template <class V> V evenBytes(V pairs)
{
    return hn::And(pairs, hn::Set(hn::DFromV<V>(), 255));
}
template <class V> V oddBytes(V pairs)
{
    return hn::ShiftRight<8>(pairs);
}

/// Longer runs of pixels in one colour are filled with the longest vectors.
constexpr std::size_t kChunk = 256;
/// Spans of fewer pixels are blended faster than compared.
constexpr std::size_t kLeastCompared = 32;
/// Rows that are blended together.
constexpr int kRowsTogether = 8;

/// Where a vector's bytes are those of pixels.
enum class Layout : std::uint8_t { Pixels, Alphas };

/// Blends as many bytes as a number of 32-bit words have, or a vector if that is shorter.
template <Layout layout, std::size_t wordCount> class Blender {
    using Words = hn::CappedTag<std::uint32_t, wordCount>;
    using Shorts = hn::Repartition<std::uint16_t, Words>;
    using Bytes = hn::Repartition<std::uint8_t, Words>;
    using ByteOfWord = hn::Rebind<std::uint8_t, Words>;
    using Vector = hn::Vec<Shorts>;

    static constexpr std::size_t kChannels = layout == Layout::Pixels ? 4 : 1;

public:
    Blender(PixelBytes color, std::uint8_t hidden)
        : _evenColor(
            colorOf(color[layout == Layout::Pixels ? 0 : 3], color[layout == Layout::Pixels ? 2 : 3]))
        , _oddColor(colorOf(color[layout == Layout::Pixels ? 1 : 3], color[3]))
        , _hidden(hn::Set(Shorts(), std::uint16_t(hidden * 257)))
    {
    }

    /// Of those that are blended together.
    static std::size_t pixelCount() { return hn::Lanes(Bytes()) / kChannels; }
    /// Blends at least `pixelCount()` pixels.
    HWY_INLINE void blend(unsigned char* bytes, const unsigned char* coverage, std::size_t count) const
    {
        if (coverage)
            blendEach(bytes, count, [=, this](std::size_t i) { return cover(coverage + i); });
        else
            blendEach(bytes, count, [](std::size_t) { return fullCover(); });
    }
    /// Blends `pixelCount()` pixels in rows with the same coverage. On a plain background many rows are
    /// equal, both before and after blending.
    HWY_INLINE void blendColumn(
        unsigned char* bytes, std::size_t bytesPerRow, int rowCount, const unsigned char* coverage) const
    {
        const Cover covered = coverage ? cover(coverage) : fullCover();
        auto before = hn::LoadU(Bytes(), bytes);
        auto after = blended(before, covered);
        hn::StoreU(after, Bytes(), bytes);
        for (int y = 1; y < rowCount; ++y) {
            bytes += bytesPerRow;
            const auto below = hn::LoadU(Bytes(), bytes);
            if (!hn::AllTrue(Bytes(), hn::Eq(below, before))) {
                before = below;
                after = blended(before, covered);
            }
            hn::StoreU(after, Bytes(), bytes);
        }
    }

private:
    /// The coverage of the even and the odd bytes of a vector, 0 to 65535.
    struct Cover {
        Vector even;
        Vector odd;
    };
    static Cover fullCover() { return {hn::Set(Shorts(), 65535), hn::Set(Shorts(), 65535)}; }
    static HWY_INLINE Cover cover(const unsigned char* coverage)
    {
        if constexpr (layout == Layout::Alphas) {
            const auto pairs = hn::BitCast(Shorts(), hn::LoadU(Bytes(), coverage));
            return {widened(evenBytes(pairs)), widened(oddBytes(pairs))};
        } else {
            // Four times the byte of each pixel.
            alignas(16) constexpr std::uint8_t kFirstOfWord[16] = {
                0, 0, 0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12};
            const auto words =
                hn::BitCast(Bytes(), hn::PromoteTo(Words(), hn::LoadU(ByteOfWord(), coverage)));
            const auto both = hn::BitCast(Shorts(), hn::TableLookupBytes(words, pattern(kFirstOfWord)));
            return {both, both};
        }
    }
    /// 16 bytes, in each 16 bytes of a vector.
    static hn::Vec<Bytes> pattern(const std::uint8_t* bytes)
    {
        if constexpr (wordCount < 4)
            return hn::LoadU(Bytes(), bytes);
        else
            return hn::LoadDup128(Bytes(), bytes);
    }
    static Vector colorOf(std::uint8_t low, std::uint8_t high)
    {
        const std::uint32_t pair = std::uint32_t(low) * 257 | std::uint32_t(high) * 257 << 16;
        return hn::BitCast(Shorts(), hn::Set(Words(), pair));
    }
    /// Calls `coverAt(i)` for the coverage of the pixels from `i` on.
    template <class CoverAt>
    HWY_INLINE void blendEach(unsigned char* bytes, std::size_t count, CoverAt coverAt) const
    {
        const auto blendedAt = [&](std::size_t i) {
            return blended(hn::LoadU(Bytes(), bytes + kChannels * i), coverAt(i));
        };
        // The last vector may overlap the previous one, so it is read before anything is written.
        const std::size_t last = count - pixelCount();
        const auto lastBlended = blendedAt(last);
        for (std::size_t i = 0; i < last; i += pixelCount())
            hn::StoreU(blendedAt(i), Bytes(), bytes + kChannels * i);
        hn::StoreU(lastBlended, Bytes(), bytes + kChannels * last);
    }
    /// The blend, byte by byte, in the upper halves.
    HWY_INLINE Vector blended(Vector below, Vector color, Vector cover) const
    {
        const auto kept = hn::Sub(hn::Set(Shorts(), 65535), hn::MulHigh(cover, _hidden));
        const auto sum = hn::Add(hn::MulHigh(below, kept), hn::MulHigh(color, cover));
        return hn::Add(hn::Sub(sum, hn::ShiftRight<8>(sum)), hn::Set(Shorts(), 128));
    }
    HWY_INLINE hn::Vec<Bytes> blended(hn::Vec<Bytes> bytes, const Cover& covered) const
    {
        const auto below = hn::BitCast(Shorts(), bytes);
        const auto even = blended(widened(evenBytes(below)), _evenColor, covered.even);
        const auto odd = blended(widened(oddBytes(below)), _oddColor, covered.odd);
        const auto upperHalves = hn::Set(Shorts(), 0xff00);
        return hn::BitCast(Bytes(), hn::Or(hn::ShiftRight<8>(even), hn::And(odd, upperHalves)));
    }

    Vector _evenColor;
    Vector _oddColor;
    Vector _hidden; ///< 0 to 65535, as the colours are
};

/// Paints spans of rows in a colour.
template <Layout layout> class SpanPainter {
public:
    SpanPainter(const PixelRows& rows, PixelBytes color, std::uint8_t hidden)
        : _rows(rows)
        , _color(color)
        , _hidden(hidden)
    {
    }

    void paint(std::span<const CoverageSpan> spans, const unsigned char* coverage) const
    {
        const Blender<layout, 16> wideBlender(_color, _hidden);
        const Blender<layout, 8> blender(_color, _hidden);
        for (const CoverageSpan& span : spans) {
            const auto begin = std::size_t(span.begin);
            const auto count = std::size_t(span.end - span.begin);
            if (span.isFull && _hidden == 255 && _rows.count == 1)
                fillRun(pixel(begin, 0), count);
            else if (span.isFull && _hidden == 255)
                fill(begin, count);
            else if (count < blender.pixelCount())
                blendFew(begin, count, span.isFull ? nullptr : coverage + begin);
            else if (count < wideBlender.pixelCount())
                blendRows(begin, span.isFull ? nullptr : coverage + begin, count, blender);
            else
                blendRows(begin, span.isFull ? nullptr : coverage + begin, count, wideBlender);
        }
    }
    /// Paints pixels through a mask.
    void paint(const unsigned char* mask, std::size_t maskBytesPerRow, std::size_t width) const
    {
        // Eight pixels together, whose coverage is most often the same.
        constexpr std::size_t kBlock = 8;
        constexpr std::uint64_t kFull = ~std::uint64_t(0);
        const Blender<layout, layout == Layout::Pixels ? kBlock : kBlock / 4> blender(_color, _hidden);
        for (int y = 0; y < _rows.count; ++y, mask += maskBytesPerRow) {
            std::size_t x = 0;
            for (; x + kBlock <= width; x += kBlock) {
                std::uint64_t block;
                std::memcpy(&block, mask + x, kBlock);
                if (block == kFull && _hidden == 255) {
                    const std::size_t begin = x;
                    while (x + 2 * kBlock <= width && std::memcmp(mask + x + kBlock, &kFull, kBlock) == 0)
                        x += kBlock;
                    fillRun(pixel(begin, y), x + kBlock - begin);
                } else if (block != 0)
                    blender.blend(pixel(x, y), mask + x, kBlock);
            }
            if (x == width)
                continue;
            // The last pixels, and those before them with a coverage of 0, which leaves them as they are.
            const std::size_t rest = width - x;
            unsigned char last[kBlock]{};
            std::memcpy(last + kBlock - rest, mask + x, rest);
            std::uint64_t block;
            std::memcpy(&block, last, kBlock);
            if (block != 0 && width >= kBlock)
                blender.blend(pixel(width - kBlock, y), last, kBlock);
            else if (block != 0)
                SpanPainter(_rows.row(y), _color, _hidden).blendFew(x, rest, mask + x);
        }
    }

private:
    static constexpr std::size_t kChannels = layout == Layout::Pixels ? 4 : 1;

    unsigned char* pixel(std::size_t x, int row) const
    {
        return _rows.bytes + std::size_t(row) * _rows.bytesPerRow + kChannels * x;
    }

    /// Replaces pixels.
    void fill(std::size_t begin, std::size_t count) const
    {
        // Whole rows are one run of pixels.
        const bool isOneRun = count * kChannels == _rows.bytesPerRow;
        const int runs = isOneRun ? 1 : _rows.count;
        const std::size_t length = isOneRun ? count * std::size_t(_rows.count) : count;
        for (int y = 0; y < runs; ++y)
            fillRun(pixel(begin, y), length);
    }
    void fillRun(unsigned char* bytes, std::size_t count) const
    {
        if constexpr (layout == Layout::Alphas)
            std::memset(bytes, _color[3], count);
        else if (count <= kChunk)
            fillFew(bytes, count);
        else
            fillPixels(bytes, count, _color);
    }
    void fillFew(unsigned char* bytes, std::size_t count) const
    {
        using Words = hn::CappedTag<std::uint32_t, 8>;
        using Bytes = hn::Repartition<std::uint8_t, Words>;
        const std::size_t lanes = hn::Lanes(Words());
        if (count < lanes)
            return fillPixels(bytes, count, _color);
        const auto color = hn::BitCast(Bytes(), hn::Set(Words(), std::bit_cast<std::uint32_t>(_color)));
        const std::size_t last = count - lanes;
        for (std::size_t i = 0; i < last; i += lanes)
            hn::StoreU(color, Bytes(), bytes + 4 * i);
        hn::StoreU(color, Bytes(), bytes + 4 * last);
    }

    /// Blends pixels with the same coverage in each row, fewer than a vector has.
    void blendFew(std::size_t begin, std::size_t count, const unsigned char* coverage) const
    {
        // The longest vectors that the span fills: most edges are a few pixels wide.
        const auto blendWith = [&]<std::size_t wordCount>() {
            using B = Blender<layout, wordCount>;
            if (count < B::pixelCount())
                return false;
            blendRows(begin, coverage, count, B(_color, _hidden));
            return true;
        };
        const bool isBlended = blendWith.template operator()<4>() || blendWith.template operator()<2>()
            || blendWith.template operator()<1>();
        if constexpr (layout == Layout::Alphas) {
            if (!isBlended)
                blendFewAlphas(begin, coverage, count);
        }
    }
    /// Blends fewer alphas than there are in a word.
    void blendFewAlphas(std::size_t begin, const unsigned char* coverage, std::size_t count) const
    {
        const Blender<layout, 1> blender(_color, _hidden);
        unsigned char someCoverage[4]{};
        if (coverage)
            std::memcpy(someCoverage, coverage, count);
        for (int y = 0; y < _rows.count; ++y) {
            unsigned char someBytes[4]{};
            std::memcpy(someBytes, pixel(begin, y), count);
            blender.blend(someBytes, coverage ? someCoverage : nullptr, 4);
            std::memcpy(pixel(begin, y), someBytes, count);
        }
    }
    /// Blends as many pixels as one vector has or more.
    template <class B>
    void blendRows(
        std::size_t begin, const unsigned char* coverage, std::size_t count, const B& blender) const
    {
        if (_rows.count == 1 || count < kLeastCompared) {
            for (int y = 0; y < _rows.count; ++y)
                blender.blend(pixel(begin, y), coverage, count);
            return;
        }
        const std::size_t end = count - count % B::pixelCount();
        for (int y = 0; y < _rows.count; y += kRowsTogether) {
            const int rowCount = std::min(_rows.count - y, kRowsTogether);
            for (std::size_t i = 0; i < end; i += B::pixelCount())
                blender.blendColumn(
                    pixel(begin + i, y), _rows.bytesPerRow, rowCount, coverage ? coverage + i : nullptr);
        }
        if (end < count)
            blendFew(begin + end, count - end, coverage ? coverage + end : nullptr);
    }

    PixelRows _rows;
    PixelBytes _color;
    std::uint8_t _hidden;
};

void paintSpans(const PixelRows& rows, std::span<const CoverageSpan> spans, const unsigned char* coverage,
    PixelBytes color, std::uint8_t hidden)
{
    if (rows.isAlphaOnly)
        SpanPainter<Layout::Alphas>(rows, color, hidden).paint(spans, coverage);
    else
        SpanPainter<Layout::Pixels>(rows, color, hidden).paint(spans, coverage);
}

void paintMask(const PixelRows& rows, std::size_t width, const unsigned char* mask,
    std::size_t maskBytesPerRow, PixelBytes color, std::uint8_t hidden)
{
    if (rows.isAlphaOnly)
        SpanPainter<Layout::Alphas>(rows, color, hidden).paint(mask, maskBytesPerRow, width);
    else
        SpanPainter<Layout::Pixels>(rows, color, hidden).paint(mask, maskBytesPerRow, width);
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(paintMask);
HWY_EXPORT(paintSpans);

void paintSolid(const PixelRows& rows, std::span<const CoverageSpan> spans, const unsigned char* coverage,
    PixelBytes color, std::uint8_t hidden)
{
    HWY_DYNAMIC_DISPATCH(paintSpans)(rows, spans, coverage, color, hidden);
}

void paintSolid(const PixelRows& rows, std::size_t width, const unsigned char* mask,
    std::size_t maskBytesPerRow, PixelBytes color, std::uint8_t hidden)
{
    HWY_DYNAMIC_DISPATCH(paintMask)(rows, width, mask, maskBytesPerRow, color, hidden);
}

#endif
