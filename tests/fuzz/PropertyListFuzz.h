#pragma once

#include "FuzzTarget.h"

/// Reads any bytes as a property list. What is read must be writable, within the documented depth, read equal
/// to itself and be written as the same bytes the second time.
void fuzzPropertyList(const std::uint8_t* data, std::size_t size);
std::vector<std::string> propertyListSeeds();

inline constexpr FuzzTarget kPropertyListFuzz{fuzzPropertyList, propertyListSeeds};
