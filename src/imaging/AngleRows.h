#pragma once

#include <cstddef>
#include <cstdint>

/// What the pixels of an angle image have in common.
struct AngleRule {
    std::size_t width;
    std::size_t height;
    bool isIncreasing; ///< along with the angle, from 0; else from 255 downwards

    /// Indexes of the column and row that the angles are around.
    std::int32_t centreColumn() const { return static_cast<std::int32_t>(width / 2); }
    std::int32_t centreRow() const { return static_cast<std::int32_t>(height / 2); }

    /// The byte of the pixel `dx` columns and `dy` rows from the centre.
    std::uint8_t byteAt(std::int32_t dx, std::int32_t dy) const;
};

/// Fills the rows from `first` to `last` - 1 of `pixels`, which are all of the image's rows.
///
/// Sides up to 2^24 pixels. Each byte is that of `byteAt`, by an arctangent of many pixels at a time; pixels
/// whose angle comes so close to a whole number that its error could show are asked for there.
void fillAngleRows(std::uint8_t* pixels, const AngleRule& rule, std::size_t first, std::size_t last);
