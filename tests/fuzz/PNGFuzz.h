#pragma once

#include "FuzzTarget.h"

/// Reads any bytes as a PNG file, with the checksums of its chunks corrected, and a file composed of them:
/// any header, palette, transparency and rows. A picture that is read must have the size of the header and
/// read the same when it is written again; pixels stored plainly must come back exactly.
void fuzzPNG(const std::uint8_t* data, std::size_t size);
std::vector<std::string> pngSeeds();

inline constexpr FuzzTarget kPNGFuzz{fuzzPNG, pngSeeds};
