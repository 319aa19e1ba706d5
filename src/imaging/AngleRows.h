#pragma once

#include <cstddef>
#include <cstdint>

/// The rule that determines the pixels of an angle image.
struct AngleRule {
    std::size_t width;
    std::size_t height;
    bool isIncreasing; ///< values increase with the angle, from 0; otherwise they decrease from 255

    /// Column and row of the centre.
    std::int32_t centreColumn() const { return static_cast<std::int32_t>(width / 2); }
    std::int32_t centreRow() const { return static_cast<std::int32_t>(height / 2); }

    /// The value of the pixel `dx` columns and `dy` rows from the centre.
    std::uint8_t byteAt(std::int32_t dx, std::int32_t dy) const;
};

/// Fills rows `first` to `last` - 1 of an image whose row 0 is at `pixels`, with sides of up to 2^24 pixels.
///
/// Each byte equals that of `byteAt`. Angles are approximated for many pixels at a time; where one is so
/// close to an integer that the error of the approximation could matter, `byteAt` computes the bytes.
void fillAngleRows(std::uint8_t* pixels, const AngleRule& rule, std::size_t first, std::size_t last);
