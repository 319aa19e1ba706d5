#pragma once

#include "CoreGraphics/CGGrowingArray.h"

#include <CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

/// What a cached mask shows. Each kind has its own keys.
enum class MaskKind : std::uint8_t { Shape, Shadow, Text };

/// Builds the bytes of a MaskCache key, in memory that is reused.
class MaskKey {
public:
    void begin(MaskKind kind)
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
