#pragma once

#include <CoreGraphics/CGAffineTransform.h>

#include <optional>

/// The transform that undoes this one; nothing for one that cannot be undone.
std::optional<CGAffineTransform> inverse(const CGAffineTransform& transform);
