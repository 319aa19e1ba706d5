#pragma once

#include "FuzzTarget.h"

/// Reads any bytes as JSON, as a named colour of an asset catalogue and as the application's table of
/// colours. JSON that is written again must read equal, colours must have components within their ranges, and
/// the table must hold the strings that the JSON holds.
void fuzzJSON(const std::uint8_t* data, std::size_t size);
std::vector<std::string> jsonSeeds();

inline constexpr FuzzTarget kJSONFuzz{fuzzJSON, jsonSeeds};
