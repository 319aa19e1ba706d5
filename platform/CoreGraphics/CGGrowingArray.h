#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

/// An array of trivial values to which several uninitialized ones can be appended at a time.
///
/// Appending tens of thousands of points is faster than with std::vector: large arrays grow in place or by
/// remapping their pages (realloc), and a fixed number of values takes a single capacity check.
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

    /// Appends `count` uninitialized values and returns a pointer to the first of them.
    T* extend(std::size_t count)
    {
        if (count > _capacity - _size)
            grow(count);
        return _data + std::exchange(_size, _size + count);
    }
    /// Removes the last `count` values.
    void shorten(std::size_t count) noexcept { _size -= count; }
    /// Reserves memory for `count` more values, and for at least half of the current size, so that repeated
    /// calls take amortized constant time.
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
