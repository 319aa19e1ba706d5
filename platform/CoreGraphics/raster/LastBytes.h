#pragma once

#include <cstddef>
#include <cstring>

/// The last bytes of a row of an image, in memory from which a vector of any length can be read, and another
/// one 4 bytes further on.
class LastBytes {
public:
    LastBytes(const unsigned char* row, std::size_t size) { std::memcpy(_bytes, row, size); }
    const unsigned char* data() const { return _bytes; }

private:
    static constexpr std::size_t kLongestVector = 64;

    alignas(kLongestVector) unsigned char _bytes[2 * kLongestVector + 4]{};
};
