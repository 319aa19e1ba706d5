#pragma once

#include <Foundation/NSObjCRuntime.h>

#include <cstddef>
#include <cstdint>

// Value noise over the plane: whole numbers from 0 to 255 on a lattice, smoothly joined in between, and the
// sum of several such layers, each twice as fine as the one before. There is no seed and no state: the same
// arguments give the same bits on every machine, in 32-bit floats throughout. Any thread.
//
// The noise repeats every 256 lattice steps in both directions. Any coordinates may be asked for:
//
// - Lattice coordinates wrap mathematically, negative ones too: column -1 is column 255.
// - A coordinate that no int32 can hold, an infinite one and NaN count as 0. For finite ones that is no
//   exception: floats of that size are multiples of 256, at which the noise repeats.
// - Between lattice points a coordinate is cut towards zero, so that its fraction is negative where it is.
//   The curve goes on outside its range there, so noise at negative coordinates that are not whole numbers
//   jumps at the lattice lines and leaves the range of the results given below.

extern "C" {

/// The lattice value at (x, y): hash[(hash[y mod 256] + x) mod 256] for a fixed table of 256 values, 163 of
/// them different. 0 to 255.
KORVID_EXPORT std::int32_t noise2(std::int32_t x, std::int32_t y);

/// a + (b - a) s. Not clamped.
KORVID_EXPORT float lin_inter(float a, float b, float s);

/// a + w (b - a) with the weight w = (3 - (s + s)) (s s), which leaves `a` and reaches `b` with a slope of 0.
/// Not clamped.
KORVID_EXPORT float smooth_inter(float a, float b, float s);

/// The four lattice values around (x, y), joined by `smooth_inter` along x first and then along y. At whole
/// coordinates that is the lattice value itself. 0 to 255 where neither coordinate is negative.
KORVID_EXPORT float noise2d(float x, float y);

/// The sum of `depth` layers of `noise2d`, divided by 256 times the sum of their weights.
///
/// The first layer is noise2d(x freq, y freq) and weighs 1; each further one has twice the frequency and half
/// the weight. 0 to 255/256, give or take a rounding, where neither coordinate is negative. A `depth` of 0 or
/// less gives NaN. From the 151st layer on the weight is 0 in a float: more of them cost nothing and change
/// nothing.
KORVID_EXPORT float perlin2d(float x, float y, float freq, std::int32_t depth);

/// Fills an image: the sample in column c of row r becomes, bit for bit,
///
///     perlin2d(originX + static_cast<float>(c) * step, originY + static_cast<float>(r) * step, freq, depth)
///
/// Row r begins at samples[r * samplesPerRow]; what lies between the rows stays as it is. Where the noise is
/// smooth from sample to sample this takes a small part of the time of single calls: the vector unit works on
/// many columns at once, and what neighbours have in common is computed once. Large images are computed on
/// several threads; the function returns when the whole image is filled.
///
/// A null pointer, a size of 0, or a `samplesPerRow` less than `width`: nothing is written. Any other values
/// are those of `perlin2d`, NaN and infinity included.
KORVID_EXPORT void ZRFillPerlinNoise(float* samples, std::size_t width, std::size_t height,
    std::size_t samplesPerRow, float originX, float originY, float step, float freq, std::int32_t depth);

} // extern "C"
