#include "CoreGraphics/cairo/SolidRows.h"

#include <cstring>

namespace {

/// Pixels worked on at a time: what they need stays in the first-level cache.
constexpr int kChunk = 256;

/// a x b / 65536, rounded down: a fraction of a 16-bit value.
inline std::uint16_t scaled(std::uint16_t a, std::uint16_t b)
{
    return std::uint16_t((std::uint32_t(a) * b) >> 16);
}

/// 0 to 255 as 0 to 65535.
inline std::uint16_t widened(std::uint8_t value)
{
    return std::uint16_t(value * 257);
}

// Plain loops over separate arrays, which the compiler turns into vector instructions.

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

/// D = added + D x kept.
void blend(unsigned char* __restrict bytes, const std::uint16_t* __restrict added,
    const std::uint16_t* __restrict kept, int count)
{
    for (int i = 0; i < count; ++i) {
        const auto sum = std::uint16_t(scaled(std::uint16_t(bytes[i] * 257), kept[i]) + added[i]);
        bytes[i] = std::uint8_t(std::uint16_t(sum - (sum >> 8) + 128) >> 8);
    }
}

/// The same value in all four channels of a pixel.
constexpr std::uint64_t kEachChannel = 0x0001'0001'0001'0001;

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
    const auto width = std::size_t(pixels.width());
    unsigned char* row = pixel(pixels.left, pixels.top);
    if (_memory.isAlphaOnly) {
        for (int y = pixels.top; y < pixels.bottom; ++y, row += _memory.bytesPerRow)
            std::memset(row, _color[3], width);
        return;
    }
    for (int y = pixels.top; y < pixels.bottom; ++y, row += _memory.bytesPerRow) {
        for (std::size_t x = 0; x < width; ++x)
            std::memcpy(row + 4 * x, _color.data(), 4); // any address will do
    }
}

void SolidRows::blendColumns(const PixelRect& pixels, const float* coverage) const
{
    const int channels = _memory.isAlphaOnly ? 1 : 4;
    const int pixelCount = pixels.width();
    const int count = pixelCount * channels;

    alignas(64) std::uint16_t fixed[kChunk];
    if (coverage)
        toFixed(coverage, fixed, pixelCount);
    else
        std::fill_n(fixed, pixelCount, 65535);

    alignas(64) std::uint16_t perByte[kChunk * 4]; // the coverage
    alignas(64) std::uint16_t added[kChunk * 4];
    alignas(64) std::uint16_t kept[kChunk * 4];
    if (_memory.isAlphaOnly) {
        std::copy_n(fixed, count, perByte);
        std::fill_n(added, count, widened(_color[3]));
    } else {
        const std::uint16_t color[] = {
            widened(_color[0]), widened(_color[1]), widened(_color[2]), widened(_color[3])};
        for (int x = 0; x < pixelCount; ++x) {
            const std::uint64_t fourTimes = fixed[x] * kEachChannel;
            std::memcpy(perByte + std::ptrdiff_t(4) * x, &fourTimes, sizeof fourTimes);
            std::memcpy(added + std::ptrdiff_t(4) * x, color, sizeof color);
        }
    }
    scale(added, perByte, count);
    keep(perByte, widened(_hidden), kept, count);

    // On a plain background many rows are alike, before and after.
    unsigned char before[kChunk * 4];
    unsigned char* row = pixel(pixels.left, pixels.top);
    for (int y = pixels.top; y < pixels.bottom; ++y, row += _memory.bytesPerRow) {
        if (y > pixels.top && std::memcmp(row, before, std::size_t(count)) == 0) {
            std::memcpy(row, row - _memory.bytesPerRow, std::size_t(count));
            continue;
        }
        std::memcpy(before, row, std::size_t(count));
        blend(row, added, kept, count);
    }
}

unsigned char* SolidRows::pixel(int x, int y) const
{
    const std::ptrdiff_t bytesPerPixel = _memory.isAlphaOnly ? 1 : 4;
    return _memory.data + (y - _limits.top) * std::ptrdiff_t(_memory.bytesPerRow)
        + (x - _limits.left) * bytesPerPixel;
}
