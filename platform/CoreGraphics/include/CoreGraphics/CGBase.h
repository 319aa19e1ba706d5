#pragma once

#include <Foundation/KorvidBase.h>

#ifdef __cplusplus
#include <Foundation/NSObjCRuntime.h>
#include <Foundation/RetainPtr.h>
#else
#include <stdbool.h>
#endif
#include <stddef.h>
#include <stdint.h>

/// The number type of all geometry and colour: lengths in points, components from 0 to 1.
typedef double CGFloat;
