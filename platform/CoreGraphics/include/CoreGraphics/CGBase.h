#pragma once

#include <Foundation/NSObjCRuntime.h>
#include <Foundation/RetainPtr.h>

#include <cstddef>
#include <cstdint>

/// The number type of all geometry and colour: lengths in points, components from 0 to 1.
using CGFloat = double;
