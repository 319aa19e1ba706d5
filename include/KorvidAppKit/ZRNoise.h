#pragma once

#include <Foundation/KorvidBase.h>

#include <stddef.h>
#include <stdint.h>

/// @file
/// Two-dimensional value noise: integers from 0 to 255 at the points of a lattice, interpolated smoothly in
/// between, and fractal sums of such noise, each octave twice as fine as the previous one. There is no seed
/// and no state: all arithmetic is in 32-bit floats, and the same arguments give the same bits on every
/// machine. Any thread. C may include this header.
///
/// The noise repeats every 256 lattice steps in both directions. Coordinates may have any value:
///
/// - Lattice coordinates wrap mathematically, negative ones included: column -1 is column 255.
/// - Coordinates outside the range of int32, infinity and NaN count as 0. For finite ones this agrees with
/// the
///   wrapping: floats of that size are multiples of 256.
/// - Coordinates are split into integer and fraction by truncation toward zero, so that negative ones have
///   negative fractions, at which the interpolation is extrapolated. Noise at negative coordinates therefore
///   jumps at the lattice lines and exceeds the ranges given below.

KORVID_EXTERN_C_BEGIN

/// The lattice value at (x, y), 0 to 255: hash[(hash[y mod 256] + x) mod 256], where hash is a fixed table of
/// 256 values, 163 of them distinct.
KORVID_EXPORT int32_t noise2(int32_t x, int32_t y);

/// a + (b - a) s. Not clamped.
KORVID_EXPORT float lin_inter(float a, float b, float s);

/// a + w (b - a) with the weight w = (3 - (s + s)) (s s), whose slope is 0 at `a` and `b`. Not clamped.
KORVID_EXPORT float smooth_inter(float a, float b, float s);

/// The four lattice values around (x, y), interpolated by `smooth_inter` along x, then along y. At integer
/// coordinates, the lattice value itself. 0 to 255 if neither coordinate is negative.
KORVID_EXPORT float noise2d(float x, float y);

/// The weighted sum of `depth` octaves of `noise2d`, divided by 256 times the sum of their weights.
///
/// The first octave is noise2d(x freq, y freq) with the weight 1; each further one has twice the frequency
/// and half the weight. 0 to 255/256, up to rounding, if neither coordinate is negative. A `depth` of 0 or
/// less gives NaN. From the 151st octave on the weight is 0 in a float: these cost nothing and change
/// nothing.
KORVID_EXPORT float perlin2d(float x, float y, float freq, int32_t depth);

/// Fills an image with noise. The sample in column c of row r becomes, bit for bit,
///
///     perlin2d(originX + static_cast<float>(c) * step, originY + static_cast<float>(r) * step, freq, depth)
///
/// Row r begins at samples[r * samplesPerRow]; padding between rows is not modified. Much faster than single
/// calls if the noise varies slowly from sample to sample: columns are computed many at a time by vector
/// instructions, and values shared by neighbours only once. Large images are computed on several threads; the
/// function returns when the whole image is filled.
///
/// Writes nothing if `samples` is null, a size is 0, or `samplesPerRow` is less than `width`. The other
/// arguments may have any value that `perlin2d` accepts, NaN and infinity included.
KORVID_EXPORT void ZRFillPerlinNoise(float* samples, size_t width, size_t height, size_t samplesPerRow,
    float originX, float originY, float step, float freq, int32_t depth);

KORVID_EXTERN_C_END
