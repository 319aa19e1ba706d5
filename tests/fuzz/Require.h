#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process if the condition is false, and prints where: fuzzers report that with the input.
inline void require(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE())
{
    if (condition)
        return;
    std::fprintf(stderr, "%s:%d: a promise is broken\n", file, line);
    std::abort();
}
