#pragma once

#include <cstddef>
#include <cstdint>

// Rows of covered widths and areas in whole numbers, and the bytes of coverage that they come to. The
// functions treat up to `kAreaPadding` more pixels like those asked for, so that there must be memory for
// them.

inline constexpr std::size_t kAreaPadding = 64;

/// A width of a pixel has 128 units for each of the 255 steps of coverage.
inline constexpr int kWidthBits = 7;
inline constexpr int kWidthUnits = 255 << kWidthBits;
/// A height of a pixel has this many units. An area has those of its width times those of its height.
inline constexpr int kHeightBits = 15;
inline constexpr int kHeightUnits = 1 << kHeightBits;

/// Adds the areas of widths with a height.
void addAreas(std::uint32_t* areas, const std::uint16_t* widths, std::uint16_t height, std::size_t count);
/// The nearest bytes to widths, of which none is more than a pixel.
void bytesOfWidths(const std::uint16_t* widths, unsigned char* bytes, std::size_t count);
/// The nearest bytes to areas, of which none is more than a pixel. Sets the areas to 0.
void takeBytesOfAreas(std::uint32_t* areas, unsigned char* bytes, std::size_t count);
