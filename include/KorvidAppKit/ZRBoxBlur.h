#pragma once

#include <Foundation/NSObjCRuntime.h>

extern "C" {

/// Frees `data` with `free`: the release callback of bitmap contexts whose pixels come from `malloc`.
/// `releaseInfo` is ignored. Any thread.
KORVID_EXPORT void _ZRReleaseBMData(void* releaseInfo, void* data);

} // extern "C"
