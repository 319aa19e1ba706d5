#pragma once

#include <limits>
#include <numbers>

/// What calculations get from callers that have made a mistake.
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr float kFloatInfinity = std::numeric_limits<float>::infinity();
inline constexpr float kFloatNaN = std::numeric_limits<float>::quiet_NaN();

inline constexpr double kPi = std::numbers::pi;
