#pragma once

#include "FuzzTarget.h"

/// Reads any bytes as an archive of views and colours. What is read must be of the requested class, be
/// drawable, and be archived as the same bytes again and again; what is refused must give an error.
void fuzzArchive(const std::uint8_t* data, std::size_t size);
std::vector<std::string> archiveSeeds();

inline constexpr FuzzTarget kArchiveFuzz{fuzzArchive, archiveSeeds};
