#pragma once

#include "FuzzTarget.h"

/// Builds an attributed string by random edits, of any Unicode and attributes, and lays it out as a line and
/// draws it. Each unit must have the attributes that a plain record of the edits gives, runs must cover the
/// string without gaps, bounds must be finite, and ink must stay within the line's own bounds and be the same
/// the second time.
void fuzzText(const std::uint8_t* data, std::size_t size);
std::vector<std::string> textSeeds();

inline constexpr FuzzTarget kTextFuzz{fuzzText, textSeeds};
