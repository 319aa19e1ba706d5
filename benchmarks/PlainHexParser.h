#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>

/// Parses a hex colour string pair by pair with strtol: benchmarks and tests compare the library's parser
/// with it.
inline void plainHexColor(const char* string, double rgba[4])
{
    const std::size_t length = std::strlen(string);
    if (length != 6 && length != 8)
        return;
    const char* const pairs[] = {string, string + 2, string + 4, length == 8 ? string + 6 : "ff"};
    for (int i = 0; i < 4; ++i) {
        char pair[3];
        std::memcpy(pair, pairs[i], 2);
        pair[2] = '\0';
        rgba[i] = std::clamp(static_cast<double>(std::strtol(pair, nullptr, 16)) / 255.0, 0.0, 1.0);
    }
}
