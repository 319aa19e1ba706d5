#pragma once

#include "FuzzTarget.h"

/// Makes a path from arbitrary bytes and runs all of path geometry on it: building, queries, simplification
/// and exports. Nothing may crash, hang or break what the headers promise; a broken promise ends the process.
void fuzzPath(const std::uint8_t* data, std::size_t size);

inline constexpr FuzzTarget kPathFuzz{
    fuzzPath, [] { return std::vector<std::string>(); }}; ///< any bytes are one
