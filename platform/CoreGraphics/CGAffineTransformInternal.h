#pragma once

#include <CoreGraphics/CGAffineTransform.h>

#include <optional>

/// The inverse transform; nullopt if there is none.
std::optional<CGAffineTransform> inverse(const CGAffineTransform& transform);
