#pragma once

#include "CoreGraphics/CGGrowingArray.h"

#include <CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

/// The kind of content of a cached mask. Keys of different kinds are never equal.
enum class MaskKind : std::uint8_t { Shape, Shadow, Text };

/// Builds the bytes of a MaskCache key. Reuses its memory.
class MaskKey {
public:
    void begin(MaskKind kind)
    {
        _bytes.shorten(_bytes.size());
        add(kind);
    }
    /// Appends a value, whose type must not have padding.
    template <class T> void add(const T& value)
    {
        static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>);
        std::memcpy(_bytes.extend(sizeof value), &value, sizeof value);
    }
    /// Appends the number of values, then the values.
    template <class T> void add(std::span<const T> values)
    {
        static_assert(std::is_arithmetic_v<T>);
        add(values.size());
        // Unlike memcpy this allows an empty range at a null pointer, which a line without dashes has.
        const auto* bytes = reinterpret_cast<const char*>(values.data());
        std::copy_n(bytes, values.size_bytes(), _bytes.extend(values.size_bytes()));
    }
    /// Appends the number of points, then the points, translated.
    void addMoved(std::span<const CGPoint> points, double byX, double byY);

    std::string_view bytes() const
    {
        const std::span<const char> bytes = _bytes;
        return {bytes.data(), bytes.size()};
    }

private:
    CGGrowingArray<char> _bytes;
};
