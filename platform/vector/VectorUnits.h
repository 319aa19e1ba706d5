#pragma once

#include <Foundation/NSObjCRuntime.h>
#include <hwy/targets.h>

/// The vector instructions in use, the same for both libraries: everything that the processor has, unless a
/// test has limited them. Safe on any thread. Exported for the other library and for the tests.
KORVID_EXPORT hwy::ChosenTarget& vectorUnits();
