#include <KorvidAppKit/ZRNoise.h>

#include "imaging/ImagingQueue.h"
#include "imaging/NoiseLattice.h"

#include <algorithm>

// Highway compiles this file once per instruction set, and selects one at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/NoiseFill.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

#ifndef NOISE_FILL_ONCE
#define NOISE_FILL_ONCE

namespace {

/// The arguments of ZRFillPerlinNoise.
struct NoiseImage {
    float* samples;
    std::size_t width, height, samplesPerRow;
    float originX, originY, step, freq;
    std::int32_t layers;
};

// An image is computed in tiles of this size, whose samples stay in the first-level cache for all octaves.
constexpr std::size_t kColumns = 256;
constexpr std::size_t kRows = 32;

/// Lattice values in the lower halves, differences to the right neighbour in the upper ones, so that one
/// lookup fetches both. The table is repeated, so that 256 entries follow each of the first 256.
constexpr std::array<std::int32_t, 512> kRounds = [] {
    std::array<std::int32_t, 512> rounds{};
    for (std::size_t i = 0; i < rounds.size(); ++i) {
        const std::int32_t value = kNoiseHash[i % 256], neighbour = kNoiseHash[(i + 1) % 256];
        rounds[i] = (neighbour - value) * 0x10000 + value;
    }
    return rounds;
}();

} // namespace

#endif

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Floats = hn::CappedTag<float, 64>;
using Integers = hn::RebindToSigned<Floats>;
using Vector = hn::Vec<Floats>;
constexpr Floats kFloats;
constexpr Integers kIntegers;

/// smooth_inter with a precomputed weight.
Vector interpolate(Vector a, Vector b, Vector weight)
{
    return hn::Add(a, hn::Mul(weight, hn::Sub(b, a)));
}

/// One tile, computed octave by octave, with the same operations as perlin2d in the same order, and therefore
/// the same bits.
///
/// Values that depend only on the column are computed once per octave. The noise along the two lattice rows
/// around a row of samples is computed once for all rows between them. Each sample then only interpolates the
/// two.
class Tile {
public:
    Tile(const NoiseImage& image, std::size_t firstColumn, std::size_t firstRow)
        : _image(image)
        , _firstColumn(firstColumn)
        , _firstRow(firstRow)
        , _columns(std::min(kColumns, image.width - firstColumn))
        , _rows(std::min(kRows, image.height - firstRow))
    {
        for (std::size_t i = 0; i < _columns; ++i)
            _x[i] = (image.originX + static_cast<float>(firstColumn + i) * image.step) * image.freq;
        // The last vector may extend beyond the tile; its values there are never used.
        for (std::size_t i = _columns; i % hn::Lanes(kFloats) != 0; ++i)
            _x[i] = 0;
        for (std::size_t i = 0; i < _rows; ++i) {
            _y[i] = (image.originY + static_cast<float>(firstRow + i) * image.step) * image.freq;
            forColumns([&](std::size_t k) { hn::Store(hn::Zero(kFloats), kFloats, _sums[i] + k); });
        }
    }

    void fill()
    {
        float amplitude = 1, divisor = 0;
        for (std::int32_t layer = _image.layers; layer > 0; --layer) {
            divisor += 256 * amplitude;
            addLayer(amplitude);
            amplitude *= 0.5F;
        }
        for (std::size_t row = 0; row < _rows; ++row) {
            const Vector divisors = hn::Set(kFloats, divisor);
            forColumns([&](std::size_t i) {
                hn::Store(hn::Div(hn::Load(kFloats, _sums[row] + i), divisors), kFloats, _sums[row] + i);
            });
            float* const samples = _image.samples + (_firstRow + row) * _image.samplesPerRow + _firstColumn;
            std::copy_n(_sums[row], _columns, samples);
        }
    }

private:
    /// Noise at all columns along a row of the lattice.
    struct Line {
        static constexpr std::uint32_t none = 256;

        std::uint32_t row; ///< index of the lattice row in the table
        alignas(64) float values[kColumns];
    };

    template <class Body> void forColumns(const Body& body) const
    {
        for (std::size_t i = 0; i < _columns; i += hn::Lanes(kFloats))
            body(i);
    }

    /// Adds one octave of noise, and doubles the coordinates for the next.
    void addLayer(float amplitude)
    {
        prepareColumns();
        Line* low = &_lines[0];
        Line* high = &_lines[1];
        low->row = high->row = Line::none;
        for (std::size_t row = 0; row < _rows; ++row) {
            const NoiseCoordinate y(_y[row]);
            _y[row] *= 2;
            const std::uint32_t lowRow = noiseIndex(y.whole), highRow = noiseIndex(y.whole + 1);
            if (lowRow == high->row || highRow == low->row)
                std::swap(low, high);
            if (lowRow != low->row)
                computeLine(*low, lowRow);
            if (highRow != high->row)
                computeLine(*high, highRow);
            addRow(_sums[row], low->values, high->values, noiseWeight(y.fraction), amplitude);
        }
    }

