#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

/// An array of plain values that grows at its end by several at a time, without setting new ones first.
///
/// What std::vector does not give a path that takes in tens of thousands of points: large arrays grow in
/// place or have their pages moved (realloc), and a fixed number of values goes in with one check for room.
template <class T> class CGGrowingArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    CGGrowingArray() noexcept = default;
    CGGrowingArray(const CGGrowingArray& other)
    {
        if (other._size > 0)
            std::memcpy(extend(other._size), other._data, other._size * sizeof(T));
    }
    CGGrowingArray& operator=(const CGGrowingArray&) = delete;
    ~CGGrowingArray() { std::free(_data); }

    std::size_t size() const noexcept { return _size; }
    bool empty() const noexcept { return _size == 0; }
    const T& back() const noexcept { return _data[_size - 1]; }
    operator std::span<const T>() const noexcept { return {_data, _size}; }

    /// Makes the array `count` values longer and returns the first of them, whose values are unset.
    T* extend(std::size_t count)
    {
        if (count > _capacity - _size)
            grow(count);
        return _data + std::exchange(_size, _size + count);
    }
    /// Takes back the last `count` values.
    void shorten(std::size_t count) noexcept { _size -= count; }
    /// Makes room for `count` more, and for at least half of what there is, so that repeated calls stay
    /// cheap.
    void reserveMore(std::size_t count)
    {
        if (count > _capacity - _size)
            grow(count);
    }

private:
    void grow(std::size_t count)
    {
        const std::size_t capacity = _size + std::max(count, _capacity / 2 + 16);
        void* data = std::realloc(_data, capacity * sizeof(T));
        if (!data)
            throw std::bad_alloc();
        _data = static_cast<T*>(data);
        _capacity = capacity;
    }

    T* _data = nullptr;
    std::size_t _size = 0;
    std::size_t _capacity = 0;
};
