#pragma once

#include "FuzzTarget.h"

/// Reads any bytes as a file of localised strings. A table that is written again must read the same, in UTF-8
/// and in UTF-16 of either byte order, and a damaged file must name a line that it has.
void fuzzStrings(const std::uint8_t* data, std::size_t size);
std::vector<std::string> stringsSeeds();

inline constexpr FuzzTarget kStringsFuzz{fuzzStrings, stringsSeeds};
