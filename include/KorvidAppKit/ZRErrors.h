#pragma once

#include <Foundation/NSObjCRuntime.h>

/// The library's error domain: the name of every exception that it raises, and the domain of its error
/// values.
inline constexpr const char* ZRErrorDomain = "org.korvidappkit.ErrorDomain";

/// Code of the error of a query for a distance that a path does not reach: see ZRPath.
inline constexpr long kZRPathDistanceOutOfRange = 1111;
