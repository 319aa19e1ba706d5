#pragma once

#include <cstdlib>

/// Ends the process if the condition is false: fuzzers report that with the input.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}
