#pragma once

#include "CoreGraphics/CGGrowingArray.h"
#include "CoreGraphics/raster/CoverageCache.h"
#include "CoreGraphics/raster/Scratch.h"
#include "CoreGraphics/raster/Shape.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <type_traits>

/// What a kept coverage is of. Each kind has keys of its own.
enum class CoverageKind : std::uint8_t { Shape, Shadow, Text };

/// Builds the bytes of a key, in memory that is used again.
class CoverageKey {
public:
    void begin(CoverageKind kind)
    {
        _bytes.shorten(_bytes.size());
        add(kind);
    }
    /// One value without gaps between its parts.
    template <class T> void add(const T& value)
    {
        static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
        std::memcpy(_bytes.extend(sizeof value), &value, sizeof value);
    }
    /// Several values; says how many.
    template <class T> void add(std::span<const T> values)
    {
        static_assert(std::is_arithmetic_v<T>);
        add(values.size());
        // Unlike memcpy this may be told to copy nothing from nowhere, which a line without dashes does.
        const auto* bytes = reinterpret_cast<const char*>(values.data());
        std::copy_n(bytes, values.size_bytes(), _bytes.extend(values.size_bytes()));
    }
    /// Points that are moved; says how many.
    void addMoved(std::span<const CGPoint> points, double byX, double byY);

    std::string_view bytes() const
    {
        const std::span<const char> bytes = _bytes;
        return {bytes.data(), bytes.size()};
    }

private:
    CGGrowingArray<char> _bytes;
};

/// A shape that is small enough for its coverage to be worth keeping, all of it.
///
/// What cairo would draw of it depends on where it lies between the pixels, not on which pixels: the key
/// counts from the corner of its pixels.
class SmallShape {
public:
    /// None for shapes that are large (with so many pixels more on each side), long or empty. The shape is
    /// lent; `height` is that of all the pixels.
    static std::optional<SmallShape> of(const Shape& shape, int height, int margin = 0);

    /// Where the coverage's key counts from.
    PixelPoint origin() const { return {_area.left, _area.top}; }
    /// Adds all that the coverage depends on.
    void addTo(CoverageKey& key) const;
    /// Draws the coverage of all of the shape.
    CoverageView draw(Scratch& memory) const;
    /// The same, unless it is kept.
    LentCoverage coverage(Scratch& memory) const;

private:
    SmallShape(const Shape& shape, const PixelRect& area, int height)
        : _shape(shape)
        , _area(area)
        , _height(height)
    {
    }

    const Shape& _shape;
    PixelRect _area;
    int _height;
};
