#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The text `count` times over.
inline std::string repeated(std::string_view text, std::size_t count)
{
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0)
        result += text;
    return result;
}
