#pragma once

#include <AppKit/NSGraphics.h>
#include <CoreGraphics/CGBlendMode.h>

#include <optional>

/// Core Graphics' name of an operation; nothing, and a log entry, if there is none.
std::optional<CGBlendMode> blendModeOf(NSCompositingOperation operation);
