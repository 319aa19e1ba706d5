#pragma once

#include "FuzzTarget.h"

/// Reads any bytes as a hex colour string. Each component must be what a second reading of the documented
/// notation gives, strings of digits must come back when the components are written again, and a colour must
/// be the same object for either case and for the second request.
void fuzzColor(const std::uint8_t* data, std::size_t size);
std::vector<std::string> colorSeeds();

inline constexpr FuzzTarget kColorFuzz{fuzzColor, colorSeeds};
