#include "CoreGraphics/raster/SolidRows.h"

#include "CoreGraphics/raster/PixelFill.h"
#include "CoreGraphics/raster/SolidBlending.h"

#include <cstring>

namespace {

/// Pixels processed at a time, so that their data stays in the first-level cache.
constexpr int kChunk = 256;

/// a x b / 65536, rounded down: a fraction of a 16-bit value.
inline std::uint16_t scaled(std::uint16_t a, std::uint16_t b)
{
    return std::uint16_t((std::uint32_t(a) * b) >> 16);
}

/// A byte scaled to 0 to 65535.
inline std::uint16_t widened(std::uint8_t value)
{
    return std::uint16_t(value * 257);
}

// Plain loops over separate arrays, which the compiler vectorizes.

void toFixed(const float* __restrict coverage, std::uint16_t* __restrict fixed, int count)
{
    for (int i = 0; i < count; ++i) {
        const float value = coverage[i] * 65535.0F + 0.5F;
        fixed[i] = std::uint16_t(int(value < 65535.0F ? value : 65535.0F));
    }
}

void scale(std::uint16_t* __restrict values, const std::uint16_t* __restrict factors, int count)
{
    for (int i = 0; i < count; ++i)
        values[i] = scaled(values[i], factors[i]);
}

void keep(
    const std::uint16_t* __restrict values, std::uint16_t factor, std::uint16_t* __restrict kept, int count)
{
    for (int i = 0; i < count; ++i)
        kept[i] = std::uint16_t(65535 - scaled(values[i], factor));
}

/// added + D x kept, in 16 bits each, as a byte.
inline std::uint8_t blended(unsigned char byte, std::uint16_t added, std::uint16_t kept)
{
    const auto sum = std::uint16_t(scaled(widened(byte), kept) + added);
    return std::uint8_t(std::uint16_t(sum - (sum >> 8) + 128) >> 8);
}

void blend(unsigned char* __restrict bytes, const std::uint16_t* __restrict added,
    const std::uint16_t* __restrict kept, int count)
{
    for (int i = 0; i < count; ++i)
        bytes[i] = blended(bytes[i], added[i], kept[i]);
}

/// The same value in all four channels of a pixel.
constexpr std::uint64_t kEachChannel = 0x0001'0001'0001'0001;

/// The factors that compute new bytes from old ones, for up to kChunk pixels.
class Blending {
public:
    /// `fixed` are the coverages of the pixels, 0 to 65535.
    Blending(
        const std::uint16_t* fixed, int pixelCount, PixelBytes color, std::uint8_t hidden, bool isAlphaOnly)
        : _count(pixelCount * (isAlphaOnly ? 1 : 4))
    {
        const int count = _count;
        alignas(64) std::uint16_t perByte[kChunk * 4]; // the coverage
        if (isAlphaOnly) {
            std::copy_n(fixed, count, perByte);
            std::fill_n(_added, count, widened(color[3]));
        } else {
            const std::uint16_t wide[] = {
                widened(color[0]), widened(color[1]), widened(color[2]), widened(color[3])};
            for (int x = 0; 4 * x < count; ++x) {
                const std::uint64_t fourTimes = fixed[x] * kEachChannel;
                std::memcpy(perByte + std::ptrdiff_t(4) * x, &fourTimes, sizeof fourTimes);
                std::memcpy(_added + std::ptrdiff_t(4) * x, wide, sizeof wide);
            }
        }
        scale(_added, perByte, count);
        keep(perByte, widened(hidden), _kept, count);
    }

    /// `bytes` are those of the first pixel.
    void apply(unsigned char* bytes) const { blend(bytes, _added, _kept, _count); }

private:
    int _count; ///< of bytes
    alignas(64) std::uint16_t _added[kChunk * 4];
    alignas(64) std::uint16_t _kept[kChunk * 4];
};

} // namespace

SolidRows::SolidRows(
    const PixelMemory& memory, const PixelRect& limits, PixelBytes color, std::uint8_t hidden)
    : _memory(memory)
    , _limits(limits)
    , _color(color)
    , _hidden(hidden)
{
}

void SolidRows::rows(int top, int bottom, std::span<const CoverageSpan> spans, const float* coverage)
{
    for (const CoverageSpan& span : spans)
        paint({_limits.left + span.begin, top, _limits.left + span.end, bottom},
            span.isFull ? nullptr : coverage + span.begin);
}

void SolidRows::rows(int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage)
{
    blendSolid({pixel(_limits.left, top), _memory.bytesPerRow, bottom - top, _memory.isAlphaOnly()}, spans,
        coverage, _color, _hidden);
    if (_hidden != 255)
        return;
    for (const CoverageSpan& span : spans) {
        if (span.isFull)
            replace({_limits.left + span.begin, top, _limits.left + span.end, bottom});
    }
}

void SolidRows::fill(const PixelRect& pixels) const
{
    paint(pixels, nullptr);
}

void SolidRows::paint(const PixelRect& pixels, const float* coverage) const
{
    if (!coverage && _hidden == 255)
        return replace(pixels);
    for (int left = pixels.left; left < pixels.right; left += kChunk) {
        const PixelRect part{left, pixels.top, std::min(left + kChunk, pixels.right), pixels.bottom};
        blendColumns(part, coverage ? coverage + (left - pixels.left) : nullptr);
    }
}

void SolidRows::replace(const PixelRect& pixels) const
{
    auto width = std::size_t(pixels.width());
    int rowCount = pixels.height();
    if (width * std::size_t(channels()) == _memory.bytesPerRow) { // one run of pixels
        width *= std::size_t(rowCount);
        rowCount = 1;
    }
    unsigned char* row = pixel(pixels.left, pixels.top);
    for (int y = 0; y < rowCount; ++y, row += _memory.bytesPerRow) {
        if (_memory.isAlphaOnly())
            std::memset(row, _color[3], width);
        else
            fillPixels(row, width, _color);
    }
}

void SolidRows::blendColumns(const PixelRect& pixels, const float* coverage) const
{
    const int pixelCount = pixels.width();
    alignas(64) std::uint16_t fixed[kChunk];
    if (coverage)
        toFixed(coverage, fixed, pixelCount);
    else
        std::fill_n(fixed, pixelCount, 65535);
    const Blending blending(fixed, pixelCount, _color, _hidden, _memory.isAlphaOnly());

    // On a plain background many rows are equal, both before and after painting.
    const int count = pixelCount * channels();
    unsigned char before[kChunk * 4];
    unsigned char* row = pixel(pixels.left, pixels.top);
    for (int y = pixels.top; y < pixels.bottom; ++y, row += _memory.bytesPerRow) {
        if (y > pixels.top && std::memcmp(row, before, std::size_t(count)) == 0) {
            std::memcpy(row, row - _memory.bytesPerRow, std::size_t(count));
            continue;
        }
        std::memcpy(before, row, std::size_t(count));
        blending.apply(row);
    }
}

void SolidRows::paintRun(int x, int y, int count, const unsigned char* coverage)
{
    if (!coverage && _hidden == 255)
        replace({x, y, x + count, y + 1});
    else
        blendSolid(pixel(x, y), coverage, std::size_t(count), _color, _hidden, _memory.isAlphaOnly());
}

unsigned char* SolidRows::pixel(int x, int y) const
{
    return _memory.data + (y - _limits.top) * std::ptrdiff_t(_memory.bytesPerRow)
        + std::ptrdiff_t(x - _limits.left) * channels();
}
