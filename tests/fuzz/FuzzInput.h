#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// The bytes that decide what a fuzz test does, taken one value after the other; zeros where they end.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size)
        : _data(data)
        , _end(data + size)
    {
    }

    bool isAtEnd() const { return _data == _end; }

    template <class T> T take()
    {
        T value = {};
        const std::size_t size = std::min(sizeof(T), static_cast<std::size_t>(_end - _data));
        if (size > 0)
            std::memcpy(&value, _data, size);
        _data += size;
        return value;
    }

    /// 0 to `count` - 1.
    int takeIndex(int count) { return take<std::uint8_t>() % count; }

    /// Mostly fractional numbers up to 32,768 / `unit`, sometimes arbitrary bits.
    double takeNumber(double unit = 64)
    {
        const auto kind = take<std::uint8_t>();
        if (kind < 240)
            return take<std::int16_t>() / unit;
        if (kind < 250)
            return take<float>();
        return take<double>();
    }
    CGPoint takePoint(double unit = 64)
    {
        const double x = takeNumber(unit);
        return {x, takeNumber(unit)};
    }

private:
    const std::uint8_t* _data;
    const std::uint8_t* _end;
};