    /// NoiseCoordinate for a vector of columns.
    void prepareColumns()
    {
        forColumns([&](std::size_t i) {
            const Vector x = hn::Load(kFloats, _x + i);
            const Vector kept = hn::IfThenElseZero(hn::Lt(hn::Abs(x), hn::Set(kFloats, 0x1p31F)), x);
            const auto whole = hn::ConvertTo(kIntegers, kept);
            const Vector s = hn::Sub(kept, hn::ConvertTo(kFloats, whole));
            const Vector weight = hn::Mul(hn::Sub(hn::Set(kFloats, 3), hn::Add(s, s)), hn::Mul(s, s));
            hn::Store(hn::And(whole, hn::Set(kIntegers, 255)), kIntegers, _indexes + i);
            hn::Store(weight, kFloats, _weights + i);
            hn::Store(hn::Add(x, x), kFloats, _x + i);
        });
    }

    void computeLine(Line& line, std::uint32_t row) const
    {
        line.row = row;
        const std::int32_t* const round = kRounds.data() + kNoiseHash[row];
        forColumns([&](std::size_t i) {
            const auto pair = hn::GatherIndex(kIntegers, round, hn::Load(kIntegers, _indexes + i));
            const Vector value = hn::ConvertTo(kFloats, hn::And(pair, hn::Set(kIntegers, 0xffff)));
            const Vector difference = hn::ConvertTo(kFloats, hn::ShiftRight<16>(pair));
            const Vector weight = hn::Load(kFloats, _weights + i);
            hn::Store(hn::Add(value, hn::Mul(weight, difference)), kFloats, line.values + i);
        });
    }

    void addRow(float* sums, const float* low, const float* high, float weight, float amplitude) const
    {
        const Vector weights = hn::Set(kFloats, weight), amplitudes = hn::Set(kFloats, amplitude);
        forColumns([&](std::size_t i) {
            const Vector noise =
                interpolate(hn::Load(kFloats, low + i), hn::Load(kFloats, high + i), weights);
            const Vector sum = hn::Load(kFloats, sums + i);
            hn::Store(hn::Add(sum, hn::Mul(noise, amplitudes)), kFloats, sums + i);
        });
    }

    const NoiseImage& _image;
    const std::size_t _firstColumn, _firstRow;
    const std::size_t _columns, _rows;
    float _y[kRows]; ///< of each row, in the current octave
    alignas(64) float _x[kColumns];
    alignas(64) float _weights[kColumns];
    alignas(64) std::int32_t _indexes[kColumns]; ///< table indexes, before adding that of the row
    Line _lines[2];
    alignas(64) float _sums[kRows][kColumns];
};

void fillTile(const NoiseImage& image, std::size_t firstColumn, std::size_t firstRow)
{
    Tile(image, firstColumn, firstRow).fill();
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace {

HWY_EXPORT(fillTile);

/// From so many samples times octaves on, several threads are worth using.
constexpr std::size_t kSharedWork = 1 << 20;

std::size_t dividedUp(std::size_t count, std::size_t divisor)
{
    return (count - 1) / divisor + 1;
}

} // namespace

void ZRFillPerlinNoise(float* samples, std::size_t width, std::size_t height, std::size_t samplesPerRow,
    float originX, float originY, float step, float freq, std::int32_t depth)
{
    if (!samples || width == 0 || height == 0 || samplesPerRow < width)
        return;
    if (depth <= 0) {
        for (std::size_t row = 0; row < height; ++row)
            std::fill_n(samples + row * samplesPerRow, width, perlin2d(0, 0, 0, depth));
        return;
    }

    const NoiseImage image{
        samples, width, height, samplesPerRow, originX, originY, step, freq, noiseLayers(depth)};
    const std::size_t tilesPerRow = dividedUp(width, kColumns),
                      tiles = tilesPerRow * dividedUp(height, kRows);
    const auto fillTileAt = [&](std::size_t tile) {
        HWY_DYNAMIC_DISPATCH(fillTile)(image, tile % tilesPerRow * kColumns, tile / tilesPerRow * kRows);
    };
    if (width * height >= kSharedWork / static_cast<std::size_t>(image.layers)) {
        applyOnImagingQueue(tiles, fillTileAt);
        return;
    }
    for (std::size_t tile = 0; tile < tiles; ++tile)
        fillTileAt(tile);
}

#endif
